#pragma once
// Values through which the set action hands its arguments to the MIDI link
// and keeps the results of its last press.
#include <QString>

#include <cstdint>
#include <vector>

namespace dialcraft {

extern QString ShellCommandPath;                          // "  " until the first press
extern int32_t command_setup_succeed_flag;                // result of the last usb_midi_main
extern uint32_t c_arg_transfer_Uint32;                    // declared, never used
extern uint8_t c_arg_transfer_UInt8_1;                    // knob number
extern uint8_t c_arg_transfer_UInt8_2;                    // type-and-channel byte
extern uint8_t c_arg_transfer_UInt8_3;                    // controller number
extern uint8_t c_arg_transfer_UInt8_4;                    // controller number again
extern std::vector<uint8_t> device_connect_state_retval;  // 36 probe results

}  // namespace dialcraft
