// dialcraft-cli show: the stored knob table, and with --controller what the
// ledger says that controller holds beside it.
#include <ostream>

#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_output.h"
#include "cli/stored_records.h"
#include "cli/text_table.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_markers.h"
#include "model/ledger_store.h"
#include "model/slot_mapping.h"

namespace dialcraft {

namespace {

QString compare_word(KnobMarker marker)
{
    switch (marker) {
    case KnobMarker::written: return QStringLiteral("same");
    case KnobMarker::differs: return QStringLiteral("differs");
    case KnobMarker::never_written: break;
    }
    return QStringLiteral("never written");
}

QString compare_cell(KnobMarker marker)
{
    switch (marker) {
    case KnobMarker::written: return QStringLiteral("相同(same)");
    case KnobMarker::differs: return QStringLiteral("不同(differs)");
    case KnobMarker::never_written: break;
    }
    return QStringLiteral("未写入(never written)");
}

QString written_text(const HeldSetting& held)
{
    return held.written.toUTC().toString(Qt::ISODate);
}

QJsonObject record_json(int knob, const CreateSetupAreaViewData& record)
{
    return {{"knob", knob},
            {"type", record.message_type_menu_string()},
            {"channel", record.message_channel_menu_string()},
            {"controller", record.message_controller_number_code_string()}};
}

QStringList record_cells(int knob, const CreateSetupAreaViewData& record)
{
    return {QString::number(knob), shown_field(record.message_type_menu_string()),
            shown_field(record.message_channel_menu_string()),
            shown_field(record.message_controller_number_code_string())};
}

void show_table(const CliContext& context, const GlobalState& state)
{
    if (context.request.json) {
        QJsonArray knobs;
        for (int i = 0; i < mapped_knob_count; ++i)
            knobs.append(record_json(i, *state.record(i)));
        context.out << json_line(knobs);
        return;
    }
    std::vector<QStringList> rows{{QStringLiteral("旋钮(knob)"), QStringLiteral("类型(type)"),
                                   QStringLiteral("通道(channel)"), QStringLiteral("控制器号(controller)")}};
    for (int i = 0; i < mapped_knob_count; ++i)
        rows.push_back(record_cells(i, *state.record(i)));
    context.out << text_table(rows);
}

void show_beside_ledger(const CliContext& context, const GlobalState& state, const QString& serial)
{
    const ControllerLedger ledger = read_ledger();
    const LedgerMarkers markers = ledger_markers(ledger, serial, state);
    if (context.request.json) {
        QJsonArray knobs;
        for (int i = 0; i < mapped_knob_count; ++i) {
            QJsonObject object = record_json(i, *state.record(i));
            const HeldSetting* held = ledger.held(serial, i);
            object.insert("held", held ? QJsonValue(QJsonObject{{"type", held->type},
                                                                {"channel", held->channel},
                                                                {"controller", held->controller},
                                                                {"written", written_text(*held)}})
                                       : QJsonValue(QJsonValue::Null));
            object.insert("compare", compare_word(markers.knobs[static_cast<size_t>(i)]));
            knobs.append(object);
        }
        context.out << json_line(knobs);
        return;
    }
    std::vector<QStringList> rows{{QStringLiteral("旋钮(knob)"), QStringLiteral("类型(type)"),
                                   QStringLiteral("通道(channel)"), QStringLiteral("控制器号(controller)"), serial,
                                   QStringLiteral("写入时间(written)"), QStringLiteral("比较(compare)")}};
    for (int i = 0; i < mapped_knob_count; ++i) {
        QStringList cells = record_cells(i, *state.record(i));
        const HeldSetting* held = ledger.held(serial, i);
        cells << (held ? held->type + ", " + QString::number(held->channel) + ", " + QString::number(held->controller)
                       : QStringLiteral("-"))
              << (held ? written_text(*held) : QStringLiteral("-"))
              << compare_cell(markers.knobs[static_cast<size_t>(i)]);
        rows.push_back(cells);
    }
    context.out << text_table(rows);
}

}  // namespace

int run_show(const CliContext& context)
{
    GlobalState state;
    load_stored_records(state);
    if (context.request.controller)
        show_beside_ledger(context, state, QString::fromStdString(*context.request.controller));
    else
        show_table(context, state);
    context.out.flush();
    return cli_success;
}

}  // namespace dialcraft
