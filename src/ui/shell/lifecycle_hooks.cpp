#include "ui/shell/lifecycle_hooks.h"

#include "midi/midi_link.h"
#include "model/handover.h"
#include "model/slot_mapping.h"
#include "model/stored_configuration.h"
#include "model/table_sync.h"

namespace dialcraft {

void start_up_hook(GlobalState& state)
{
    midi_init();
    set_device_name(default_device_code);
    loadCustomInfo();
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_config_to_UI(state, i, SlotMappingView::ContentView);
    device_connect_state_retval[10] = 0;
    device_connect_state_retval[11] = 0;
    // From here on the window follows other programs' writes of the store
    // and journals its edits; nothing of it prints.
    TableSync::of(state)->start();
}

void shut_down_hook(GlobalState& state)
{
    midi_exit();
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_UI_to_config(state, i, SlotMappingView::ContentView);
    // saveCustomInfo, under the table's lock, with what other programs
    // stored meanwhile merged in first.
    TableSync::of(state)->saveMerged();
}

}  // namespace dialcraft
