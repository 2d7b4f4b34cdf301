#include "actions/knob_verification.h"

#include <algorithm>

namespace dialcraft {

void KnobVerification::begin_batch()
{
    awaited_.clear();
    batch_size_ = 0;
    verified_ = 0;
}

void KnobVerification::expect(const QString& serial, const KnobSends& now, const std::optional<KnobSends>& before,
                              Clock::time_point at)
{
    std::erase_if(awaited_, [&](const Awaited& a) { return a.serial == serial && a.now.knob == now.knob; });
    std::optional<KnobSends> old = before;
    // An old setting that equals the new one cannot tell them apart.
    if (old && old->kind == now.kind && old->channel == now.channel &&
        (old->number == now.number || now.kind == MidiKind::pitch_bend))
        old.reset();
    awaited_.push_back(Awaited{serial, now, old, at + allowed_});
    ++batch_size_;
}

std::vector<VerifyOutcome> KnobVerification::observe(const QString& serial, const MidiMessage& message,
                                                     Clock::time_point at)
{
    std::vector<VerifyOutcome> outcomes;
    for (auto it = awaited_.begin(); it != awaited_.end();) {
        if (it->serial != serial || at > it->deadline) {
            ++it;
            continue;
        }
        if (knob_sends(it->now, message)) {
            outcomes.push_back(VerifyOutcome{serial, it->now.knob, VerifyVerdict::verified, it->now});
            ++verified_;
            it = awaited_.erase(it);
            continue;
        }
        if (it->before && knob_sends(*it->before, message))
            outcomes.push_back(VerifyOutcome{serial, it->now.knob, VerifyVerdict::old_setting, it->now});
        ++it;
    }
    std::sort(outcomes.begin(), outcomes.end(),
              [](const VerifyOutcome& a, const VerifyOutcome& b) { return a.knob < b.knob; });
    return outcomes;
}

std::vector<VerifyOutcome> KnobVerification::expire(Clock::time_point at)
{
    std::vector<VerifyOutcome> outcomes;
    for (auto it = awaited_.begin(); it != awaited_.end();) {
        if (at < it->deadline) {
            ++it;
            continue;
        }
        outcomes.push_back(VerifyOutcome{it->serial, it->now.knob, VerifyVerdict::timed_out, it->now});
        it = awaited_.erase(it);
    }
    return outcomes;
}

bool KnobVerification::awaiting(const QString& serial, int knob) const
{
    return std::any_of(awaited_.begin(), awaited_.end(),
                       [&](const Awaited& a) { return a.serial == serial && a.now.knob == knob; });
}

std::optional<KnobVerification::Clock::time_point> KnobVerification::next_deadline() const
{
    std::optional<Clock::time_point> earliest;
    for (const Awaited& a : awaited_)
        if (!earliest || a.deadline < *earliest)
            earliest = a.deadline;
    return earliest;
}

}  // namespace dialcraft
