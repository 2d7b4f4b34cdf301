#include "model/config_file_transfer.h"

#include <QFile>
#include <QMetaObject>
#include <QSaveFile>

#include "base/fatal_error.h"
#include "model/configuration.h"
#include "model/document_slots.h"
#include "model/handover.h"
#include "model/list_notation.h"
#include "model/local_file.h"
#include "model/print_line.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

namespace dialcraft {

ConfigFileTransfer::ConfigFileTransfer(QObject* parent) : QObject(parent), document{QStringLiteral("123")} {}

GlobalState* ConfigFileTransfer::globalState() const
{
    return state_;
}

void ConfigFileTransfer::setGlobalState(GlobalState* state)
{
    if (state_ == state)
        return;
    state_ = state;
    emit globalStateChanged();
}

QString ConfigFileTransfer::fileURLString() const
{
    return fileURLString_;
}

QString ConfigFileTransfer::documentText() const
{
    return document.text;
}

GlobalState& ConfigFileTransfer::state() const
{
    // The window hands the state over before any button can be pressed.
    if (state_ == nullptr)
        fatal_error(unwrap_nil_message);
    return *state_;
}

void ConfigFileTransfer::setDocumentText(const QString& text)
{
    document.text = text;
    emit documentTextChanged();
}

void ConfigFileTransfer::prepareExport()
{
    state().setFullText(QStringLiteral("导出文件:\n导出配置文件"));
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_UI_to_config(state(), i, SlotMappingView::CreateConfigAreaView);
    updateDocument();
    emit exportPrepared();
}

bool ConfigFileTransfer::writeDocument(const QUrl& url, QString* failure)
{
    QSaveFile file(url.toLocalFile());
    const QByteArray bytes = document.toBytes();
    if (!url.isLocalFile() || !file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        const QString reason = url.isLocalFile() ? file.errorString() : QStringLiteral("Not a local file");
        print_line(QStringLiteral("Failed to write file: ") + reason);
        if (failure)
            *failure = reason;
        emit fileNotSaved(reason);
        return false;
    }
    print_line(url.toString(QUrl::FullyEncoded));
    emit fileSaved(url);
    return true;
}

void ConfigFileTransfer::saveFailed(const QString& error)
{
    print_line(error);
    emit fileNotSaved(error);
}

void ConfigFileTransfer::prepareImport()
{
    state().setFullText(QStringLiteral("导入文件:\n导入配置文件"));
}

void ConfigFileTransfer::importFile(const QUrl& url)
{
    const QString location = url.toString(QUrl::FullyEncoded);
    print_line(location);
    fileURLString_ = location;
    emit fileURLStringChanged();

    loadFromLocalFile();

    // The file's slots are applied only once the event loop runs again, so the
    // records are refreshed from the table as it stood before this import.
    print_line(QStringLiteral("PPP Loaded settings: ") + list_notation(configuration.settings));
    for (int i = 0; i < mapped_knob_count; ++i)
        SetupAreaData_index_config_to_UI(state(), i, SlotMappingView::CreateConfigAreaView);
    device_connect_state_retval[10] = 0;
    device_connect_state_retval[11] = 0;
}

void ConfigFileTransfer::openFailed(const QString& error)
{
    print_line(error);
}

QString export_text(const QStringList& settings)
{
    QString text = settings.join(u'\n');
    text.replace(Default_TYPE_STRING, CONTROL_CHANGE);
    return text;
}

void ConfigFileTransfer::updateDocument()
{
    setDocumentText(export_text(configuration.settings));
}

qsizetype ConfigFileTransfer::reverseUpdateDocument()
{
    QStringList pieces = split_document_slots(document.text).pieces;
    const qsizetype read = pieces.size();
    pad_to_300_slots(pieces);
    configuration.settings = std::move(pieces);
    print_line(QStringLiteral("Updated configuration.settings count: ") +
               QString::number(configuration.settings.size()));
    print_line(QStringLiteral("First 10 elements: ") +
               list_notation(configuration.settings.first(std::min<qsizetype>(10, configuration.settings.size()))));
    return read;
}

void ConfigFileTransfer::loadFromLocalFile()
{
    const QUrl url(fileURLString_, QUrl::StrictMode);
    if (fileURLString_.isEmpty() || !url.isValid() || url.isRelative()) {
        print_line(QStringLiteral("Invalid URL"));
        emit fileNotRead(fileURLString_);
        return;
    }
    if (!url.isLocalFile()) {
        print_line(QStringLiteral("Failed to read file: ") + QStringLiteral("Only local files can be read"));
        emit fileNotRead(fileURLString_);
        return;
    }
    QByteArray bytes;
    QString error;
    if (!read_whole_file(local_path_bytes(url), &bytes, &error)) {
        print_line(QStringLiteral("Failed to read file: ") + error);
        emit fileNotRead(fileURLString_);
        return;
    }
    const QString text = TextDocument::fromBytes(bytes).text;
    QMetaObject::invokeMethod(
        this,
        [this, text, url] {
            setDocumentText(text);
            const qsizetype read = reverseUpdateDocument();
            emit fileRead(url, read);
        },
        Qt::QueuedConnection);
}

}  // namespace dialcraft
