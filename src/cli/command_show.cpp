// dialcraft-cli show: the stored knob table.
#include <ostream>

#include "cli/cli.h"
#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_output.h"
#include "cli/stored_records.h"
#include "cli/text_table.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/slot_mapping.h"

int run_show(const CliContext& context)
{
    GlobalState state;
    load_stored_records(state);

    if (context.request.json) {
        QJsonArray knobs;
        for (int i = 0; i < mapped_knob_count; ++i) {
            const CreateSetupAreaViewData& record = *state.record(i);
            knobs.append(QJsonObject{{"knob", i},
                                     {"type", record.message_type_menu_string()},
                                     {"channel", record.message_channel_menu_string()},
                                     {"controller", record.message_controller_number_code_string()}});
        }
        context.out << json_line(knobs);
    } else {
        std::vector<QStringList> rows{{QStringLiteral("旋钮(knob)"), QStringLiteral("类型(type)"),
                                       QStringLiteral("通道(channel)"), QStringLiteral("控制器号(controller)")}};
        for (int i = 0; i < mapped_knob_count; ++i) {
            const CreateSetupAreaViewData& record = *state.record(i);
            rows.push_back({QString::number(i), shown_field(record.message_type_menu_string()),
                            shown_field(record.message_channel_menu_string()),
                            shown_field(record.message_controller_number_code_string())});
        }
        context.out << text_table(rows);
    }
    context.out.flush();
    return cli_success;
}
