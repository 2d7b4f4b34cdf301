#include "midi/decode/midi_data_length.h"

namespace dialcraft {

uint8_t midi_data_length(uint8_t status)
{
    switch (status & 0xF0) {
    case 0x80:
    case 0x90:
    case 0xA0:
    case 0xB0:
    case 0xE0: return 2;
    case 0xC0:
    case 0xD0: return 1;
    default: break;
    }
    switch (status) {
    case 0xF1:
    case 0xF3: return 1;
    case 0xF2: return 2;
    default: return 0;
    }
}

}  // namespace dialcraft
