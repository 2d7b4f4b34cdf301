#pragma once
// The import and export steps of the device and file panel, without the
// dialogs: the window calls the *Pressed slots when a toolbar button is pressed
// and the *Completed / *Failed slots from the dialogs' completion handlers.
#include <QObject>
#include <QString>
#include <QUrl>

#include "model/global_state.h"
#include "model/text_document.h"

class ConfigFileTransfer : public QObject {
    Q_OBJECT
    Q_PROPERTY(GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)
    Q_PROPERTY(bool importing READ importing WRITE setImporting NOTIFY importingChanged)
    Q_PROPERTY(bool exporting READ exporting WRITE setExporting NOTIFY exportingChanged)
    Q_PROPERTY(QString fileURLString READ fileURLString NOTIFY fileURLStringChanged)
    Q_PROPERTY(QString documentText READ documentText NOTIFY documentTextChanged)

public:
    explicit ConfigFileTransfer(QObject* parent = nullptr);

    GlobalState* globalState() const;
    void setGlobalState(GlobalState* state);
    bool importing() const;
    void setImporting(bool value);
    bool exporting() const;
    void setExporting(bool value);
    QString fileURLString() const;
    QString documentText() const;

    TextDocument document;  // starts as "123"

    // Export: exporting = true, status text, knobs 0..26 into the table, updateDocument().
    Q_INVOKABLE void exportButtonPressed();
    // Writes `document` to the file the save dialog chose and prints the outcome.
    Q_INVOKABLE void exportCompleted(const QUrl& url);
    // The writing part of exportCompleted, for callers that need the outcome:
    // prints the location or the failure as exportCompleted does, and on
    // failure also hands the reason back.
    bool writeDocument(const QUrl& url, QString* failure = nullptr);
    Q_INVOKABLE void exportFailed(const QString& error);
    // Import: importing = true, status text.
    Q_INVOKABLE void importButtonPressed();
    // The open dialog's completion: prints the location, loads the file, refreshes
    // the records from the table as it stands; the file's slots are applied later
    // on the event loop.
    Q_INVOKABLE void importCompleted(const QUrl& url);
    Q_INVOKABLE void importFailed(const QString& error);
    // A dialog closed without a choice.
    Q_INVOKABLE void dialogCancelled();

    void updateDocument();
    // Returns how many slots the text held, before any padding.
    qsizetype reverseUpdateDocument();
    void loadFromLocalFile();

signals:
    void globalStateChanged();
    void importingChanged();
    void exportingChanged();
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
    bool importing_ = false;
    bool exporting_ = false;
    QString fileURLString_;
};
