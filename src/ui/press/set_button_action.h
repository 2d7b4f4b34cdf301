#pragma once
// What a knob panel's set button does: one diagnostic line naming the knob,
// then the set action on the panel's record and the shared state; what the
// MIDI service accepted during it goes to the window's status line.
#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

#include "model/global_state.h"
#include "model/knob_record.h"

namespace dialcraft {

class SetButtonAction : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(dialcraft::CreateSetupAreaViewData* data READ data WRITE setData NOTIFY dataChanged)
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)

public:
    explicit SetButtonAction(QObject* parent = nullptr);

    CreateSetupAreaViewData* data() const { return data_; }
    void setData(CreateSetupAreaViewData* record);
    GlobalState* globalState() const { return globalState_; }
    void setGlobalState(GlobalState* state);

    // Prints "<knob_index>号旋钮", then runs setup_button_action to completion,
    // and says in the status line how many messages the service accepted.
    Q_INVOKABLE void press();

signals:
    void dataChanged();
    void globalStateChanged();

private:
    QPointer<CreateSetupAreaViewData> data_;
    QPointer<GlobalState> globalState_;
};

}  // namespace dialcraft
