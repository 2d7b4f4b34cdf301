#pragma once
// The set-all run: the set press of every working knob in display order, one
// knob per turn of the event loop, with its progress, a stop after the
// current knob, and a summary in fullText. User-interface thread only, like
// the single press.
//
// Each knob blocks the thread for its sixteen probes and paced messages, so
// the next knob waits until the window has taken in what changed: it is
// queued from the window's next scene-graph sync, which happens on this
// thread (or with it blocked) after the window was told to update. Drawing
// itself may then go on on the render thread while the next knob runs. A
// window that draws nothing (not exposed, or without a window at all) gets
// the next knob from a zero timer instead; a sync that never comes is
// given up after a while so the run cannot stall.
#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "ui/status/status_texts.h"

class QQuickWindow;

namespace dialcraft {

class GlobalState;
class WindowStatus;

class SetAllRun : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each window status has one set-all run.")
    Q_PROPERTY(bool running READ running NOTIFY runningChanged)
    // Knobs pressed so far, of `total` knobs to set (those with a chosen type).
    Q_PROPERTY(int done READ done NOTIFY progressChanged)
    Q_PROPERTY(int total READ total NOTIFY progressChanged)
    // Press only the knobs whose setting the chosen controller does not hold
    // already (by the ledger); the others are counted as already held.
    Q_PROPERTY(bool onlyChanged READ onlyChanged WRITE setOnlyChanged NOTIFY onlyChangedChanged)

public:
    SetAllRun(GlobalState& state, WindowStatus& status);

    bool running() const { return running_; }
    int done() const { return done_; }
    int total() const { return static_cast<int>(plan_.size()); }
    bool onlyChanged() const { return onlyChanged_; }
    void setOnlyChanged(bool only);

    // Record indices in the order a run presses them: the window's display
    // order without the placeholder record 27.
    static QList<int> runOrder();

    // How long a knob waits at most for the window's sync before it goes on.
    static constexpr int sync_wait_limit_ms = 250;

    // Plans the run and presses its first knob once `window` (which shows the
    // run) has taken in the start. Nothing when a run is already going on.
    Q_INVOKABLE void start(QQuickWindow* window = nullptr);
    // The run ends before its next knob; the knob being set is finished.
    Q_INVOKABLE void stop();

signals:
    void runningChanged();
    void progressChanged();
    void onlyChangedChanged();
    // After the summary has been written.
    void finished();

private:
    void scheduleNext();
    // The queued turn for knob turn `turn`; stale turns (the sync and the
    // time limit both fire) do nothing.
    void takeTurn(int turn);
    void pressNext();
    void finish();

    GlobalState& state_;
    WindowStatus& status_;
    bool running_ = false;
    bool stopRequested_ = false;
    bool onlyChanged_ = false;
    QPointer<QQuickWindow> window_;
    QMetaObject::Connection sync_;
    int turn_ = 0;
    QList<int> plan_;  // record indices still to press come from plan_[done_]
    int done_ = 0;
    SetAllTally tally_;
    int accepted_ = 0;
    int refused_ = 0;
    QStringList destinations_;
};

}  // namespace dialcraft
