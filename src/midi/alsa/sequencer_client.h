#pragma once
// The one way this host opens a sequencer client: a non-blocking handle on
// the "default" sequencer, named, with its client number read back.
#include "midi/midi_host.h"

typedef struct _snd_seq snd_seq_t;

namespace dialcraft {

// Which way events flow through the client: an output client never
// receives, so nothing can pile up in its queue; an input client is read by
// a thread (sequencer_reader.h).
enum class AlsaClientDirection { output, input };

// Opens a client called `name`. Returns 0 with `*seq` and `*client_id` set,
// or the negative ALSA error with `*seq` null and nothing left open.
MidiStatus open_sequencer_client(const char* name, AlsaClientDirection direction, snd_seq_t** seq, int* client_id);

}  // namespace dialcraft
