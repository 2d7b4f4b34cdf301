#include "controller_emulator/midi_stream_parser.h"

#include "midi/decode/midi_data_length.h"

namespace dialcraft {

std::optional<MidiMessage> MidiStreamParser::push(uint8_t byte)
{
    if (byte >= 0xF8)
        return MidiMessage{byte};

    if (in_sysex_) {
        if (byte == 0xF7 || byte < 0x80) {
            pending_.push_back(byte);
            if (byte != 0xF7)
                return std::nullopt;
            in_sysex_ = false;
            MidiMessage done;
            done.swap(pending_);
            return done;
        }
        // Any other status ends an unterminated block; the block is lost.
        in_sysex_ = false;
        pending_.clear();
    }

    if (byte & 0x80) {
        pending_.assign(1, byte);
        if (byte == 0xF0) {
            in_sysex_ = true;
            running_status_ = 0;
            return std::nullopt;
        }
        expected_data_ = midi_data_length(byte);
        // System common messages cancel running status; channel ones set it.
        running_status_ = byte < 0xF0 ? byte : 0;
        if (expected_data_ == 0) {
            MidiMessage done;
            done.swap(pending_);
            return done;
        }
        return std::nullopt;
    }

    if (pending_.empty()) {
        if (running_status_ == 0)
            return std::nullopt;
        pending_.assign(1, running_status_);
        expected_data_ = midi_data_length(running_status_);
    }
    pending_.push_back(byte);
    if (pending_.size() < 1 + expected_data_)
        return std::nullopt;
    MidiMessage done;
    done.swap(pending_);
    return done;
}

}  // namespace dialcraft
