#pragma once
namespace dialcraft {

// One press of a knob's set button: choose the controller, check the knob's
// parameters, stage the bytes, program the knob and report in fullText.
class CreateSetupAreaViewData;
class GlobalState;

void setup_button_action(CreateSetupAreaViewData& data, GlobalState& globalState);
// Resets all 36 probe results to 0.
void ClearDeviceMathingRetval();

}  // namespace dialcraft
