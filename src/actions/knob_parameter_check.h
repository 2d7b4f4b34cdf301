#pragma once
namespace dialcraft {

class CreateSetupAreaViewData;
class GlobalState;

// Checks channel, controller number and type of the knob, printing a line for
// each check that passes and writing each failure's message into fullText.
// True when all three pass (then "参数正确" is printed).
bool check_knob_parameters(const CreateSetupAreaViewData& data, GlobalState& globalState);

}  // namespace dialcraft
