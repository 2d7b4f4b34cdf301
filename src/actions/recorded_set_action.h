#pragma once
// A press of a knob's set button that also keeps the ledger: the set action
// runs as the button runs it, the MIDI service's answers to its sends are
// counted, and when all five messages of the programming were accepted the
// knob's setting is recorded for the controller they went to. The window's
// press, its set-all run and dialcraft-cli all program knobs through this.
#include <QString>

#include <string>
#include <vector>

namespace dialcraft {

class CreateSetupAreaViewData;
class GlobalState;

// Messages of one programming sequence: F8, 9n, 8n, the type, F8.
inline constexpr int programming_messages = 5;

struct RecordedSetAction {
    int accepted = 0;                       // messages the MIDI service accepted
    int refused = 0;                        // messages it refused
    std::vector<std::string> destinations;  // ports that accepted them, first-use order
    QString serial;                         // the controller the link sent to ("4AC1CC27")
    bool recorded = false;                  // the ledger now holds this knob's setting for `serial`
};

// Runs setup_button_action(data, state) to completion and records its
// programming in the ledger when the service accepted all five messages and
// refused none. Prints nothing beyond what the action prints.
RecordedSetAction setup_button_action_recorded(CreateSetupAreaViewData& data, GlobalState& state);

}  // namespace dialcraft
