#include "midi/host_selection.h"

#include "midi/alsa/alsa_midi_host.h"

namespace {
MidiHost* selected_host = nullptr;
MidiSendObserver* send_observer = nullptr;
}  // namespace

MidiHost& midi_host()
{
    if (selected_host)
        return *selected_host;
    static const std::unique_ptr<MidiHost> platform_host = make_alsa_midi_host();
    return *platform_host;
}

void set_midi_host(MidiHost* host)
{
    selected_host = host;
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
