#include "midi/alsa/sequencer_client.h"

#include <alsa/asoundlib.h>

namespace dialcraft {

MidiStatus open_sequencer_client(const char* name, AlsaClientDirection direction, snd_seq_t** seq, int* client_id)
{
    *seq = nullptr;
    const int streams = direction == AlsaClientDirection::output ? SND_SEQ_OPEN_OUTPUT : SND_SEQ_OPEN_INPUT;
    snd_seq_t* opened = nullptr;
    if (int err = snd_seq_open(&opened, "default", streams, SND_SEQ_NONBLOCK); err < 0)
        return err;
    int err = snd_seq_set_client_name(opened, name);
    const int id = err < 0 ? err : snd_seq_client_id(opened);
    if (id < 0) {
        // The handle is of no use without its name and number; its close
        // status adds nothing to the error that ends the opening.
        (void)snd_seq_close(opened);
        return id;
    }
    *seq = opened;
    *client_id = id;
    return 0;
}

}  // namespace dialcraft
