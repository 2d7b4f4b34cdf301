#pragma once
// Listening to what controllers send, by meaning, beside the link: a host
// listens through a port of its own, connected to every source whose name
// the listener wants, as sources come and go. The link's input port, its
// connections and its hex lines are not touched by it.
#include <cstdint>

#include "midi/decode/midi_message.h"

namespace dialcraft {

// Told on the host's listening thread; it must not call back into the host.
class MidiListener {
public:
    virtual ~MidiListener() = default;
    // Whether to listen to the source called `source_name` (the name a
    // source's name property gives). Asked when listening starts and when a
    // source comes or is renamed.
    virtual bool wants(const char* source_name) = 0;
    // One message from a source it wants.
    virtual void heard(const char* source_name, const MidiMessage& message) = 0;
    // The service dropped messages before they could be read; how many is
    // not known.
    virtual void lost() {}
    // Listening has stopped on an error, said on standard error; nothing
    // follows.
    virtual void stopped() {}
};

}  // namespace dialcraft
