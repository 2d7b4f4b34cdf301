#include "cli/knob_programming.h"

#include "model/global_state.h"
#include "model/handover.h"
#include "model/knob_record.h"

namespace dialcraft {

namespace {
// The action writes command_setup_succeed_flag only once the parameters have
// passed their check, with the link's count of failed sends (0 to 5); a value
// the link can never return marks a press that stopped at the check.
constexpr int32_t not_sent = -1;
}  // namespace

KnobOutcome program_knob(CreateSetupAreaViewData& record, GlobalState& state)
{
    KnobOutcome outcome;
    outcome.knob = record.knob_index();
    outcome.type = record.message_type_menu_string();
    outcome.channel = record.message_channel_menu_string();
    outcome.controller = record.message_controller_number_code_string();

    command_setup_succeed_flag = not_sent;
    const RecordedSetAction press = setup_button_action_recorded(record, state);
    outcome.accepted = press.accepted;
    outcome.refused = press.refused;
    outcome.destinations = press.destinations;
    outcome.target = press.serial;
    outcome.recorded = press.recorded;
    outcome.checked = command_setup_succeed_flag != not_sent;
    if (outcome.checked)
        outcome.result = command_setup_succeed_flag;
    outcome.serial = state.machine_type_menu_string();
    outcome.message = state.fullText();
    return outcome;
}

}  // namespace dialcraft
