#include "ui/press/set_button_action.h"

#include "ui/monitor/knob_monitor.h"
#include "ui/press/set_press.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"

namespace dialcraft {

SetButtonAction::SetButtonAction(QObject* parent) : QObject(parent) {}

void SetButtonAction::setData(CreateSetupAreaViewData* record)
{
    if (data_ == record)
        return;
    data_ = record;
    emit dataChanged();
}

void SetButtonAction::setGlobalState(GlobalState* state)
{
    if (globalState_ == state)
        return;
    globalState_ = state;
    emit globalStateChanged();
}

void SetButtonAction::press()
{
    if (!data_ || !globalState_)
        return;
    WindowStatus* status = WindowStatus::of(*globalState_);
    status->pressStarted();
    const SetPressOutcome outcome = press_set_button(*data_, *globalState_);
    if (all_messages_accepted(outcome))
        status->setMessage(press_status_text(outcome));
    else
        status->setWarningMessage(press_status_text(outcome));
    status->monitor()->programmed(outcome, *data_, false);
}

}  // namespace dialcraft
