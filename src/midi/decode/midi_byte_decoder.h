#pragma once
// Turns the byte stream of one MIDI source into messages. Keep one decoder
// per source: running status and a half-received message belong to the
// source they came from.
//
// - Channel messages keep running status: data bytes after a complete
//   message repeat its status. System common messages and SysEx cancel it.
// - Real-time bytes (F8 to FF) are whole messages at once, wherever they
//   come, even between the data bytes of a message or inside SysEx; the
//   message they interrupt goes on unharmed.
// - SysEx (F0 up to F7, or up to the next status byte) is skipped whole: no
//   message, only a count. The monitor has no use for its contents.
// - A data byte with nothing to belong to is counted and dropped, and so is
//   an F7 with no SysEx open. A status byte that cuts a message short drops
//   that message and is counted as such.
//
// Decoding is byte by byte, so a stream split anywhere across calls decodes
// to the same messages as the whole.
#include <cstdint>
#include <optional>
#include <span>

#include "midi/decode/midi_message.h"

namespace dialcraft {

struct MidiDecodeCounts {
    uint64_t stray_bytes = 0;          // data bytes without a status, lone F7
    uint64_t incomplete_messages = 0;  // cut short by a status byte
    uint64_t sysex_skipped = 0;        // SysEx blocks, ended or cut short

    friend bool operator==(const MidiDecodeCounts&, const MidiDecodeCounts&) = default;
};

class MidiByteDecoder {
public:
    // Feeds one byte; returns the message it completes, if any.
    std::optional<MidiMessage> push(uint8_t byte);

    // Feeds every byte in order and hands each completed message to `sink`.
    template <class Sink>
    void push_all(std::span<const uint8_t> bytes, Sink&& sink)
    {
        for (uint8_t byte : bytes)
            if (std::optional<MidiMessage> message = push(byte))
                sink(*message);
    }

    const MidiDecodeCounts& counts() const { return counts_; }

private:
    std::optional<MidiMessage> status_byte(uint8_t byte);
    MidiMessage complete() const;

    MidiDecodeCounts counts_;
    uint8_t status_ = 0;   // of the message being received, 0 when none
    uint8_t running_ = 0;  // channel status that data bytes repeat, 0 when none
    uint8_t data_[2] = {0, 0};
    uint8_t received_ = 0;  // data bytes of the message being received
    uint8_t needed_ = 0;    // data bytes it takes
    bool in_sysex_ = false;
};

}  // namespace dialcraft
