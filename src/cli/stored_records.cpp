#include "cli/stored_records.h"

#include "model/global_state.h"
#include "model/slot_mapping.h"
#include "model/stored_configuration.h"

namespace dialcraft {

void load_stored_records(GlobalState& state)
{
    loadCustomInfo();
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_config_to_UI(state, i, SlotMappingView::ContentView);
}

}  // namespace dialcraft
