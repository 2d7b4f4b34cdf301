#include "actions/recorded_set_action.h"

#include <cstring>

#include "actions/set_action.h"
#include "base/integer_text.h"
#include "midi/midi_link.h"
#include "midi/send_tally.h"
#include "model/knob_record.h"
#include "model/ledger_store.h"

namespace dialcraft {

namespace {

// The serial part of the link's target name, which the action has just
// selected and every programming message was matched against.
QString target_serial()
{
    return QString::fromLatin1(device_name, static_cast<qsizetype>(strnlen(device_name, 8)));
}

}  // namespace

RecordedSetAction setup_button_action_recorded(CreateSetupAreaViewData& data, GlobalState& state)
{
    RecordedSetAction outcome;
    {
        const SendTally tally;
        setup_button_action(data, state);
        outcome.accepted = tally.accepted();
        outcome.refused = tally.refused();
        outcome.destinations = tally.destinations();
    }
    outcome.serial = target_serial();
    if (outcome.accepted != programming_messages || outcome.refused != 0)
        return outcome;
    // All five went through, so the check passed and both numbers parse.
    const auto channel = parse_int64(data.message_channel_menu_string().toStdString(), 10);
    const auto controller = parse_int64(data.message_controller_number_code_string().toStdString(), 10);
    if (!channel || !controller)
        return outcome;
    outcome.recorded = record_in_ledger(outcome.serial, data.knob_index(), data.message_type_menu_string(),
                                        static_cast<int>(*channel), static_cast<int>(*controller));
    return outcome;
}

}  // namespace dialcraft
