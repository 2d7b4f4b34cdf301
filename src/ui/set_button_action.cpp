#include "set_button_action.h"

#include "actions/set_action.h"
#include "model/print_line.h"

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
    print_line(QString::number(data_->knob_index()) + QStringLiteral("号旋钮"));
    setup_button_action(*data_, *globalState_);
}
