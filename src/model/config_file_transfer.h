#pragma once
// The import and export steps of the device and file panel, without the
// dialogs: the document, the chosen file's location, the conversions in both
// directions and the texts and lines of each step. The window's dialog
// workflow holds the dialogs' flags and calls these steps from its buttons
// and the dialogs' completions; dialcraft-cli calls them directly.
#include <QObject>
#include <QString>
#include <QUrl>

#include "model/global_state.h"
#include "model/text_document.h"

namespace dialcraft {

// The export's text of a slot table: one slot per line, the type placeholder
// written as "Control Change".
QString export_text(const QStringList& settings);

class ConfigFileTransfer : public QObject {
    Q_OBJECT
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)
    Q_PROPERTY(QString fileURLString READ fileURLString NOTIFY fileURLStringChanged)
    Q_PROPERTY(QString documentText READ documentText NOTIFY documentTextChanged)

public:
    explicit ConfigFileTransfer(QObject* parent = nullptr);

    GlobalState* globalState() const;
    void setGlobalState(GlobalState* state);
    QString fileURLString() const;
    QString documentText() const;

    TextDocument document;  // starts as "123"

    // The export button's steps after raising the save dialog: the status
    // text, knobs 0..26 into the table, updateDocument().
    void prepareExport();
    // Writes `document` to the file the save dialog chose and prints the
    // location, or the failure; on failure also hands the reason back.
    bool writeDocument(const QUrl& url, QString* failure = nullptr);
    // The save dialog reported an error: it is printed as given.
    void saveFailed(const QString& error);
    // The import button's step after raising the open dialog: the status text.
    void prepareImport();
    // The open dialog's completion: prints the location, loads the file,
    // refreshes the records from the table as it stands; the file's slots are
    // applied later on the event loop.
    void importFile(const QUrl& url);
    // The open dialog reported an error: it is printed as given.
    void openFailed(const QString& error);

    void updateDocument();
    // Returns how many slots the text held, before any padding.
    qsizetype reverseUpdateDocument();
    void loadFromLocalFile();

signals:
    void globalStateChanged();
    void fileURLStringChanged();
    void documentTextChanged();

    // What became of the files, for the window's status line; nothing is
    // printed for these. exportPrepared: the table and the document are ready
    // for the save dialog. fileRead: the import's queued block has applied
    // `slotCount` slots of the file (before padding).
    void exportPrepared();
    void fileSaved(const QUrl& url);
    void fileNotSaved(const QString& reason);
    void fileRead(const QUrl& url, qsizetype slotCount);
    void fileNotRead(const QString& location);

private:
    GlobalState& state() const;
    void setDocumentText(const QString& text);

    GlobalState* state_ = nullptr;
    QString fileURLString_;
};

}  // namespace dialcraft
