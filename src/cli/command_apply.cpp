// dialcraft-cli apply: knobs 0 to 26 of an exported file, each through the
// window's set action, or with --changed only those whose setting the target
// controller does not hold already.
#include <optional>
#include <ostream>
#include <vector>

#include "cli/apply_file.h"
#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/cli_output.h"
#include "cli/knob_programming.h"
#include "cli/midi_session.h"
#include "cli/progress_bar.h"
#include "cli/text_file.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_markers.h"
#include "model/ledger_store.h"

namespace dialcraft {

namespace {

QJsonArray knob_array(const std::vector<int>& knobs)
{
    QJsonArray array;
    for (int knob : knobs)
        array.append(knob);
    return array;
}

struct ApplyCounts {
    int programmed = 0;
    int failed = 0;
    std::vector<int> skipped;
    std::optional<std::vector<int>> unchanged;  // with --changed: knobs the controller already holds
};

std::string summary_line(const ApplyCounts& counts)
{
    std::string line = "已设置(programmed) " + std::to_string(counts.programmed) + ", 失败(failed) " +
                       std::to_string(counts.failed) + ", 跳过(skipped) " + std::to_string(counts.skipped.size());
    if (counts.unchanged)
        line += ", 已相同(unchanged) " + std::to_string(counts.unchanged->size());
    return line + "\n";
}

QJsonObject summary_json(const ApplyCounts& counts, const QJsonArray& outcomes)
{
    QJsonObject object{{"knobs", outcomes},
                       {"skipped", knob_array(counts.skipped)},
                       {"programmed", counts.programmed},
                       {"failed", counts.failed}};
    if (counts.unchanged)
        object.insert("unchanged", knob_array(*counts.unchanged));
    return object;
}

void print_summary(const CliContext& context, const ApplyCounts& counts, const QJsonArray& outcomes)
{
    context.out << (context.request.json ? json_line(summary_json(counts, outcomes)) : summary_line(counts));
    context.out.flush();
}

// Moves the knobs whose setting `serial` already holds, by the ledger, out
// of `knobs` into the unchanged list.
void leave_out_held(const GlobalState& state, const QString& serial, std::vector<int>& knobs, ApplyCounts& counts)
{
    const LedgerMarkers markers = ledger_markers(read_ledger(), serial, state);
    counts.unchanged.emplace();
    std::vector<int> differing;
    for (int knob : knobs)
        (needs_programming(markers.knobs[static_cast<size_t>(knob)]) ? differing : *counts.unchanged).push_back(knob);
    knobs = std::move(differing);
}

}  // namespace

int run_apply(const CliContext& context)
{
    const QString text = read_text_file(context.request.operands[0]);
    GlobalState state;
    ApplyFile file = read_apply_file(text, state, context.console);
    ApplyCounts counts;
    counts.skipped = file.skipped;
    std::vector<int>& knobs = file.knobs;

    if (knobs.empty()) {
        context.console.error_text(
            "dialcraft-cli apply: 文件里没有可设置的旋钮(the file has no knob to program: "
            "none of knobs 0-26 is Note On, Note Off, Control Change or Bend Change)\n");
        print_summary(context, counts, QJsonArray());
        return cli_failed;
    }

    MidiSession session(context.host);
    std::string menu_serial;
    if (const int status = choose_menu_serial(context, session, &menu_serial); status != cli_success)
        return status;
    state.set_machine_type_menu_string(QString::fromStdString(menu_serial));
    if (context.request.changed) {
        leave_out_held(state, state.machine_type_menu_string(), knobs, counts);
        if (knobs.empty()) {
            // Nothing differs: the controller already holds the file.
            print_summary(context, counts, QJsonArray());
            return cli_success;
        }
    }

    QJsonArray outcomes;
    {
        ProgressBar bar(context.console, static_cast<int>(knobs.size()),
                        context.err_is_terminal && !context.console.verbose());
        for (size_t i = 0; i < knobs.size(); ++i) {
            bar.show(static_cast<int>(i), knobs[i]);
            const KnobOutcome outcome = program_knob(*state.record(knobs[i]), state);
            (outcome.ok() ? counts.programmed : counts.failed) += 1;
            bar.hide();
            if (context.request.json) {
                outcomes.append(knob_outcome_json(outcome));
            } else {
                context.out << knob_outcome_line(outcome) << "\n";
                context.out.flush();
            }
        }
    }

    print_summary(context, counts, outcomes);
    return counts.failed == 0 && counts.programmed > 0 ? cli_success : cli_failed;
}

}  // namespace dialcraft
