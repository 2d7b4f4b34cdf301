#include "ui/monitor/knob_monitor.h"

#include <QQmlEngine>

#include <algorithm>

#include "actions/monitor_line.h"
#include "midi/host_selection.h"
#include "model/global_state.h"
#include "model/knob_attribution.h"
#include "model/knob_record.h"
#include "model/ledger_marker_list.h"
#include "model/ledger_store.h"
#include "ui/monitor/monitor_log.h"
#include "ui/press/set_press.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"

namespace dialcraft {

namespace {
using Clock = std::chrono::steady_clock;

constexpr int knob_count = 27;

int remaining_ms(Clock::time_point until, Clock::time_point now)
{
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - now).count();
    return static_cast<int>(std::max<decltype(left)>(0, left));
}
}  // namespace

KnobMonitor::KnobMonitor(GlobalState& state, WindowStatus& status, LedgerMarkerList& ledger)
    : QObject(&status),
      state_(state),
      status_(status),
      ledger_(ledger),
      log_(new MonitorLog(this)),
      // Called on the listening thread: only a queued call crosses over.
      inbox_([this] { QMetaObject::invokeMethod(this, &KnobMonitor::schedule_frame, Qt::QueuedConnection); }),
      attribution_(&state)
{
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    QQmlEngine::setObjectOwnership(log_, QQmlEngine::CppOwnership);
    last_values_.fill(-1);
    for (QTimer* timer : {&frame_timer_, &unlight_timer_, &announce_timer_, &expire_timer_}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    connect(&frame_timer_, &QTimer::timeout, this, &KnobMonitor::frame);
    connect(&unlight_timer_, &QTimer::timeout, this, &KnobMonitor::unlight);
    connect(&announce_timer_, &QTimer::timeout, this, &KnobMonitor::announce);
    connect(&expire_timer_, &QTimer::timeout, this, &KnobMonitor::expire);
    // The ledger and the table both decide what a message matches; the
    // markers move whenever either does.
    connect(&ledger_, &LedgerMarkerList::markersChanged, this, [this] { attribution_stale_ = true; });
}

KnobMonitor::~KnobMonitor()
{
    inbox_.stop();
}

void KnobMonitor::start()
{
    if (inbox_.listening())
        return;
    // Without a MIDI service there is nothing to hear; the presence line
    // says why.
    if (inbox_.start(midi_host()) == 0)
        emit listeningChanged();
}

void KnobMonitor::setPaused(bool paused)
{
    if (paused_ == paused)
        return;
    // What came before the press is shown (or not) as the list stood then.
    frame();
    paused_ = paused;
    emit pausedChanged();
}

void KnobMonitor::clear()
{
    // What came before the press goes too.
    frame();
    log_->clear();
    last_values_.fill(-1);
    lit_until_.fill({});
    emit activityChanged();
}

QList<int> KnobMonitor::lastValues() const
{
    return QList<int>(last_values_.begin(), last_values_.end());
}

QList<int> KnobMonitor::active() const
{
    const auto now = Clock::now();
    QList<int> lit;
    for (const auto& until : lit_until_)
        lit.append(until > now ? 1 : 0);
    return lit;
}

QList<int> KnobMonitor::verified() const
{
    QList<int> flags;
    for (bool v : verified_)
        flags.append(v ? 1 : 0);
    return flags;
}

QString KnobMonitor::countsText() const
{
    return monitor_counts_text(inbox_.received(), unmatched_);
}

void KnobMonitor::schedule_frame()
{
    if (frame_timer_.isActive())
        return;
    const auto since = since_frame_.isValid() ? since_frame_.elapsed() : frame_interval.count();
    frame_timer_.start(static_cast<int>(std::max<qint64>(0, frame_interval.count() - since)));
}

void KnobMonitor::frame()
{
    since_frame_.start();
    inbox_.take(taken_);
    if (taken_.empty())
        return;
    ++frames_;
    if (attribution_stale_) {
        attribution_.set_ledger(ledger_.ledger());
        attribution_stale_ = false;
    }
    const auto now = Clock::now();
    QList<MonitorLog::Line> lines;
    std::vector<VerifyOutcome> outcomes;
    bool lit = false;
    for (const HeardMessage& heard : taken_) {
        const QString serial = QString::fromLatin1(heard.serial);
        attribution_.matched(serial, heard.message, knobs_);
        if (knobs_.empty())
            ++unmatched_;
        for (int knob : knobs_) {
            if (knob < 0 || knob >= knob_count)
                continue;
            last_values_[static_cast<size_t>(knob)] = heard.message.value;
            lit_until_[static_cast<size_t>(knob)] = now + lit_for;
            lit = true;
        }
        if (!paused_)
            lines.append(MonitorLog::Line{monitor_line(heard, knobs_), !knobs_.empty()});
        if (verification_.to_go() > 0)
            for (VerifyOutcome& outcome : verification_.observe(serial, heard.message, now))
                outcomes.push_back(std::move(outcome));
    }
    // Only the last lines of a large frame can be shown anyway.
    if (lines.size() > MonitorLog::capacity)
        lines.remove(0, lines.size() - MonitorLog::capacity);
    log_->append(lines);
    if (!lines.isEmpty()) {
        latest_pending_ = lines.constLast().text;
        if (!announce_timer_.isActive())
            announce();
    }
    if (lit) {
        emit activityChanged();
        unlight_timer_.start(static_cast<int>(lit_for.count()));
    }
    settle(outcomes);
    emit countsChanged();
}

void KnobMonitor::unlight()
{
    emit activityChanged();
}

void KnobMonitor::announce()
{
    if (since_announce_.isValid() && since_announce_.elapsed() < announce_interval.count()) {
        announce_timer_.start(static_cast<int>(announce_interval.count() - since_announce_.elapsed()));
        return;
    }
    if (latest_pending_.isEmpty() || latest_pending_ == latest_)
        return;
    since_announce_.start();
    latest_ = latest_pending_;
    emit latestChanged();
    // The newest line at the next chance, should more come meanwhile.
    announce_timer_.start(static_cast<int>(announce_interval.count()));
}

void KnobMonitor::beginBatch()
{
    verification_.begin_batch();
    programmed_.clear();
    batch_ = true;
}

void KnobMonitor::programmed(const SetPressOutcome& outcome, const CreateSetupAreaViewData& record, bool batch)
{
    if (!batch) {
        verification_.begin_batch();
        programmed_.clear();
        batch_ = false;
    }
    const int knob = outcome.knob;
    if (knob >= 0 && knob < knob_count && verified_[static_cast<size_t>(knob)]) {
        verified_[static_cast<size_t>(knob)] = false;
        emit verifiedChanged();
    }
    if (!outcome.recorded)
        return;
    const std::optional<KnobSends> now = knob_sends_from_text(knob, record.message_type_menu_string(),
                                                              record.message_channel_menu_string(),
                                                              record.message_controller_number_code_string());
    if (!now)
        return;
    // The ledger is read again only when its file's change comes through
    // the event loop, after this press: what it holds now is what the
    // controller held before.
    std::optional<KnobSends> before;
    if (const HeldSetting* held = ledger_.ledger().held(outcome.serial, knob))
        before = knob_sends_from_held(knob, *held);
    verification_.expect(outcome.serial, *now, before, Clock::now());
    programmed_[{outcome.serial, knob}] = Programmed{record.message_type_menu_string(), now->channel, now->number};
    expire_timer_.start(remaining_ms(*verification_.next_deadline(), Clock::now()));
    if (!batch)
        status_.appendMessage(verify_invite_text(knob));
}

QString KnobMonitor::batchText() const
{
    const int timed_out = verification_.batch_size() - verification_.verified() - verification_.to_go();
    return verify_batch_text(verification_.verified(), verification_.to_go(), timed_out);
}

void KnobMonitor::settle(const std::vector<VerifyOutcome>& outcomes)
{
    if (outcomes.empty())
        return;
    QStringList notes;
    bool verified_any = false;
    for (const VerifyOutcome& outcome : outcomes) {
        const auto key = std::make_pair(outcome.serial, outcome.knob);
        switch (outcome.verdict) {
        case VerifyVerdict::verified:
            if (outcome.knob >= 0 && outcome.knob < knob_count) {
                verified_[static_cast<size_t>(outcome.knob)] = true;
                verified_any = true;
            }
            if (const auto p = programmed_.find(key); p != programmed_.end()) {
                record_verification_in_ledger(outcome.serial, outcome.knob, p->second.type, p->second.channel,
                                              p->second.controller);
                programmed_.erase(p);
            }
            if (!batch_)
                notes.append(verified_text(outcome.knob));
            break;
        case VerifyVerdict::old_setting: notes.append(old_setting_text(outcome.knob)); break;
        case VerifyVerdict::timed_out:
            programmed_.erase(key);
            if (!batch_)
                notes.append(verify_timeout_text(outcome.knob));
            break;
        }
    }
    if (batch_)
        notes.append(batchText());
    status_.setMessage(notes.join(u'\n'));
    if (verified_any)
        emit verifiedChanged();
    if (const auto next = verification_.next_deadline())
        expire_timer_.start(remaining_ms(*next, Clock::now()));
    else
        expire_timer_.stop();
}

void KnobMonitor::expire()
{
    const std::vector<VerifyOutcome> outcomes = verification_.expire(Clock::now());
    if (outcomes.empty()) {
        if (const auto next = verification_.next_deadline())
            expire_timer_.start(remaining_ms(*next, Clock::now()));
        return;
    }
    settle(outcomes);
}

}  // namespace dialcraft
