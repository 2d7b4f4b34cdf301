#pragma once
// Which MIDI service the link talks to, and the one path every send of the
// link takes to it, so that what the service accepted can be observed.
#include "midi/midi_host.h"

namespace dialcraft {

// The host the link uses: the one the program last set. While none is set
// it is a host with no service behind it (no_midi_host.h), and the link
// behaves as on a machine without MIDI: nothing matches, nothing is sent.
// The link never picks a service of its own; each program chooses one.
MidiHost& midi_host();
// Selects the host for the link (nullptr: none); returns the one selected
// before, or nullptr when there was none. The host must outlive its
// selection.
MidiHost* set_midi_host(MidiHost* host);

// Sees every send the link makes, with the status the service answered.
// Called on the sending thread (the user-interface thread).
class MidiSendObserver {
public:
    virtual ~MidiSendObserver() = default;
    virtual void sent(MidiObjectRef destination, const uint8_t* bytes, size_t length, MidiStatus status) = 0;
};

// Makes `observer` the one observer (nullptr: none); returns the previous one.
MidiSendObserver* set_midi_send_observer(MidiSendObserver* observer);

// Sends through midi_host() and tells the observer what the service answered.
MidiStatus midi_host_send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length);

}  // namespace dialcraft
