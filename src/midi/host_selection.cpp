#include "midi/host_selection.h"

#include "midi/no_midi_host.h"

namespace dialcraft {

namespace {
MidiHost* selected_host = nullptr;
MidiSendObserver* send_observer = nullptr;
// Holds nothing and never changes, so one for the whole process will do.
NoMidiHost no_host;
}  // namespace

MidiHost& midi_host()
{
    return selected_host ? *selected_host : no_host;
}

MidiHost* set_midi_host(MidiHost* host)
{
    MidiHost* previous = selected_host;
    selected_host = host;
    return previous;
}

MidiSendObserver* set_midi_send_observer(MidiSendObserver* observer)
{
    MidiSendObserver* previous = send_observer;
    send_observer = observer;
    return previous;
}

MidiStatus midi_host_send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    const MidiStatus status = midi_host().send(port, destination, bytes, length);
    if (send_observer)
        send_observer->sent(destination, bytes, length, status);
    return status;
}

}  // namespace dialcraft
