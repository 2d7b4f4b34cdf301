#include "actions/monitor_attribution.h"

#include <utility>

#include "model/knob_attribution.h"

namespace dialcraft {

void MonitorAttribution::set_ledger(ControllerLedger ledger)
{
    ledger_ = std::move(ledger);
    matchers_.clear();
}

const KnobMatcher& MonitorAttribution::matcher(const QString& serial)
{
    auto found = matchers_.find(serial);
    if (found == matchers_.end())
        found = matchers_.emplace(serial, knob_attribution(serial, ledger_, state_)).first;
    return found->second;
}

void MonitorAttribution::matched(const QString& serial, const MidiMessage& message, std::vector<int>& knobs)
{
    matcher(serial).matched_knobs(message, knobs);
}

}  // namespace dialcraft
