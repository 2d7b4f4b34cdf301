#include "ui/dialogs/file_dialog_flow.h"

namespace dialcraft {

FileDialogFlow::FileDialogFlow(QObject* parent) : QObject(parent), transfer_(new ConfigFileTransfer(this))
{
    transfer_->setObjectName(QStringLiteral("fileTransfer"));
    connect(transfer_, &ConfigFileTransfer::globalStateChanged, this, &FileDialogFlow::globalStateChanged);
}

void FileDialogFlow::setGlobalState(GlobalState* state)
{
    transfer_->setGlobalState(state);
}

void FileDialogFlow::setImporting(bool value)
{
    if (importing_ == value)
        return;
    importing_ = value;
    emit importingChanged();
}

void FileDialogFlow::setExporting(bool value)
{
    if (exporting_ == value)
        return;
    exporting_ = value;
    emit exportingChanged();
}

void FileDialogFlow::exportButtonPressed()
{
    setExporting(true);
    transfer_->prepareExport();
}

void FileDialogFlow::exportCompleted(const QUrl& url)
{
    setExporting(false);
    transfer_->writeDocument(url);
}

void FileDialogFlow::exportFailed(const QString& error)
{
    setExporting(false);
    transfer_->saveFailed(error);
}

void FileDialogFlow::importButtonPressed()
{
    setImporting(true);
    transfer_->prepareImport();
}

void FileDialogFlow::importCompleted(const QUrl& url)
{
    setImporting(false);
    transfer_->importFile(url);
}

void FileDialogFlow::importFailed(const QString& error)
{
    setImporting(false);
    transfer_->openFailed(error);
}

void FileDialogFlow::dialogCancelled()
{
    setImporting(false);
    setExporting(false);
}

}  // namespace dialcraft
