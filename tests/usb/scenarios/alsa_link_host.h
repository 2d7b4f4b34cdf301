#pragma once
// A scenario program's link talks to the ALSA sequencer, as in dialcraft and
// dialcraft-cli, for as long as this object lives.
#include <memory>

#include "midi/midi_host.h"

using namespace dialcraft;

class AlsaLinkHost {
public:
    AlsaLinkHost();
    ~AlsaLinkHost();
    AlsaLinkHost(const AlsaLinkHost&) = delete;
    AlsaLinkHost& operator=(const AlsaLinkHost&) = delete;

private:
    std::unique_ptr<MidiHost> host_;
    MidiHost* previous_;
};
