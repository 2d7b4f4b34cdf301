#include "model/slot_mapping.h"

#include "base/fatal_error.h"
#include "base/integer_text.h"
#include "model/configuration.h"
#include "model/global_state.h"
#include "model/print_line.h"
#include "model/vocabulary.h"

namespace dialcraft {

namespace {

void print_progress(int config_index_i)
{
    print_line("Accessing configuration.settings at index: " + QString::number(config_index_i));
}

// The knob record is element i of SetupAreaData; any other index is a
// programming error.
CreateSetupAreaViewData& knob_record(const GlobalState& state, int config_index_i)
{
    CreateSetupAreaViewData* record = state.record(config_index_i);
    if (record == nullptr)
        fatal_error(index_out_of_range_message);
    return *record;
}

// Slots are indexed directly: a knob past the end of the table is fatal,
// the table never grows here.
QString& slot(qsizetype index)
{
    QStringList& settings = configuration.settings;
    if (index < 0 || index >= settings.size())
        fatal_error(index_out_of_range_message);
    return settings[index];
}

}  // namespace

void SetupAreaData_index_UI_to_config(GlobalState& state, int config_index_i, SlotMappingView)
{
    print_progress(config_index_i);
    const CreateSetupAreaViewData& record = knob_record(state, config_index_i);
    const qsizetype first = qsizetype(config_index_i) * 3;
    slot(first) = record.message_type_menu_string();
    slot(first + 1) = record.message_channel_menu_string();
    slot(first + 2) = record.message_controller_number_code_string();
}

void SetupAreaData_index_config_to_UI(GlobalState& state, int config_index_i, SlotMappingView view)
{
    if (view == SlotMappingView::ContentView)
        print_progress(config_index_i);
    CreateSetupAreaViewData& record = knob_record(state, config_index_i);
    const qsizetype first = qsizetype(config_index_i) * 3;

    const QString type = slot(first);
    record.set_message_type_menu_string(is_programmable_type(type) ? type : Default_TYPE_STRING);

    const QString channel = slot(first + 1);
    record.set_message_channel_menu_string(number_in_scope(channel.toStdString(), 1, 16) == 1 ? channel : QString());

    // An invalid controller number clears the channel, not the controller
    // field; this crossing is long-standing behaviour and is kept on purpose.
    const QString controller = slot(first + 2);
    if (number_in_scope(controller.toStdString(), 0, 127) == 1)
        record.set_message_controller_number_code_string(controller);
    else
        record.set_message_channel_menu_string(QString());
}

}  // namespace dialcraft
