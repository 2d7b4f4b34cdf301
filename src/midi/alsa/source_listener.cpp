#include "midi/alsa/source_listener.h"

#include <alsa/asoundlib.h>

#include <cerrno>
#include <cstring>
#include <map>
#include <string>
#include <utility>

#include "midi/alsa/sequencer_reader.h"
#include "midi/decode/sequencer_event_message.h"

namespace dialcraft {

namespace {
constexpr unsigned int source_caps = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
// The most events the kernel lets a client's input queue hold.
constexpr size_t input_pool_events = 2000;

// What the client is sent: the MIDI events a raw MIDI port produces and the
// announcements of ports coming, going and being renamed. Subscriptions are
// announced too, and each probe of the link makes some: the kernel keeps
// those from this client.
constexpr int wanted_events[] = {
    SND_SEQ_EVENT_NOTEON,      SND_SEQ_EVENT_NOTEOFF,     SND_SEQ_EVENT_KEYPRESS,     SND_SEQ_EVENT_CONTROLLER,
    SND_SEQ_EVENT_PGMCHANGE,   SND_SEQ_EVENT_CHANPRESS,   SND_SEQ_EVENT_PITCHBEND,    SND_SEQ_EVENT_QFRAME,
    SND_SEQ_EVENT_SONGPOS,     SND_SEQ_EVENT_SONGSEL,     SND_SEQ_EVENT_TUNE_REQUEST, SND_SEQ_EVENT_CLOCK,
    SND_SEQ_EVENT_START,       SND_SEQ_EVENT_CONTINUE,    SND_SEQ_EVENT_STOP,         SND_SEQ_EVENT_SENSING,
    SND_SEQ_EVENT_RESET,       SND_SEQ_EVENT_SYSEX,       SND_SEQ_EVENT_PORT_START,   SND_SEQ_EVENT_PORT_EXIT,
    SND_SEQ_EVENT_PORT_CHANGE, SND_SEQ_EVENT_CLIENT_EXIT,
};
}  // namespace

struct AlsaSourceListener::State final : AlsaEventSink {
    AlsaSequencerReader reader{"monitor listener", "the monitor hears nothing more"};
    MidiListener* listener = nullptr;
    int port = -1;
    // The ports listened to, by client and port, with their names: touched
    // by the opening thread before the reader starts, then by the reader
    // alone.
    std::map<std::pair<int, int>, std::string> listened;

    // The thread first: it may be telling the listener.
    ~State() override { reader.stop_thread(); }

    // Subscribes to the port client:port when it is readable and wanted.
    void consider(int client, int number);
    void event(const snd_seq_event_t& ev) override;
    void events_lost() override { listener->lost(); }
    void stopped() override { listener->stopped(); }
};

void AlsaSourceListener::State::consider(int client, int number)
{
    if (client == SND_SEQ_CLIENT_SYSTEM || client == reader.client_id())
        return;
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    const std::pair key{client, number};
    if (snd_seq_get_any_port_info(reader.handle(), client, number, info) < 0) {
        listened.erase(key);
        return;
    }
    const unsigned int caps = snd_seq_port_info_get_capability(info);
    const char* name = snd_seq_port_info_get_name(info);
    if ((caps & source_caps) != source_caps || (caps & SND_SEQ_PORT_CAP_NO_EXPORT) || !listener->wants(name)) {
        // A renamed port that is no longer wanted: what it sends is dropped
        // by name below; the subscription itself does no harm.
        listened.erase(key);
        return;
    }
    // Already subscribed (a rename of a wanted port) or a fresh subscription;
    // a port that vanished in between is forgotten when its exit arrives.
    if (listened.count(key) == 0 && snd_seq_connect_from(reader.handle(), port, client, number) < 0)
        return;
    listened[key] = name;
}

void AlsaSourceListener::State::event(const snd_seq_event_t& ev)
{
    if (ev.source.client == SND_SEQ_CLIENT_SYSTEM && ev.source.port == SND_SEQ_PORT_SYSTEM_ANNOUNCE) {
        const snd_seq_addr_t& at = ev.data.addr;
        switch (ev.type) {
        case SND_SEQ_EVENT_PORT_START:
        case SND_SEQ_EVENT_PORT_CHANGE: consider(at.client, at.port); break;
        case SND_SEQ_EVENT_PORT_EXIT: listened.erase({at.client, at.port}); break;
        case SND_SEQ_EVENT_CLIENT_EXIT:
            std::erase_if(listened, [&](const auto& entry) { return entry.first.first == at.client; });
            break;
        default: break;
        }
        return;
    }
    const auto source = listened.find({ev.source.client, ev.source.port});
    if (source == listened.end())
        return;
    if (std::optional<MidiMessage> message = message_from_sequencer_event(ev))
        listener->heard(source->second.c_str(), *message);
}

MidiStatus AlsaSourceListener::open(MidiListener* listener, std::unique_ptr<AlsaSourceListener>* out)
{
    if (!listener || !out)
        return -EINVAL;
    auto state = std::make_unique<State>();
    state->listener = listener;
    if (MidiStatus err = state->reader.open("MIDI Client monitor"); err != 0)
        return err;
    snd_seq_t* seq = state->reader.handle();
    // Room for a knob swept hard while the thread catches up: the kernel
    // drops what does not fit (the listener is told, but not how much).
    if (int err = snd_seq_set_client_pool_input(seq, input_pool_events); err < 0)
        return err;
    for (int type : wanted_events)
        if (int err = snd_seq_set_client_event_filter(seq, type); err < 0)
            return err;
    // Writable only for the subscriptions the listener makes itself, and
    // hidden from other programs and from the link's device lists.
    state->port = snd_seq_create_simple_port(seq, "Monitor", SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_NO_EXPORT,
                                             SND_SEQ_PORT_TYPE_APPLICATION);
    if (state->port < 0)
        return state->port;
    // Announcements first, so that a port starting during the walk below is
    // either walked or announced.
    if (int err = snd_seq_connect_from(seq, state->port, SND_SEQ_CLIENT_SYSTEM, SND_SEQ_PORT_SYSTEM_ANNOUNCE); err < 0)
        return err;
    snd_seq_client_info_t* client = nullptr;
    snd_seq_client_info_alloca(&client);
    snd_seq_port_info_t* port = nullptr;
    snd_seq_port_info_alloca(&port);
    // The "next" queries end with an error past the last client or port.
    snd_seq_client_info_set_client(client, -1);
    while (snd_seq_query_next_client(seq, client) >= 0) {
        const int id = snd_seq_client_info_get_client(client);
        snd_seq_port_info_set_client(port, id);
        snd_seq_port_info_set_port(port, -1);
        while (snd_seq_query_next_port(seq, port) >= 0)
            state->consider(id, snd_seq_port_info_get_port(port));
    }
    if (MidiStatus err = state->reader.start(state.get()); err != 0)
        return err;
    out->reset(new AlsaSourceListener(std::move(state)));
    return 0;
}

AlsaSourceListener::AlsaSourceListener(std::unique_ptr<State> state) : state_(std::move(state)) {}

AlsaSourceListener::~AlsaSourceListener() = default;

int AlsaSourceListener::client_id() const
{
    return state_->reader.client_id();
}

}  // namespace dialcraft
