#include "midi/midi_host.h"

namespace {
MidiHost* selected_host = nullptr;
}

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
