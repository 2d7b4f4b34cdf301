#include "midi/alsa/device_lists.h"

#include <alsa/asoundlib.h>

#include <cerrno>

namespace dialcraft {

namespace {
constexpr unsigned int source_caps = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned int destination_caps = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
}  // namespace

void AlsaDeviceLists::clear()
{
    devices.clear();
    sources.clear();
    destinations.clear();
    card_of.fill(no_client);
}

MidiStatus read_device_lists(snd_seq_t* seq, bool (*is_own)(int client, const void* context), const void* context,
                             AlsaDeviceLists* out)
{
    out->clear();
    if (!seq)
        return -ENODEV;
    snd_seq_client_info_t* client = nullptr;
    if (int err = snd_seq_client_info_malloc(&client); err < 0)
        return err;
    snd_seq_port_info_t* port = nullptr;
    if (int err = snd_seq_port_info_malloc(&port); err < 0) {
        snd_seq_client_info_free(client);
        return err;
    }
    // The "next" queries end with an error past the last client or port;
    // that is how every walk of the sequencer ends.
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(seq, client) >= 0) {
        const int id = snd_seq_client_info_get_client(client);
        if (id == SND_SEQ_CLIENT_SYSTEM || id < 0 || id > 255 || is_own(id, context))
            continue;
        const auto address = static_cast<uint8_t>(id);
        out->devices.push_back(address);
        out->card_of[address] = static_cast<int16_t>(snd_seq_client_info_get_card(client));
        snd_seq_port_info_set_client(port, id);
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(seq, port) >= 0) {
            const unsigned int caps = snd_seq_port_info_get_capability(port);
            const int number = snd_seq_port_info_get_port(port);
            if ((caps & SND_SEQ_PORT_CAP_NO_EXPORT) || number < 0 || number > 255)
                continue;
            const AlsaAddress at{address, static_cast<uint8_t>(number)};
            if ((caps & source_caps) == source_caps)
                out->sources.push_back(at);
            if ((caps & destination_caps) == destination_caps)
                out->destinations.push_back(at);
        }
    }
    snd_seq_port_info_free(port);
    snd_seq_client_info_free(client);
    return 0;
}

}  // namespace dialcraft
