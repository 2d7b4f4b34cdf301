#pragma once
namespace dialcraft {

// What the main window does when it appears and when it goes away.
class GlobalState;

// The controller every start selects before the user touches anything: 4ACBCC27.
inline constexpr unsigned default_device_code = 0x4ACBCC27;

// Opens the MIDI client, selects the default controller, restores knobs 0 to
// 26 from the stored table and clears the probe results 10 and 11; then
// starts following the store (model/table_sync.h).
void start_up_hook(GlobalState& state);
// Closes the MIDI client, copies knobs 0 to 26 into the table and stores it,
// merged with what another program stored since the window loaded or took it.
void shut_down_hook(GlobalState& state);

}  // namespace dialcraft
