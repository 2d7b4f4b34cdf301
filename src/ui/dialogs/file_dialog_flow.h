#pragma once
// The workflow between the top bar's import and export buttons, the two file
// dialogs and the file transfer. Each button raises its dialog's flag (the
// dialog is shown while it stands) and then runs the transfer's steps; each
// dialog's completion lowers the flag and hands the outcome to the transfer.
#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include "model/config_file_transfer.h"
#include "model/global_state.h"

namespace dialcraft {

class FileDialogFlow : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)
    // The open dialog is shown while this stands.
    Q_PROPERTY(bool importing READ importing WRITE setImporting NOTIFY importingChanged)
    // The save dialog is shown while this stands.
    Q_PROPERTY(bool exporting READ exporting WRITE setExporting NOTIFY exportingChanged)
    Q_PROPERTY(dialcraft::ConfigFileTransfer* transfer READ transfer CONSTANT)

public:
    explicit FileDialogFlow(QObject* parent = nullptr);

    GlobalState* globalState() const { return transfer_->globalState(); }
    void setGlobalState(GlobalState* state);
    bool importing() const { return importing_; }
    void setImporting(bool value);
    bool exporting() const { return exporting_; }
    void setExporting(bool value);
    ConfigFileTransfer* transfer() const { return transfer_; }

    // Export: exporting = true, then the transfer's export steps.
    Q_INVOKABLE void exportButtonPressed();
    // The save dialog chose a file: exporting = false, the document written.
    Q_INVOKABLE void exportCompleted(const QUrl& url);
    Q_INVOKABLE void exportFailed(const QString& error);
    // Import: importing = true, then the status text.
    Q_INVOKABLE void importButtonPressed();
    // The open dialog chose a file: importing = false, the file imported.
    Q_INVOKABLE void importCompleted(const QUrl& url);
    Q_INVOKABLE void importFailed(const QString& error);
    // A dialog closed without a choice.
    Q_INVOKABLE void dialogCancelled();

signals:
    void globalStateChanged();
    void importingChanged();
    void exportingChanged();

private:
    // A child, so it goes with the workflow and the import's queued block
    // with it.
    ConfigFileTransfer* transfer_;
    bool importing_ = false;
    bool exporting_ = false;
};

}  // namespace dialcraft
