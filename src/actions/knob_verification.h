#pragma once
// Verification by turning: after a knob was programmed, the first message of
// that controller that matches the new setting within a minute shows the
// controller took it; one that matches the setting it held before shows it
// did not. Knobs are awaited in batches (one press, or one set-all run), so
// that a run can say how many of its knobs were verified and how many are to
// go.
#include <QString>

#include <chrono>
#include <optional>
#include <vector>

#include "midi/decode/knob_match.h"

namespace dialcraft {

enum class VerifyVerdict {
    verified,     // the new setting arrived
    old_setting,  // the setting from before the programming arrived
    timed_out,    // nothing matching within the time allowed
};

struct VerifyOutcome {
    QString serial;
    int knob = 0;
    VerifyVerdict verdict = VerifyVerdict::verified;
    KnobSends setting;  // the new setting
};

class KnobVerification {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds default_allowed{60'000};

    explicit KnobVerification(std::chrono::milliseconds allowed = default_allowed) : allowed_(allowed) {}
    // How long a knob is awaited after its programming.
    void set_allowed(std::chrono::milliseconds allowed) { allowed_ = allowed; }

    // Starts a new batch: what was awaited before is dropped.
    void begin_batch();
    // Awaits knob `now.knob` of controller `serial` from `at` on. `before` is
    // what the controller held for that knob before (the ledger's), if known
    // and different.
    void expect(const QString& serial, const KnobSends& now, const std::optional<KnobSends>& before,
                Clock::time_point at);

    // What a message from controller `serial` settles, in knob order.
    // A verified knob is done; an old setting leaves the knob awaited (the
    // user may turn it again after re-programming).
    std::vector<VerifyOutcome> observe(const QString& serial, const MidiMessage& message, Clock::time_point at);
    // The knobs whose time ran out by `at`; they are done.
    std::vector<VerifyOutcome> expire(Clock::time_point at);

    // The batch: knobs awaited in all, verified so far, still awaited.
    int batch_size() const { return batch_size_; }
    int verified() const { return verified_; }
    int to_go() const { return static_cast<int>(awaited_.size()); }
    bool awaiting(const QString& serial, int knob) const;
    // The earliest deadline of the knobs awaited, if any.
    std::optional<Clock::time_point> next_deadline() const;

private:
    struct Awaited {
        QString serial;
        KnobSends now;
        std::optional<KnobSends> before;
        Clock::time_point deadline;
    };
    std::chrono::milliseconds allowed_;
    std::vector<Awaited> awaited_;
    int batch_size_ = 0;
    int verified_ = 0;
};

}  // namespace dialcraft
