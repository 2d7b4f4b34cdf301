#pragma once
// The status line of one window: what the last press, set-all run, export or
// import really did, next to the text area. One per GlobalState,
// created on first use as the state's child, so the set button (which only
// knows the state) and the window's items reach the same one.
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "ui/monitor/knob_monitor.h"
#include "ui/status/import_offer.h"

namespace dialcraft {

class GlobalState;
class LedgerMarkerList;
class SetAllRun;
class TableSync;

class WindowStatus : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each GlobalState has one; reach it with StatusBoard.of(globalState).")
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)
    // The message is a warning: a press or set-all run that got fewer than
    // all of its messages accepted. Drawn with colour and a symbol; it holds
    // until the next press, and what is said meanwhile is shown under it.
    Q_PROPERTY(bool warning READ warning NOTIFY warningChanged)
    // What a screen reader is told about the status line: the message, with
    // a warning's word in front.
    Q_PROPERTY(QString spokenMessage READ spokenMessage NOTIFY messageChanged)
    Q_PROPERTY(dialcraft::SetAllRun* setAll READ setAll CONSTANT)
    // What the controller chosen in the model menu holds, knob by knob,
    // against the panels: the markers and the status line's sum.
    Q_PROPERTY(dialcraft::LedgerMarkerList* ledgerMarkers READ ledgerMarkers CONSTANT)
    // What the controllers send, live: the monitor list, the panels'
    // activity and the verification of knobs just programmed.
    Q_PROPERTY(dialcraft::KnobMonitor* monitor READ monitor CONSTANT)
    // The stored table shared with other programs, and the offer to restore
    // the edits of a window that ended uncleanly.
    Q_PROPERTY(dialcraft::TableSync* tableSync READ tableSync CONSTANT)
    Q_PROPERTY(QString restoreOfferText READ restoreOfferText CONSTANT)
    // After an import: the offer to show the imported values in the panels.
    Q_PROPERTY(dialcraft::ImportOffer* importOffer READ importOffer CONSTANT)
    // True while a set-all run goes on: the window's other controls are off.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    // The one status of `state`, created on first use.
    static WindowStatus* of(GlobalState& state);

    QString message() const { return message_; }
    // Shows `text`, under the warning if one holds.
    void setMessage(const QString& text);
    // Adds `line` under what the status line shows now.
    void appendMessage(const QString& line);
    // Shows `text` as a warning, held until pressStarted().
    void setWarningMessage(const QString& text);
    // A press or set-all run begins: the last one's warning is over.
    void pressStarted() { heldWarning_.clear(); }
    bool warning() const { return warning_; }
    QString spokenMessage() const;
    SetAllRun* setAll() const { return setAll_; }
    LedgerMarkerList* ledgerMarkers() const { return ledgerMarkers_; }
    KnobMonitor* monitor() const { return monitor_; }
    TableSync* tableSync() const { return tableSync_; }
    ImportOffer* importOffer() const { return importOffer_; }
    QString restoreOfferText() const;
    bool busy() const;

signals:
    void messageChanged();
    void warningChanged();
    void busyChanged();

private:
    explicit WindowStatus(GlobalState& state);
    void show(const QString& text, bool warning);

    QString message_;
    bool warning_ = false;
    QString heldWarning_;
    LedgerMarkerList* ledgerMarkers_;
    KnobMonitor* monitor_;
    TableSync* tableSync_;
    SetAllRun* setAll_;
    ImportOffer* importOffer_;
};

// QML's way to the status of a state: StatusBoard.of(globalState).
class StatusBoard : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    explicit StatusBoard(QObject* parent = nullptr);

    Q_INVOKABLE dialcraft::WindowStatus* of(dialcraft::GlobalState* state) const;
};

}  // namespace dialcraft
