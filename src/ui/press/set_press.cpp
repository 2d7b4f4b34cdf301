#include "ui/press/set_press.h"

#include "actions/recorded_set_action.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/print_line.h"

namespace dialcraft {

bool all_messages_accepted(const SetPressOutcome& outcome)
{
    return outcome.accepted >= programming_messages && outcome.refused == 0;
}

QString set_success_text(int knob)
{
    return QStringLiteral("旋钮") + QString::number(knob) + QStringLiteral("-设置成功!");
}

// The set action's failure text starts with this line; the serial follows.
static QString set_failure_first_line(int knob)
{
    return QStringLiteral("旋钮") + QString::number(knob) + QStringLiteral("-设置失败..");
}

SetPressOutcome press_set_button(CreateSetupAreaViewData& data, GlobalState& state)
{
    SetPressOutcome outcome;
    outcome.knob = data.knob_index();
    print_line(QString::number(outcome.knob) + QStringLiteral("号旋钮"));
    const RecordedSetAction action = setup_button_action_recorded(data, state);
    outcome.accepted = action.accepted;
    outcome.refused = action.refused;
    for (const std::string& name : action.destinations)
        outcome.destinations.append(QString::fromStdString(name));
    outcome.recorded = action.recorded;
    outcome.serial = action.serial;
    outcome.fullText = state.fullText();
    outcome.succeeded = outcome.fullText == set_success_text(outcome.knob);
    outcome.programmed = outcome.succeeded || outcome.fullText.startsWith(set_failure_first_line(outcome.knob) + u'\n');
    return outcome;
}

}  // namespace dialcraft
