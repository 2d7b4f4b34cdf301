#pragma once
// One knob programmed exactly as a press of its 设置 button programs it,
// with what the MIDI service really accepted counted beside the action's own
// result (with no MIDI device at all the action reports success although
// nothing was sent).
#include <QString>

#include <optional>
#include <string>
#include <vector>

#include "actions/recorded_set_action.h"

namespace dialcraft {

class CreateSetupAreaViewData;
class GlobalState;

struct KnobOutcome {
    int knob = 0;
    QString type;
    QString channel;
    QString controller;
    bool checked = false;                   // the parameter check passed and the sequence was sent
    std::optional<int> result;              // failed sends the link counted, when sent
    int accepted = 0;                       // messages the MIDI service accepted
    int refused = 0;                        // messages it refused
    std::vector<std::string> destinations;  // ports that accepted them
    QString serial;                         // the model menu after the press
    QString message;                        // the text area's text after the press
    QString target;                         // the controller the link sent to
    bool recorded = false;                  // the ledger holds the setting for `target`

    bool ok() const { return checked && result == 0 && accepted > 0; }
};

// Runs setup_button_action for `record` and `state`, as the window's button
// does, and records a fully accepted programming in the ledger.
KnobOutcome program_knob(CreateSetupAreaViewData& record, GlobalState& state);

}  // namespace dialcraft
