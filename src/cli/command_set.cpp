// dialcraft-cli set: one knob through the window's set action.
#include <ostream>

#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_output.h"
#include "cli/knob_programming.h"
#include "cli/midi_session.h"
#include "model/global_state.h"
#include "model/knob_record.h"

namespace dialcraft {

int run_set(const CliContext& context)
{
    // Every value is checked before the MIDI service is even opened, so a bad
    // argument sends nothing.
    const std::vector<std::string>& operands = context.request.operands;
    const int knob = knob_argument(operands[0]);
    const QString type = type_argument(operands[1]);
    const QString channel = channel_argument(operands[2]);
    const QString controller = controller_argument(operands[3]);

    // The window opens the link at start-up and also selects its default
    // controller; the set action probes the family and selects its target by
    // itself, so opening the link is all it needs here.
    MidiSession session(context.host);
    std::string menu_serial;
    if (const int status = choose_menu_serial(context, session, &menu_serial); status != cli_success)
        return status;

    GlobalState state;
    state.set_machine_type_menu_string(QString::fromStdString(menu_serial));
    CreateSetupAreaViewData& record = *state.record(knob);
    record.set_message_type_menu_string(type);
    record.set_message_channel_menu_string(channel);
    record.set_message_controller_number_code_string(controller);

    const KnobOutcome outcome = program_knob(record, state);
    context.out << (context.request.json ? json_line(knob_outcome_json(outcome)) : knob_outcome_line(outcome) + "\n");
    context.out.flush();
    return outcome.ok() ? cli_success : cli_failed;
}

}  // namespace dialcraft
