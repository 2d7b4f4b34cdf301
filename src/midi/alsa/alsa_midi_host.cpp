#include "midi/alsa/alsa_midi_host.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>

#include "midi/alsa/host_state.h"
#include "midi/alsa/sequencer_client.h"

namespace dialcraft {

namespace {
// alsa-lib reports some failures it also returns (such as a missing
// /dev/snd/seq) on stderr; the host hands every failure back as a status.
void quiet_alsa_errors(const char*, int, const char*, int, const char*, ...) {}

constexpr unsigned int readable_caps = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
}  // namespace

MidiStatus AlsaOwnClient::close()
{
    MidiStatus status = 0;
    if (input) {
        status = input->close();
        input.reset();
    }
    if (encoder) {
        snd_midi_event_free(encoder);
        encoder = nullptr;
    }
    if (seq) {
        if (int err = snd_seq_close(seq); err < 0 && status == 0)
            status = err;
        seq = nullptr;
    }
    return status;
}

uint8_t AlsaMidiHost::State::next_serial()
{
    if (++last_serial == 0)
        last_serial = 1;
    return last_serial;
}

snd_seq_t* AlsaMidiHost::State::query_seq() const
{
    return clients.empty() ? nullptr : clients.front()->seq;
}

AlsaMidiHost::State::~State()
{
    // The watcher first: its thread may still be telling the callback.
    watcher.reset();
    clients.clear();
}

MidiStatus AlsaMidiHost::State::start_watcher()
{
    if (watcher && watcher->alive())
        return 0;
    // A stopped thread has said why on stderr; a new watcher starts afresh.
    watcher.reset();
    ++own_changes;
    if (MidiStatus err = AlsaAnnounceWatcher::open(&watches, &watcher); err != 0)
        return err;
    return 0;
}

void AlsaMidiHost::State::stop_watcher_if_idle()
{
    if (watcher && clients.empty() && watches.empty()) {
        watcher.reset();
        ++own_changes;
    }
}

bool AlsaMidiHost::State::is_own_client(int id) const
{
    if (watcher && watcher->client_id() == id)
        return true;
    if (std::any_of(listeners.begin(), listeners.end(), [id](const auto& l) { return l->client_id() == id; }))
        return true;
    return std::any_of(clients.begin(), clients.end(),
                       [id](const auto& c) { return c->id == id || (c->input && c->input->client_id() == id); });
}

AlsaOwnClient* AlsaMidiHost::State::find_client(const AlsaRef& ref) const
{
    if (ref.kind != AlsaRefKind::client)
        return nullptr;
    for (const auto& c : clients)
        if (c->serial == ref.serial && c->id == ref.client)
            return c.get();
    return nullptr;
}

AlsaOwnClient* AlsaMidiHost::State::find_output_port(const AlsaRef& ref) const
{
    if (ref.kind != AlsaRefKind::output_port)
        return nullptr;
    for (const auto& c : clients)
        if (c->out_port >= 0 && c->out_serial == ref.serial && c->id == ref.client && c->out_port == ref.port)
            return c.get();
    return nullptr;
}

AlsaOwnClient* AlsaMidiHost::State::find_input_port(const AlsaRef& ref) const
{
    if (ref.kind != AlsaRefKind::input_port)
        return nullptr;
    for (const auto& c : clients)
        if (c->input && c->in_serial == ref.serial && c->input->client_id() == ref.client &&
            c->input->port_id() == ref.port)
            return c.get();
    return nullptr;
}

AlsaMidiHost::AlsaMidiHost() : state_(std::make_unique<State>())
{
    // Cannot fail: it only swaps a function pointer.
    snd_lib_error_set_handler(quiet_alsa_errors);
}

AlsaMidiHost::~AlsaMidiHost() = default;

MidiStatus AlsaMidiHost::client_create(const char* name, MidiObjectRef* out_client)
{
    if (!name || !out_client)
        return -EINVAL;
    auto c = std::make_unique<AlsaOwnClient>();
    // Output only: this client never receives, so nothing can pile up in it.
    if (MidiStatus err = open_sequencer_client(name, AlsaClientDirection::output, &c->seq, &c->id); err != 0)
        return err;
    if (int err = snd_midi_event_new(sizeof(MidiPacket::data), &c->encoder); err < 0) {
        c->encoder = nullptr;
        return err;
    }
    c->name = name;
    c->serial = state_->next_serial();
    *out_client = encode_alsa_ref(AlsaRef{AlsaRefKind::client, c->serial, static_cast<uint8_t>(c->id), 0});
    state_->clients.push_back(std::move(c));
    ++state_->own_changes;
    // Without a watcher nothing is kept and every look-up reads afresh, as
    // slow as that is; the client itself works either way.
    (void)state_->start_watcher();
    return 0;
}

MidiStatus AlsaMidiHost::output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port)
{
    const auto ref = decode_alsa_ref(client);
    if (!ref || ref->kind != AlsaRefKind::client || !name || !out_port)
        return -EINVAL;
    AlsaOwnClient* c = state_->find_client(*ref);
    if (!c)
        return -ENOENT;
    if (c->out_port >= 0)
        return -EBUSY;
    // Readable only: it sends, and no source can be connected into it.
    const int port = snd_seq_create_simple_port(c->seq, name, readable_caps,
                                                SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (port < 0)
        return port;
    c->out_port = port;
    c->out_serial = state_->next_serial();
    *out_port = encode_alsa_ref(
        AlsaRef{AlsaRefKind::output_port, c->out_serial, static_cast<uint8_t>(c->id), static_cast<uint8_t>(port)});
    return 0;
}

MidiStatus AlsaMidiHost::input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc, void* proc_ref,
                                           MidiObjectRef* out_port)
{
    const auto ref = decode_alsa_ref(client);
    if (!ref || ref->kind != AlsaRefKind::client || !name || !proc || !out_port)
        return -EINVAL;
    AlsaOwnClient* c = state_->find_client(*ref);
    if (!c)
        return -ENOENT;
    if (c->input)
        return -EBUSY;
    if (MidiStatus err = AlsaInputPort::open(c->name.c_str(), name, proc, proc_ref, &c->input); err != 0)
        return err;
    ++state_->own_changes;
    c->in_serial = state_->next_serial();
    *out_port = encode_alsa_ref(AlsaRef{AlsaRefKind::input_port, c->in_serial,
                                        static_cast<uint8_t>(c->input->client_id()),
                                        static_cast<uint8_t>(c->input->port_id())});
    return 0;
}

MidiStatus AlsaMidiHost::client_dispose(MidiObjectRef client)
{
    const auto ref = decode_alsa_ref(client);
    if (!ref || ref->kind != AlsaRefKind::client)
        return -EINVAL;
    AlsaOwnClient* target = state_->find_client(*ref);
    if (!target)
        return -ENOENT;
    auto& clients = state_->clients;
    const auto it = std::find_if(clients.begin(), clients.end(), [&](const auto& c) { return c.get() == target; });
    const MidiStatus status = target->close();
    clients.erase(it);
    ++state_->own_changes;
    state_->stop_watcher_if_idle();
    return status;
}

MidiStatus AlsaMidiHost::port_dispose(MidiObjectRef port)
{
    const auto ref = decode_alsa_ref(port);
    if (!ref)
        return -EINVAL;
    if (ref->kind == AlsaRefKind::output_port) {
        AlsaOwnClient* c = state_->find_output_port(*ref);
        if (!c)
            return -ENOENT;
        if (int err = snd_seq_delete_simple_port(c->seq, c->out_port); err < 0)
            return err;
        c->out_port = -1;
        c->out_serial = 0;
        c->connected.clear();
        return 0;
    }
    if (ref->kind == AlsaRefKind::input_port) {
        AlsaOwnClient* c = state_->find_input_port(*ref);
        if (!c)
            return -ENOENT;
        const MidiStatus status = c->input->close();
        c->input.reset();
        c->in_serial = 0;
        ++state_->own_changes;
        return status;
    }
    return -EINVAL;
}

std::unique_ptr<MidiHost> make_alsa_midi_host()
{
    return std::make_unique<AlsaMidiHost>();
}

MidiStatus AlsaMidiHost::watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch)
{
    if (!proc || !watch)
        return -EINVAL;
    State* s = state_.get();
    if (MidiStatus err = s->start_watcher(); err != 0)
        return err;
    const uint64_t id = s->watches.add(proc, context);
    *watch = MidiChangeWatch([s, id] {
        s->watches.remove(id);
        s->stop_watcher_if_idle();
    });
    return 0;
}

MidiStatus AlsaMidiHost::listen(MidiListener* listener, MidiChangeWatch* listening)
{
    if (!listener || !listening)
        return -EINVAL;
    State* s = state_.get();
    std::unique_ptr<AlsaSourceListener> opened;
    if (MidiStatus err = AlsaSourceListener::open(listener, &opened); err != 0)
        return err;
    AlsaSourceListener* key = opened.get();
    s->listeners.push_back(std::move(opened));
    ++s->own_changes;
    *listening = MidiChangeWatch([s, key] {
        std::erase_if(s->listeners, [key](const auto& l) { return l.get() == key; });
        ++s->own_changes;
    });
    return 0;
}

}  // namespace dialcraft
