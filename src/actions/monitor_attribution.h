#pragma once
// Which knobs each received message came from, for every controller of the
// family at once: one KnobMatcher per serial, built when first needed from the
// ledger and the window's table, and dropped whenever either changes.
#include <QString>

#include <map>
#include <vector>

#include "midi/decode/knob_match.h"
#include "model/controller_ledger.h"

namespace dialcraft {

class GlobalState;

class MonitorAttribution {
public:
    // `state` (the window's table) may be null, as in the cli; it must
    // outlive this.
    explicit MonitorAttribution(const GlobalState* state = nullptr) : state_(state) {}

    // A new ledger; every matcher is rebuilt when next needed.
    void set_ledger(ControllerLedger ledger);
    const ControllerLedger& ledger() const { return ledger_; }
    // The table changed: every matcher is rebuilt when next needed.
    void table_changed() { matchers_.clear(); }

    // The knobs of controller `serial` that `message` matches, in knob order,
    // into `knobs` (cleared first); empty for 未匹配(unmatched).
    void matched(const QString& serial, const MidiMessage& message, std::vector<int>& knobs);
    const KnobMatcher& matcher(const QString& serial);

private:
    const GlobalState* state_;
    ControllerLedger ledger_;
    std::map<QString, KnobMatcher> matchers_;
};

}  // namespace dialcraft
