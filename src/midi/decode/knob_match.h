#pragma once
// Which knobs of one controller a received message came from, by the knobs'
// settings alone. A knob programmed with type nibble T, channel c and number
// n sends Tn messages (n the channel minus one) with n as data byte 1, so a
// message matches a knob when kind, channel and number agree:
//   Note On (9), Note Off (8), Control Change (B): kind, channel and number;
//   Bend Change (E): any pitch bend on the channel, since pitch bend carries
//   no number (its two data bytes are the value).
// Kinds compare as received: a Note On of velocity 0 is no Note Off. Two
// knobs with one setting both match; so do two bend knobs on one channel.
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "midi/decode/midi_message.h"

namespace dialcraft {

struct KnobSends {
    int knob = 0;
    MidiKind kind = MidiKind::control_change;  // note_off, note_on, control_change or pitch_bend
    uint8_t channel = 1;                       // 1 to 16
    uint8_t number = 0;                        // 0 to 127; not compared for pitch_bend

    friend bool operator==(const KnobSends&, const KnobSends&) = default;
};

// The kind a knob of type nibble 0x8, 0x9, 0xB or 0xE sends; nothing for any
// other nibble (0xF, System Change, sends no channel message).
std::optional<MidiKind> knob_kind_for_type_nibble(uint8_t type_nibble);

bool knob_sends(const KnobSends& setting, const MidiMessage& message);

// The settings of one controller's knobs, compared with every message.
class KnobMatcher {
public:
    KnobMatcher() = default;
    explicit KnobMatcher(std::vector<KnobSends> knobs) : knobs_(std::move(knobs)) {}

    // The knobs `message` matches, in the order the settings were given;
    // empty when it matches none (the monitor's 未匹配(unmatched)).
    std::vector<int> matched_knobs(const MidiMessage& message) const;
    // The same into `knobs`, cleared first, to reuse its storage.
    void matched_knobs(const MidiMessage& message, std::vector<int>& knobs) const;

    const std::vector<KnobSends>& knobs() const { return knobs_; }

private:
    std::vector<KnobSends> knobs_;
};

}  // namespace dialcraft
