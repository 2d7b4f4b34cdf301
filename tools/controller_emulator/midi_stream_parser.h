#pragma once
// Cuts a raw MIDI byte stream, as a controller's MIDI input receives it, into
// whole messages: channel messages (with running status), system common
// messages, system exclusive blocks and single-byte real-time messages.
//
// The monitor's decoder (midi/decode/midi_byte_decoder.h) does not serve here:
// the emulator records every byte the host sent, SysEx bodies and system
// common data included, and frames programming from raw bytes, while that
// decoder yields meanings and skips SysEx. Both share the data-length table.
#include <cstdint>
#include <optional>
#include <vector>

namespace dialcraft {

using MidiMessage = std::vector<uint8_t>;

class MidiStreamParser {
public:
    // Feeds one byte; returns the message it completes, if any. Real-time
    // bytes (F8 to FF) are whole messages at once and leave a message in
    // progress untouched. Stray data bytes without a status are dropped.
    std::optional<MidiMessage> push(uint8_t byte);

private:
    MidiMessage pending_;
    uint8_t running_status_ = 0;
    size_t expected_data_ = 0;
    bool in_sysex_ = false;
};

}  // namespace dialcraft
