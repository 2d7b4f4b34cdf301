#include "midi/decode/knob_match.h"

namespace dialcraft {

std::optional<MidiKind> knob_kind_for_type_nibble(uint8_t type_nibble)
{
    switch (type_nibble) {
    case 0x8: return MidiKind::note_off;
    case 0x9: return MidiKind::note_on;
    case 0xB: return MidiKind::control_change;
    case 0xE: return MidiKind::pitch_bend;
    default: return std::nullopt;
    }
}

bool knob_sends(const KnobSends& setting, const MidiMessage& message)
{
    if (message.kind != setting.kind || message.channel != setting.channel)
        return false;
    return setting.kind == MidiKind::pitch_bend || message.number == setting.number;
}

std::vector<int> KnobMatcher::matched_knobs(const MidiMessage& message) const
{
    std::vector<int> knobs;
    matched_knobs(message, knobs);
    return knobs;
}

void KnobMatcher::matched_knobs(const MidiMessage& message, std::vector<int>& knobs) const
{
    knobs.clear();
    for (const KnobSends& setting : knobs_)
        if (knob_sends(setting, message))
            knobs.push_back(setting.knob);
}

}  // namespace dialcraft
