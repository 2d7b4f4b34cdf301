#pragma once
namespace dialcraft {

// The stored knob table as the window has it after start-up: the store read
// with loadCustomInfo, then knobs 0 to 26 copied, checked, into the records.
class GlobalState;

void load_stored_records(GlobalState& state);

}  // namespace dialcraft
