#pragma once
// The five messages that program a knob, as the wire carries them:
// F8; 9n cc kk; 8n cc kk; Tn cc kk; F8 (n the channel less one, T the
// message type's status, cc the controller number, kk the knob).
#include <cstdint>
#include <vector>

namespace dialcraft {

// `type_channel` is the type's status byte with the channel in its low
// nibble: 0xB1 is Control Change on channel 2.
inline std::vector<std::vector<uint8_t>> programming_messages(uint8_t knob, uint8_t type_channel, uint8_t controller)
{
    const uint8_t n = type_channel & 0x0F;
    return {{0xF8},
            {static_cast<uint8_t>(0x90 | n), controller, knob},
            {static_cast<uint8_t>(0x80 | n), controller, knob},
            {type_channel, controller, knob},
            {0xF8}};
}

}  // namespace dialcraft
