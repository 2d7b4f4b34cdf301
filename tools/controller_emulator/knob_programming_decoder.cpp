#include "controller_emulator/knob_programming_decoder.h"

namespace dialcraft {

namespace {
bool is_clock(const MidiMessage& m)
{
    return m.size() == 1 && m[0] == 0xF8;
}

bool is_channel_frame(const MidiMessage& m, uint8_t type_nibble, uint8_t channel_nibble, uint8_t controller,
                      uint8_t knob)
{
    return m.size() == 3 && m[0] == ((type_nibble << 4) | channel_nibble) && m[1] == controller && m[2] == knob;
}
}  // namespace

std::string_view knob_type_name(uint8_t type_nibble)
{
    switch (type_nibble) {
    case 0x9: return "Note On";
    case 0x8: return "Note Off";
    case 0xB: return "Control Change";
    case 0xE: return "Bend Change";
    case 0xF: return "System Change";
    default: return "Unknown";
    }
}

std::string knob_setting_text(const KnobSetting& setting)
{
    return "knob " + std::to_string(setting.knob) + " = " + std::string(knob_type_name(setting.type_nibble)) +
           ", channel " + std::to_string(setting.channel) + ", controller " + std::to_string(setting.controller);
}

void KnobProgrammingDecoder::restart(const MidiMessage& message)
{
    step_ = is_clock(message) ? 1 : 0;
}

std::optional<KnobSetting> KnobProgrammingDecoder::push(const MidiMessage& message)
{
    switch (step_) {
    case 0: restart(message); return std::nullopt;
    case 1:
        if (message.size() == 3 && (message[0] & 0xF0) == 0x90) {
            channel_nibble_ = message[0] & 0x0F;
            controller_ = message[1];
            knob_ = message[2];
            step_ = 2;
        } else {
            restart(message);
        }
        return std::nullopt;
    case 2:
        if (is_channel_frame(message, 0x8, channel_nibble_, controller_, knob_))
            step_ = 3;
        else
            restart(message);
        return std::nullopt;
    case 3:
        if (is_clock(message)) {
            type_nibble_ = 0xF;
            step_ = 4;
        } else if (message.size() == 3 && (message[0] & 0x0F) == channel_nibble_ && message[1] == controller_ &&
                   message[2] == knob_) {
            type_nibble_ = message[0] >> 4;
            step_ = 4;
        } else {
            restart(message);
        }
        return std::nullopt;
    default:
        if (!is_clock(message)) {
            restart(message);
            return std::nullopt;
        }
        step_ = 0;
        return KnobSetting{knob_, type_nibble_, channel_nibble_ + 1, controller_};
    }
}

}  // namespace dialcraft
