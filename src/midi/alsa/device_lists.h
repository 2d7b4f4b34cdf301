#pragma once
// The addresses of every device, source and destination, read in one walk
// over the sequencer's clients and ports, so that a look-up by index costs
// nothing and a whole scan costs one walk instead of one per index. Only
// addresses (and each client's sound card, fixed for a client's life) are
// kept: names are read live by whoever needs them.
#include <array>
#include <cstdint>
#include <vector>

#include "midi/midi_host.h"

typedef struct _snd_seq snd_seq_t;

namespace dialcraft {

struct AlsaAddress {
    uint8_t client;
    uint8_t port;
};

struct AlsaDeviceLists {
    static constexpr int16_t no_client = -2;  // in card_of: not a device

    std::vector<uint8_t> devices;  // clients that are neither System nor ours
    std::vector<AlsaAddress> sources;
    std::vector<AlsaAddress> destinations;
    // Per client id: its sound card, -1 for a client without one, or
    // no_client when the client is not among the devices.
    std::array<int16_t, 256> card_of{};

    void clear();
    bool has_device(int client) const { return client >= 0 && client < 256 && card_of[client] != no_client; }
};

// Walks the sequencer through `seq` once, leaving out System and every client
// for which `is_own(client, context)` says true. Ports go to sources and
// destinations when others may connect them that way; hidden ports never do.
// Returns 0 or the negative ALSA error of an allocation (a walk that stops
// early just ends the lists).
MidiStatus read_device_lists(snd_seq_t* seq, bool (*is_own)(int client, const void* context), const void* context,
                             AlsaDeviceLists* out);

}  // namespace dialcraft
