// Connections of sources to our ports, and sending bytes to a destination.
#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/host_state.h"

namespace dialcraft {

namespace {

struct SubscribeFree {
    void operator()(snd_seq_port_subscribe_t* sub) const { snd_seq_port_subscribe_free(sub); }
};
using Subscription = std::unique_ptr<snd_seq_port_subscribe_t, SubscribeFree>;

Subscription new_subscription(int sender_client, int sender_port, int dest_client, int dest_port)
{
    snd_seq_port_subscribe_t* sub = nullptr;
    if (snd_seq_port_subscribe_malloc(&sub) < 0)
        return nullptr;
    const snd_seq_addr_t sender{static_cast<unsigned char>(sender_client), static_cast<unsigned char>(sender_port)};
    const snd_seq_addr_t dest{static_cast<unsigned char>(dest_client), static_cast<unsigned char>(dest_port)};
    snd_seq_port_subscribe_set_sender(sub, &sender);
    snd_seq_port_subscribe_set_dest(sub, &dest);
    return Subscription(sub);
}

constexpr unsigned int writable_caps = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

// Our port behind `port_ref`: its address, and the client whose handle makes
// subscriptions for it (the input port's own handle belongs to its thread).
struct OwnPort {
    AlsaOwnClient* owner = nullptr;
    int client = -1;
    int port = -1;
};

MidiStatus find_own_port(const AlsaMidiHost::State& state, MidiObjectRef port, MidiObjectRef source, OwnPort* own,
                         AlsaRef* source_ref)
{
    const auto port_ref = decode_alsa_ref(port);
    const auto src = decode_alsa_ref(source);
    if (!port_ref || !src || src->kind != AlsaRefKind::source)
        return -EINVAL;
    *source_ref = *src;
    if (AlsaOwnClient* c = state.find_output_port(*port_ref)) {
        *own = OwnPort{c, c->id, c->out_port};
        return 0;
    }
    if (AlsaOwnClient* c = state.find_input_port(*port_ref)) {
        *own = OwnPort{c, c->input->client_id(), c->input->port_id()};
        return 0;
    }
    return port_ref->kind == AlsaRefKind::output_port || port_ref->kind == AlsaRefKind::input_port ? -ENOENT : -EINVAL;
}

}  // namespace

MidiStatus AlsaMidiHost::port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref)
{
    OwnPort own;
    AlsaRef src{};
    if (MidiStatus err = find_own_port(*state_, port, source, &own, &src); err != 0)
        return err;
    // The sequencer lets a client connect anything into its own ports, so the
    // capability is checked here: only a writable port takes a source.
    unsigned int caps = 0;
    if (MidiStatus err = State::port_capability(own.owner->seq, own.client, own.port, &caps); err != 0)
        return err;
    if ((caps & writable_caps) != writable_caps)
        return -EPERM;
    Subscription sub = new_subscription(src.client, src.port, own.client, own.port);
    if (!sub)
        return -ENOMEM;
    if (int err = snd_seq_subscribe_port(own.owner->seq, sub.get()); err < 0)
        return err;
    if (own.owner->input && own.owner->input->client_id() == own.client)
        own.owner->input->set_source_ref(src.client, src.port, conn_ref);
    return 0;
}

MidiStatus AlsaMidiHost::port_disconnect_source(MidiObjectRef port, MidiObjectRef source)
{
    OwnPort own;
    AlsaRef src{};
    if (MidiStatus err = find_own_port(*state_, port, source, &own, &src); err != 0)
        return err;
    Subscription sub = new_subscription(src.client, src.port, own.client, own.port);
    if (!sub)
        return -ENOMEM;
    if (int err = snd_seq_unsubscribe_port(own.owner->seq, sub.get()); err < 0)
        return err;
    if (own.owner->input && own.owner->input->client_id() == own.client)
        own.owner->input->forget_source_ref(src.client, src.port);
    return 0;
}

namespace {
// Sends `bytes` from `c`'s output port straight to `at`, one event per
// complete message. -EINVAL: the bytes hold no complete message.
MidiStatus send_events(AlsaOwnClient& c, const AlsaAddress& at, const uint8_t* bytes, size_t length)
{
    snd_midi_event_reset_encode(c.encoder);
    bool sent = false;
    size_t offset = 0;
    while (offset < length) {
        snd_seq_event_t ev;
        snd_seq_ev_clear(&ev);
        const long used = snd_midi_event_encode(c.encoder, bytes + offset, static_cast<long>(length - offset), &ev);
        if (used < 0)
            return static_cast<MidiStatus>(used);
        if (used == 0)
            break;
        offset += static_cast<size_t>(used);
        if (ev.type == SND_SEQ_EVENT_NONE)
            continue;  // the bytes of a message that has not ended
        snd_seq_ev_set_source(&ev, c.out_port);
        snd_seq_ev_set_dest(&ev, at.client, at.port);
        snd_seq_ev_set_direct(&ev);
        if (int err = snd_seq_event_output_direct(c.seq, &ev); err < 0)
            return err;
        sent = true;
    }
    // Bytes that make no complete message send nothing, which is a failure.
    return sent ? 0 : -EINVAL;
}
}  // namespace

MidiStatus AlsaMidiHost::send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    const auto port_ref = decode_alsa_ref(port);
    const auto dest_ref = decode_alsa_ref(destination);
    if (!port_ref || port_ref->kind != AlsaRefKind::output_port || !dest_ref ||
        dest_ref->kind != AlsaRefKind::destination || !bytes || length == 0)
        return -EINVAL;
    AlsaOwnClient* c = state_->find_output_port(*port_ref);
    if (!c)
        return -ENOENT;

    // A sound card's sequencer port opens the device for output only while
    // some port is connected to it, and refuses events otherwise. So our
    // output port stays connected to every destination it sends to; -EBUSY
    // says the connection is already there. While the kept lists stand, a
    // destination connected once needs no second request; if someone else
    // took the connection away meanwhile, the refused send asks again once.
    const AlsaAddress at{dest_ref->client, dest_ref->port};
    const bool listed = state_->kept_has(*dest_ref);
    auto& connected = c->connected;
    const auto known = std::find_if(connected.begin(), connected.end(),
                                    [&](const AlsaAddress& a) { return a.client == at.client && a.port == at.port; });
    if (listed && known != connected.end()) {
        const MidiStatus status = send_events(*c, at, bytes, length);
        if (status == 0 || status == -EINVAL)
            return status;
        connected.erase(known);
    }
    if (int err = snd_seq_connect_to(c->seq, c->out_port, at.client, at.port); err < 0 && err != -EBUSY)
        return err;
    if (listed)
        connected.push_back(at);
    return send_events(*c, at, bytes, length);
}

}  // namespace dialcraft
