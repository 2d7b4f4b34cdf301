#include "ui/press/set_all_run.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>

#include "model/global_state.h"
#include "model/ledger_marker_list.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/shell/content_view.h"
#include "ui/status/window_status.h"

namespace dialcraft {

SetAllRun::SetAllRun(GlobalState& state, WindowStatus& status) : QObject(&status), state_(state), status_(status) {}

QList<int> SetAllRun::runOrder()
{
    QList<int> order;
    for (int record : ContentView::customOrderIndices()) {
        if (record < mapped_knob_count)
            order.append(record);
    }
    return order;
}

void SetAllRun::start(QQuickWindow* window)
{
    if (running_)
        return;
    window_ = window;
    plan_.clear();
    tally_ = SetAllTally{};
    for (int record : runOrder()) {
        if (state_.record(record)->message_type_menu_string() == Default_TYPE_STRING)
            ++tally_.skipped;
        else
            plan_.append(record);
    }
    const LedgerMarkerList& held = *status_.ledgerMarkers();
    if (onlyChanged_ && held.serialHasEntries()) {
        const QList<int> changed = held.knobsToProgram(plan_);
        tally_.held = static_cast<int>(plan_.size() - changed.size());
        plan_ = changed;
    }
    status_.monitor()->beginBatch();
    done_ = 0;
    accepted_ = 0;
    refused_ = 0;
    destinations_.clear();
    stopRequested_ = false;
    running_ = true;
    status_.pressStarted();
    status_.setMessage(set_all_progress_text(0, total(), plan_.isEmpty() ? 0 : plan_.first()));
    emit progressChanged();
    emit runningChanged();
    scheduleNext();
    // The window would draw the greyed-out controls only when the platform's
    // update timer (5 ms on X11 and offscreen) runs out; ask for that frame
    // at the next turn instead. Between knobs the timer has long run out
    // during the press, so only the start needs this.
    if (window_ && window_->isExposed())
        QCoreApplication::postEvent(window_, new QEvent(QEvent::UpdateRequest));
}

void SetAllRun::setOnlyChanged(bool only)
{
    if (onlyChanged_ == only)
        return;
    onlyChanged_ = only;
    emit onlyChangedChanged();
}

void SetAllRun::stop()
{
    if (running_)
        stopRequested_ = true;
}

void SetAllRun::scheduleNext()
{
    const int turn = ++turn_;
    if (!window_ || !window_->isExposed()) {
        QTimer::singleShot(0, this, [this, turn] { takeTurn(turn); });
        return;
    }
    disconnect(sync_);
    sync_ = connect(
        window_, &QQuickWindow::afterSynchronizing, this, [this, turn] { takeTurn(turn); },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    window_->update();
    QTimer::singleShot(sync_wait_limit_ms, this, [this, turn] { takeTurn(turn); });
}

void SetAllRun::takeTurn(int turn)
{
    if (turn != turn_ || !running_)
        return;
    ++turn_;  // the other trigger of this turn finds it stale
    disconnect(sync_);
    pressNext();
}

void SetAllRun::pressNext()
{
    if (stopRequested_ || done_ >= plan_.size()) {
        finish();
        return;
    }
    const SetPressOutcome outcome = press_set_button(*state_.record(plan_[done_]), state_);
    status_.monitor()->programmed(outcome, *state_.record(plan_[done_]), true);
    // A knob that got as far as sending counts by what the service took,
    // whatever the text area says: short of all five it was not sent.
    if (outcome.programmed && !all_messages_accepted(outcome))
        tally_.notSent.append(outcome);
    else if (!outcome.succeeded)
        tally_.failed.append(outcome);
    else
        ++tally_.succeeded;
    accepted_ += outcome.accepted;
    refused_ += outcome.refused;
    for (const QString& name : outcome.destinations) {
        if (!destinations_.contains(name))
            destinations_.append(name);
    }
    ++done_;
    status_.setMessage(set_all_progress_text(done_, total(), outcome.knob));
    emit progressChanged();
    scheduleNext();
}

void SetAllRun::finish()
{
    tally_.stopped = done_ < plan_.size();
    tally_.notRun = static_cast<int>(plan_.size()) - done_;
    state_.setFullText(set_all_summary(tally_));
    QString message = set_all_sent_text(accepted_, refused_, destinations_);
    // The run's sum could hide a knob that got nothing through; name them.
    QList<int> notSent;
    for (const SetPressOutcome& press : tally_.notSent)
        notSent.append(press.knob);
    if (!notSent.isEmpty())
        message += u'\n' + set_all_not_sent_text(notSent);
    // Any knob that was meant to be set and did not get all of its messages
    // through makes the whole run's line a warning.
    const bool allThrough = std::all_of(tally_.failed.begin(), tally_.failed.end(),
                                        [](const SetPressOutcome& press) { return all_messages_accepted(press); });
    if (notSent.isEmpty() && allThrough)
        status_.setMessage(message);
    else
        status_.setWarningMessage(message);
    // The verification's count changes as knobs are turned; the warning
    // above it stays as it is.
    if (status_.monitor()->batchPending())
        status_.appendMessage(status_.monitor()->batchText());
    running_ = false;
    stopRequested_ = false;
    window_ = nullptr;
    emit runningChanged();
    emit finished();
}

}  // namespace dialcraft
