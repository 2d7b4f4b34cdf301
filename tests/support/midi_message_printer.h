#pragma once
// Readable MidiMessage values in GoogleTest's failure messages.
#include <ostream>

#include "midi/decode/midi_message.h"

namespace dialcraft {

inline void PrintTo(const MidiMessage& m, std::ostream* out)
{
    *out << midi_kind_name(m.kind) << " channel " << int(m.channel) << " number " << int(m.number) << " value "
         << m.value;
}

}  // namespace dialcraft
