#include "midi/send_tally.h"

#include <algorithm>

namespace dialcraft {

SendTally::SendTally() : previous_(set_midi_send_observer(this)) {}

SendTally::~SendTally()
{
    set_midi_send_observer(previous_);
}

void SendTally::sent(MidiObjectRef destination, const uint8_t*, size_t, MidiStatus status)
{
    if (status != 0) {
        ++refused_;
        return;
    }
    ++accepted_;
    if (std::find(refs_.begin(), refs_.end(), destination) != refs_.end())
        return;
    // The name is read once per destination, right after its first message,
    // while the port is certainly there.
    char name[64] = {};
    if (midi_host().get_string_property(destination, MidiStringProperty::name, name, sizeof name) != 0)
        name[0] = '\0';
    refs_.push_back(destination);
    destinations_.emplace_back(name);
}

}  // namespace dialcraft
