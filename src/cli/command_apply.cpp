// dialcraft-cli apply: knobs 0 to 26 of an exported file, each through the
// window's set action.
#include <ostream>
#include <vector>

#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/cli_output.h"
#include "cli/knob_programming.h"
#include "cli/midi_session.h"
#include "cli/progress_bar.h"
#include "cli/text_file.h"
#include "model/config_file_transfer.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

namespace {

// The file read as the window reads an imported one: its lines become the
// slot table, then each knob's slots are copied, checked, into its record.
// Only the process's table changes; the stored one is left alone.
void load_records(const QString& text, GlobalState& state)
{
    ConfigFileTransfer transfer;
    transfer.setGlobalState(&state);
    transfer.document.text = text;
    transfer.reverseUpdateDocument();
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_config_to_UI(state, i, SlotMappingView::CreateConfigAreaView);
}

QJsonArray knob_array(const std::vector<int>& knobs)
{
    QJsonArray array;
    for (int knob : knobs)
        array.append(knob);
    return array;
}

std::string summary_line(int programmed, int failed, size_t skipped)
{
    return "已设置(programmed) " + std::to_string(programmed) + ", 失败(failed) " + std::to_string(failed) +
           ", 跳过(skipped) " + std::to_string(skipped) + "\n";
}

}  // namespace

int run_apply(const CliContext& context)
{
    const QString text = read_text_file(context.request.operands[0]);
    warn_about_cutting(context.console, "apply", text);

    GlobalState state;
    load_records(text, state);
    std::vector<int> knobs;
    std::vector<int> skipped;
    for (int i = 0; i < mapped_knob_count; ++i)
        (is_programmable_type(state.record(i)->message_type_menu_string()) ? knobs : skipped).push_back(i);

    if (knobs.empty()) {
        context.console.error_text(
            "dialcraft-cli apply: 文件里没有可设置的旋钮(the file has no knob to program: "
            "none of knobs 0-26 is Note On, Note Off, Control Change or Bend Change)\n");
        if (context.request.json)
            context.out << json_line(QJsonObject{
                {"knobs", QJsonArray()}, {"skipped", knob_array(skipped)}, {"programmed", 0}, {"failed", 0}});
        else
            context.out << summary_line(0, 0, skipped.size());
        context.out.flush();
        return cli_failed;
    }

    MidiSession session(context.host);
    std::string menu_serial;
    if (const int status = choose_menu_serial(context, session, &menu_serial); status != cli_success)
        return status;
    state.set_machine_type_menu_string(QString::fromStdString(menu_serial));

    int programmed = 0;
    int failed = 0;
    QJsonArray outcomes;
    {
        ProgressBar bar(context.console, static_cast<int>(knobs.size()),
                        context.err_is_terminal && !context.console.verbose());
        for (size_t i = 0; i < knobs.size(); ++i) {
            bar.show(static_cast<int>(i), knobs[i]);
            const KnobOutcome outcome = program_knob(*state.record(knobs[i]), state);
            (outcome.ok() ? programmed : failed) += 1;
            bar.hide();
            if (context.request.json) {
                outcomes.append(knob_outcome_json(outcome));
            } else {
                context.out << knob_outcome_line(outcome) << "\n";
                context.out.flush();
            }
        }
    }

    if (context.request.json) {
        context.out << json_line(QJsonObject{
            {"knobs", outcomes}, {"skipped", knob_array(skipped)}, {"programmed", programmed}, {"failed", failed}});
    } else {
        context.out << summary_line(programmed, failed, skipped.size());
    }
    context.out.flush();
    return failed == 0 && programmed > 0 ? cli_success : cli_failed;
}
