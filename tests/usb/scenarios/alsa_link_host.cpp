#include "alsa_link_host.h"

#include "midi/alsa/alsa_midi_host.h"
#include "midi/host_selection.h"

using namespace dialcraft;

AlsaLinkHost::AlsaLinkHost() : host_(make_alsa_midi_host()), previous_(set_midi_host(host_.get())) {}

AlsaLinkHost::~AlsaLinkHost()
{
    set_midi_host(previous_);
}
