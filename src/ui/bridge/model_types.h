#pragma once
// The model's types as QML sees them. The state and records are created by
// the model, never by QML; the file transfer belongs to the window's file
// dialog workflow.
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include "model/config_file_transfer.h"
#include "model/global_state.h"
#include "model/knob_record.h"
#include "model/ledger_marker_list.h"
#include "model/table_sync.h"

namespace dialcraft {

struct GlobalStateForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::GlobalState)
    QML_NAMED_ELEMENT(GlobalState)
    QML_UNCREATABLE("The main window owns the one GlobalState.")
};

struct CreateSetupAreaViewDataForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::CreateSetupAreaViewData)
    QML_NAMED_ELEMENT(CreateSetupAreaViewData)
    QML_UNCREATABLE("Knob records belong to the GlobalState.")
};

struct CreateConfigAreaViewDataForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::CreateConfigAreaViewData)
    QML_NAMED_ELEMENT(CreateConfigAreaViewData)
    QML_UNCREATABLE("The device panel's record belongs to the GlobalState.")
};

struct ConfigFileTransferForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::ConfigFileTransfer)
    QML_NAMED_ELEMENT(ConfigFileTransfer)
    QML_UNCREATABLE("Each FileDialogFlow owns its file transfer.")
};

struct LedgerMarkerListForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::LedgerMarkerList)
    QML_NAMED_ELEMENT(LedgerMarkerList)
    QML_UNCREATABLE("Each window status has the markers of its state.")
};

struct TableSyncForeign {
    Q_GADGET
    QML_FOREIGN(dialcraft::TableSync)
    QML_NAMED_ELEMENT(TableSync)
    QML_UNCREATABLE("Each window status has the table sync of its state.")
};

}  // namespace dialcraft
