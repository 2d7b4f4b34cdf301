#include "midi/decode/midi_byte_decoder.h"

#include "midi/decode/midi_data_length.h"

namespace dialcraft {

namespace {

MidiMessage realtime(uint8_t byte)
{
    switch (byte) {
    case 0xF8: return {MidiKind::clock};
    case 0xFA: return {MidiKind::start};
    case 0xFB: return {MidiKind::continue_playing};
    case 0xFC: return {MidiKind::stop};
    case 0xFE: return {MidiKind::active_sensing};
    case 0xFF: return {MidiKind::reset};
    default: return {MidiKind::realtime_undefined};  // F9, FD
    }
}

}  // namespace

std::optional<MidiMessage> MidiByteDecoder::push(uint8_t byte)
{
    if (byte >= 0xF8)
        return realtime(byte);
    if (byte & 0x80)
        return status_byte(byte);
    if (in_sysex_)
        return std::nullopt;
    if (status_ == 0) {
        if (running_ == 0) {
            ++counts_.stray_bytes;
            return std::nullopt;
        }
        status_ = running_;
        needed_ = midi_data_length(running_);
        received_ = 0;
    }
    data_[received_++] = byte;
    if (received_ < needed_)
        return std::nullopt;
    MidiMessage message = complete();
    status_ = 0;
    return message;
}

std::optional<MidiMessage> MidiByteDecoder::status_byte(uint8_t byte)
{
    // Any status byte ends a SysEx block; F7 is only its proper end.
    if (in_sysex_) {
        in_sysex_ = false;
        ++counts_.sysex_skipped;
        if (byte == 0xF7)
            return std::nullopt;
    } else if (byte == 0xF7) {
        ++counts_.stray_bytes;
    }
    if (status_ != 0)
        ++counts_.incomplete_messages;
    status_ = 0;
    running_ = byte < 0xF0 ? byte : 0;
    if (byte == 0xF0)
        in_sysex_ = true;
    if (byte == 0xF0 || byte == 0xF7)
        return std::nullopt;
    needed_ = midi_data_length(byte);
    received_ = 0;
    if (needed_ == 0) {
        // Tune request and the undefined F4 and F5 are whole already.
        return MidiMessage{byte == 0xF6 ? MidiKind::tune_request : MidiKind::system_undefined};
    }
    status_ = byte;
    return std::nullopt;
}

MidiMessage MidiByteDecoder::complete() const
{
    const auto channel = static_cast<uint8_t>((status_ & 0x0F) + 1);
    const auto fourteen_bits = static_cast<uint16_t>(data_[0] | data_[1] << 7);
    switch (status_ & 0xF0) {
    case 0x80: return {MidiKind::note_off, channel, data_[0], data_[1]};
    case 0x90: return {MidiKind::note_on, channel, data_[0], data_[1]};
    case 0xA0: return {MidiKind::poly_pressure, channel, data_[0], data_[1]};
    case 0xB0: return {MidiKind::control_change, channel, data_[0], data_[1]};
    case 0xC0: return {MidiKind::program_change, channel, data_[0], 0};
    case 0xD0: return {MidiKind::channel_pressure, channel, 0, data_[0]};
    case 0xE0: return {MidiKind::pitch_bend, channel, 0, fourteen_bits};
    default: break;
    }
    switch (status_) {
    case 0xF1: return {MidiKind::time_code, 0, 0, data_[0]};
    case 0xF2: return {MidiKind::song_position, 0, 0, fourteen_bits};
    default: return {MidiKind::song_select, 0, data_[0], 0};  // F3, the last with data
    }
}

}  // namespace dialcraft
