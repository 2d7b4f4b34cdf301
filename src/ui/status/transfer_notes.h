#pragma once
// Puts what the import and export really did into the status line: before a
// save, the working knobs whose empty fields will shift the lines after them
// on import; after it, where the file went; after an import, how many slots
// were read from which file. The exported bytes and the import's order of
// steps stay exactly as they are; this only listens.
#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "model/config_file_transfer.h"
#include "model/global_state.h"

namespace dialcraft {

class TransferNotes : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(dialcraft::ConfigFileTransfer* transfer READ transfer WRITE setTransfer NOTIFY transferChanged)
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)

public:
    explicit TransferNotes(QObject* parent = nullptr);

    ConfigFileTransfer* transfer() const { return transfer_; }
    void setTransfer(ConfigFileTransfer* transfer);
    GlobalState* globalState() const { return state_; }
    void setGlobalState(GlobalState* state);

    // Working knobs (0 to 26) with an empty slot in the table as it stands.
    static QList<int> knobsWithEmptySlots();

signals:
    void transferChanged();
    void globalStateChanged();

private:
    void say(const QString& text);
    void exportPrepared();

    QPointer<ConfigFileTransfer> transfer_;
    QPointer<GlobalState> state_;
    QString gapWarning_;  // of the export in progress
};

}  // namespace dialcraft
