#pragma once
// The window's live monitor: what the family's controllers send, decoded and
// matched to knobs, shown as a list, as activity on the knob panels and as
// the verification of knobs just programmed. Messages arrive on the MIDI
// host's listening thread into an inbox; the window takes them at most 60
// times a second, so a flood costs a bounded number of repaints, while every
// message is counted. One per window, owned by its WindowStatus.
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <chrono>
#include <map>
#include <vector>

#include "actions/knob_verification.h"
#include "actions/monitor_attribution.h"
#include "actions/monitor_inbox.h"
#include "ui/monitor/monitor_log.h"

namespace dialcraft {

class CreateSetupAreaViewData;
class GlobalState;
class LedgerMarkerList;
class WindowStatus;
struct SetPressOutcome;

class KnobMonitor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each window has one: StatusBoard.of(globalState).monitor")
    Q_PROPERTY(dialcraft::MonitorLog* log READ log CONSTANT)
    // Every message heard since the window opened, and those that matched no
    // knob; Clear does not reset them.
    Q_PROPERTY(double received READ received NOTIFY countsChanged)
    Q_PROPERTY(double unmatched READ unmatched NOTIFY countsChanged)
    // How many times the monitor has changed what the window shows.
    Q_PROPERTY(int frames READ frames NOTIFY countsChanged)
    // The list stops taking lines while paused; counting, the panels and
    // verification go on.
    Q_PROPERTY(bool paused READ paused WRITE setPaused NOTIFY pausedChanged)
    Q_PROPERTY(bool listening READ listening NOTIFY listeningChanged)
    // Knobs 0 to 26: the last value each sent (-1 none yet), whether it is
    // lit right now, and whether it was verified since its last programming.
    Q_PROPERTY(QList<int> lastValues READ lastValues NOTIFY activityChanged)
    Q_PROPERTY(QList<int> active READ active NOTIFY activityChanged)
    Q_PROPERTY(QList<int> verified READ verified NOTIFY verifiedChanged)
    // The newest line, at most once a second, for screen readers.
    Q_PROPERTY(QString latest READ latest NOTIFY latestChanged)
    Q_PROPERTY(QString countsText READ countsText NOTIFY countsChanged)

public:
    static constexpr std::chrono::milliseconds frame_interval{17};  // at most 60 a second
    static constexpr std::chrono::milliseconds lit_for{400};
    static constexpr std::chrono::milliseconds announce_interval{1000};

    KnobMonitor(GlobalState& state, WindowStatus& status, LedgerMarkerList& ledger);
    ~KnobMonitor() override;

    MonitorLog* log() const { return log_; }
    double received() const { return static_cast<double>(inbox_.received()); }
    double unmatched() const { return static_cast<double>(unmatched_); }
    int frames() const { return frames_; }
    bool paused() const { return paused_; }
    void setPaused(bool paused);
    bool listening() const { return inbox_.listening(); }
    QList<int> lastValues() const;
    QList<int> active() const;
    QList<int> verified() const;
    QString latest() const { return latest_; }
    QString countsText() const;

    // Starts listening through the selected MIDI host; the window calls it
    // after its first frame. Does nothing while listening.
    Q_INVOKABLE void start();
    Q_INVOKABLE void clear();

    // A knob was pressed: when its programming went through, it is awaited
    // for verification, alone (`batch` false: a press) or as part of the
    // current set-all run.
    void programmed(const SetPressOutcome& outcome, const CreateSetupAreaViewData& record, bool batch);
    // A set-all run begins: the knobs it programs are awaited together.
    void beginBatch();
    // The line that invites to turn every knob of the run, with the counts.
    QString batchText() const;
    bool batchPending() const { return verification_.batch_size() > 0; }

    // For tests and benchmarks: the inbox the listening thread fills, and a
    // shorter time to wait for a knob to be turned.
    MonitorInbox& inbox() { return inbox_; }
    void set_verify_window(std::chrono::milliseconds window) { verification_.set_allowed(window); }

signals:
    void countsChanged();
    void pausedChanged();
    void listeningChanged();
    void activityChanged();
    void verifiedChanged();
    void latestChanged();

private:
    void schedule_frame();
    void frame();
    void settle(const std::vector<VerifyOutcome>& outcomes);
    void unlight();
    void announce();
    void expire();

    GlobalState& state_;
    WindowStatus& status_;
    LedgerMarkerList& ledger_;
    MonitorLog* log_;
    MonitorInbox inbox_;
    MonitorAttribution attribution_;
    bool attribution_stale_ = true;
    KnobVerification verification_;
    bool batch_ = false;
    // What each awaited knob was programmed with, as the ledger writes it.
    struct Programmed {
        QString type;
        int channel = 0;
        int controller = 0;
    };
    std::map<std::pair<QString, int>, Programmed> programmed_;

    std::vector<HeardMessage> taken_;
    std::vector<int> knobs_;
    uint64_t unmatched_ = 0;
    int frames_ = 0;
    bool paused_ = false;
    std::array<int, 27> last_values_{};
    std::array<std::chrono::steady_clock::time_point, 27> lit_until_{};
    std::array<bool, 27> verified_{};
    QString latest_;
    QString latest_pending_;

    QElapsedTimer since_frame_;
    QTimer frame_timer_;
    QTimer unlight_timer_;
    QTimer announce_timer_;
    QElapsedTimer since_announce_;
    QTimer expire_timer_;
};

}  // namespace dialcraft
