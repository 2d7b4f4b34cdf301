#pragma once
// How many data bytes follow a MIDI status byte. Kept apart from the decoder
// so that the controller emulator's raw-byte parser can share it without the
// decoder's message type.
#include <cstdint>

namespace dialcraft {

// 2, 1 or 0 (real-time, tune request, the undefined ones, and SysEx, which is
// open-ended).
uint8_t midi_data_length(uint8_t status);

}  // namespace dialcraft
