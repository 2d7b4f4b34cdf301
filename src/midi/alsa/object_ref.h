#pragma once
// The layout of the opaque handles the ALSA host gives out. A handle names a
// sequencer address and what the address stands for, so every property read
// and every send can go to the sequencer live instead of to a cached copy.
#include <cstdint>
#include <optional>

#include "midi/midi_host.h"

namespace dialcraft {

enum class AlsaRefKind : uint8_t {
    client = 1,       // our own client
    output_port = 2,  // our own output port
    input_port = 3,   // our own input port (on the input side's client)
    source = 4,       // another client's port that others can read from
    destination = 5,  // another client's port that others can write to
    device = 6,       // another sequencer client
};

struct AlsaRef {
    AlsaRefKind kind;
    // Tells apart successive objects of our own at the same address; 0 for
    // objects of other clients.
    uint8_t serial;
    uint8_t client;
    uint8_t port;

    bool operator==(const AlsaRef&) const = default;
};

// Kind in the top byte, then serial, client and port. Never 0, as no kind is 0.
MidiObjectRef encode_alsa_ref(const AlsaRef& ref);
// Empty for the null handle and for a top byte that is no kind.
std::optional<AlsaRef> decode_alsa_ref(MidiObjectRef handle);

}  // namespace dialcraft
