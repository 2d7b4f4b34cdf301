#include "model/handover.h"

namespace dialcraft {

QString ShellCommandPath = QStringLiteral("  ");
int32_t command_setup_succeed_flag = 0;
uint32_t c_arg_transfer_Uint32 = 0;
uint8_t c_arg_transfer_UInt8_1 = 0;
uint8_t c_arg_transfer_UInt8_2 = 0;
uint8_t c_arg_transfer_UInt8_3 = 0;
uint8_t c_arg_transfer_UInt8_4 = 0;
std::vector<uint8_t> device_connect_state_retval(36, 0);

}  // namespace dialcraft
