#pragma once
// The set-all run: the set press of every working knob in display order, one
// knob per turn of the event loop so the window repaints between knobs, with
// its progress, a stop after the current knob, and a summary in fullText.
// User-interface thread only, like the single press.
#include <QList>
#include <QObject>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include "status_texts.h"

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

public:
    SetAllRun(GlobalState& state, WindowStatus& status);

    bool running() const { return running_; }
    int done() const { return done_; }
    int total() const { return static_cast<int>(plan_.size()); }

    // Record indices in the order a run presses them: the window's display
    // order without the placeholder record 27.
    static QList<int> runOrder();

    // Plans the run and presses its first knob on the next turn of the event
    // loop. Nothing when a run is already going on.
    Q_INVOKABLE void start();
    // The run ends before its next knob; the knob being set is finished.
    Q_INVOKABLE void stop();

signals:
    void runningChanged();
    void progressChanged();
    // After the summary has been written.
    void finished();

private:
    void scheduleNext();
    void pressNext();
    void finish();

    GlobalState& state_;
    WindowStatus& status_;
    bool running_ = false;
    bool stopRequested_ = false;
    QList<int> plan_;  // record indices still to press come from plan_[done_]
    int done_ = 0;
    SetAllTally tally_;
    int accepted_ = 0;
    int refused_ = 0;
    QStringList destinations_;
};
