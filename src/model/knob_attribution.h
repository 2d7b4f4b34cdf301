#pragma once
// Which knobs of a family controller a received message came from: the knob
// settings of that controller's serial, resolved once into a KnobMatcher that
// then compares every message (midi/decode/knob_match.h has the rule).
//
// Per knob, what the ledger holds for the serial wins, since that is what the
// controller was last programmed with; a knob the ledger has nothing for falls
// back to the window's table (knobs 0 to 26), which is the best guess left.
// A table row that would not pass the set action's check (no programmable
// type, channel outside 1 to 16, controller outside 0 to 127) matches nothing.
// Rebuild the matcher when the ledger, the table or the serial changes.
#include <QString>

#include <optional>

#include "midi/decode/knob_match.h"
#include "model/controller_ledger.h"

namespace dialcraft {

class GlobalState;

// One knob's setting as the table or the ledger holds it: the type's display
// name ("Note On", "Note Off", "Control Change", "Bend Change"), the channel
// and the controller number as decimal texts ("05" reads as 5).
std::optional<KnobSends> knob_sends_from_text(int knob, const QString& type, const QString& channel,
                                              const QString& controller);
std::optional<KnobSends> knob_sends_from_held(int knob, const HeldSetting& held);

// The settings of controller `serial`: every knob the ledger holds for it,
// then the table's knobs 0 to 26 that the ledger has nothing for, in knob
// order. `state` may be null when there is no window table (the cli). A
// serial outside 4AC0CC27 to 4ACFCC27 gets no knobs: nothing it sends is
// attributed.
KnobMatcher knob_attribution(const QString& serial, const ControllerLedger& ledger, const GlobalState* state);

}  // namespace dialcraft
