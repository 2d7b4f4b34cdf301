#pragma once
// One press of a knob's set button, as the panel's button and the set-all run
// both make it, with what the MIDI service really accepted during it.
#include <QString>
#include <QStringList>

namespace dialcraft {

class CreateSetupAreaViewData;
class GlobalState;

struct SetPressOutcome {
    int knob = 0;
    // fullText after the action is exactly the success text of this knob,
    // "旋钮<knob>-设置成功!". Anything else (a check's message, the failure
    // text) is a failed press.
    bool succeeded = false;
    // The set action got past its checks and called the programming entry:
    // it wrote the success text or its failure text "旋钮<knob>-设置失败..".
    bool programmed = false;
    // fullText as the action left it.
    QString fullText;
    // Sends the service accepted and refused during the press.
    int accepted = 0;
    int refused = 0;
    // Names of the destinations that accepted a message, first-use order.
    QStringList destinations;
    // The ledger now holds this knob's setting for the controller it went to.
    bool recorded = false;
    // The controller the link sent to ("4AC1CC27"), when it got that far.
    QString serial;
};

// Whether the service accepted every message of the programming and refused
// none. A press that sent fewer is shown as a warning, whatever its text says.
bool all_messages_accepted(const SetPressOutcome& outcome);

// The text the set action writes when knob `knob` was programmed.
QString set_success_text(int knob);

// Prints "<knob_index>号旋钮", then runs setup_button_action to completion
// while counting the sends at the MIDI seam, and records the programming in
// the ledger when the service accepted all of it. Prints nothing more itself.
SetPressOutcome press_set_button(CreateSetupAreaViewData& data, GlobalState& state);

}  // namespace dialcraft
