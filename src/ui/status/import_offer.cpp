#include "ui/status/import_offer.h"

#include "model/slot_mapping.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"

namespace dialcraft {

ImportOffer::ImportOffer(GlobalState& state, WindowStatus& status) : QObject(&status), state_(state), status_(status) {}

QString ImportOffer::text() const
{
    return import_offer_text;
}

QString ImportOffer::buttonText() const
{
    return show_imported_button_text;
}

void ImportOffer::offer()
{
    setOffered(true);
}

void ImportOffer::withdraw()
{
    setOffered(false);
}

void ImportOffer::showImported()
{
    if (!offered_)
        return;
    // The panel view of the refresh prints nothing, as the import's own does.
    for (int knob = 0; knob < mapped_knob_count; ++knob)
        SetupAreaData_index_config_to_UI(state_, knob, SlotMappingView::CreateConfigAreaView);
    setOffered(false);
    status_.setMessage(imported_values_shown_text);
}

void ImportOffer::setOffered(bool offered)
{
    if (offered_ == offered)
        return;
    offered_ = offered;
    emit offeredChanged();
}

}  // namespace dialcraft
