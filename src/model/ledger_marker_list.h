#pragma once
// The ledger markers of knobs 0 to 26 for the controller chosen in the model
// menu, kept up to date as the panels and the menu change, for the window to
// bind to: markers[i] is knob i's KnobMarker as a number (0 written 已写入,
// 1 differs 与控制器不同, 2 never written 未写入), summaryText the status
// line's "4AC3CC27: 已写入 20, 不同 3, 未写入 4".
#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QString>

#include "model/controller_ledger.h"
#include "model/file_watch.h"
#include "model/ledger_markers.h"

namespace dialcraft {

class GlobalState;

class LedgerMarkerList : public QObject {
    Q_OBJECT
    Q_PROPERTY(dialcraft::GlobalState* globalState READ globalState WRITE setGlobalState NOTIFY globalStateChanged)
    Q_PROPERTY(QString serial READ serial NOTIFY markersChanged)
    Q_PROPERTY(QList<int> markers READ markers NOTIFY markersChanged)
    Q_PROPERTY(int written READ written NOTIFY markersChanged)
    Q_PROPERTY(int differs READ differs NOTIFY markersChanged)
    Q_PROPERTY(int neverWritten READ neverWritten NOTIFY markersChanged)
    Q_PROPERTY(QString summaryText READ summaryText NOTIFY markersChanged)
    Q_PROPERTY(bool serialHasEntries READ serialHasEntries NOTIFY markersChanged)

public:
    explicit LedgerMarkerList(QObject* parent = nullptr);

    GlobalState* globalState() const { return state_; }
    void setGlobalState(GlobalState* state);

    QString serial() const { return serial_; }
    QList<int> markers() const;
    int written() const { return markers_.written; }
    int differs() const { return markers_.differs; }
    int neverWritten() const { return markers_.never_written; }
    QString summaryText() const;
    // Whether the ledger holds any knob of the chosen controller: only then is
    // "only changed" worth offering.
    bool serialHasEntries() const;
    const LedgerMarkers& knobMarkers() const { return markers_; }

    // Reads the ledger file again. It is also read again by itself whenever
    // the file changes, by this process or another (dialcraft-cli set).
    Q_INVOKABLE void reload();
    // The ledger as last read.
    const ControllerLedger& ledger() const { return ledger_; }
    // Of `knobs`, those whose setting the chosen controller does not hold
    // already, in the same order.
    Q_INVOKABLE QList<int> knobsToProgram(const QList<int>& knobs) const;

signals:
    void globalStateChanged();
    void markersChanged();

private:
    void watch_records();
    // After a change of the table or the chosen controller: tells the window
    // only when a marker or the serial changed, since every panel's marker
    // rereads the whole list and a start's table refresh changes 81 fields.
    void update();
    // Computes the markers again; `ledger_changed` tells the window even when
    // they stayed the same, as serialHasEntries may not have.
    void refresh(bool ledger_changed);

    GlobalState* state_ = nullptr;
    ControllerLedger ledger_;
    QString serial_;
    LedgerMarkers markers_;
    QList<QMetaObject::Connection> record_connections_;
    // The ledger file and its folder.
    FileWatch* file_watch_;
};

}  // namespace dialcraft
