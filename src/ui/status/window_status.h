#pragma once
// The status line of one window: what the last press, set-all run, export or
// import really did, next to the text area. One per GlobalState,
// created on first use as the state's child, so the set button (which only
// knows the state) and the window's items reach the same one.
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include "ui/monitor/knob_monitor.h"

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
    // True while a set-all run goes on: the window's other controls are off.
    Q_PROPERTY(bool busy READ busy NOTIFY busyChanged)

public:
    // The one status of `state`, created on first use.
    static WindowStatus* of(GlobalState& state);

    QString message() const { return message_; }
    void setMessage(const QString& text);
    SetAllRun* setAll() const { return setAll_; }
    LedgerMarkerList* ledgerMarkers() const { return ledgerMarkers_; }
    KnobMonitor* monitor() const { return monitor_; }
    TableSync* tableSync() const { return tableSync_; }
    QString restoreOfferText() const;
    bool busy() const;

signals:
    void messageChanged();
    void busyChanged();

private:
    explicit WindowStatus(GlobalState& state);

    QString message_;
    LedgerMarkerList* ledgerMarkers_;
    KnobMonitor* monitor_;
    TableSync* tableSync_;
    SetAllRun* setAll_;
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
