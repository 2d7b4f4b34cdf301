#include "set_button_action.h"

#include "actions/set_action.h"
#include "midi/console.h"

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
    const QString line = QString::number(data_->knob_index()) + QStringLiteral("号旋钮");
    console_line(line.toStdString());
    setup_button_action(*data_, *globalState_);
}
