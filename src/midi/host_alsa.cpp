#include "midi/host_alsa.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "midi/host_alsa_card.h"
#include "midi/host_alsa_input.h"
#include "midi/host_alsa_ref.h"

namespace {

// alsa-lib reports failures it also returns (such as a missing /dev/snd/seq)
// on stderr; the host hands every failure back as a status instead.
void quiet_alsa_errors(const char*, int, const char*, int, const char*, ...) {}

struct ClientInfoFree {
    void operator()(snd_seq_client_info_t* info) const { snd_seq_client_info_free(info); }
};
struct PortInfoFree {
    void operator()(snd_seq_port_info_t* info) const { snd_seq_port_info_free(info); }
};
struct SubscribeFree {
    void operator()(snd_seq_port_subscribe_t* sub) const { snd_seq_port_subscribe_free(sub); }
};
using ClientInfo = std::unique_ptr<snd_seq_client_info_t, ClientInfoFree>;
using PortInfo = std::unique_ptr<snd_seq_port_info_t, PortInfoFree>;
using Subscription = std::unique_ptr<snd_seq_port_subscribe_t, SubscribeFree>;

ClientInfo new_client_info()
{
    snd_seq_client_info_t* info = nullptr;
    return ClientInfo(snd_seq_client_info_malloc(&info) < 0 ? nullptr : info);
}

PortInfo new_port_info()
{
    snd_seq_port_info_t* info = nullptr;
    return PortInfo(snd_seq_port_info_malloc(&info) < 0 ? nullptr : info);
}

Subscription new_subscription(int sender_client, int sender_port, int dest_client, int dest_port)
{
    snd_seq_port_subscribe_t* sub = nullptr;
    if (snd_seq_port_subscribe_malloc(&sub) < 0)
        return nullptr;
    snd_seq_addr_t sender{static_cast<unsigned char>(sender_client), static_cast<unsigned char>(sender_port)};
    snd_seq_addr_t dest{static_cast<unsigned char>(dest_client), static_cast<unsigned char>(dest_port)};
    snd_seq_port_subscribe_set_sender(sub, &sender);
    snd_seq_port_subscribe_set_dest(sub, &dest);
    return Subscription(sub);
}

constexpr unsigned int source_caps = SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ;
constexpr unsigned int destination_caps = SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;

// One client of ours: the sequencer handle that sends, queries and makes
// subscriptions, its output port, and the input side on a client of its own.
struct OwnClient {
    uint8_t serial = 0;
    snd_seq_t* seq = nullptr;
    int id = -1;
    std::string name;
    snd_midi_event_t* encoder = nullptr;
    int out_port = -1;
    uint8_t out_serial = 0;
    std::unique_ptr<AlsaInputPort> input;
    uint8_t in_serial = 0;

    OwnClient() = default;
    OwnClient(const OwnClient&) = delete;
    OwnClient& operator=(const OwnClient&) = delete;
    ~OwnClient() { close(); }

    // Joins the input thread before closing anything; returns the first failure.
    MidiStatus close()
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
};

enum class PortRole { source, destination };

}  // namespace

struct AlsaMidiHost::State {
    std::vector<std::unique_ptr<OwnClient>> clients;
    uint8_t last_serial = 0;

    uint8_t next_serial()
    {
        if (++last_serial == 0)
            last_serial = 1;
        return last_serial;
    }

    // Queries go through the first open client; with none, there is nothing to see.
    snd_seq_t* query_seq() const { return clients.empty() ? nullptr : clients.front()->seq; }

    bool is_own_client(int id) const
    {
        for (const auto& c : clients)
            if (c->id == id || (c->input && c->input->client_id() == id))
                return true;
        return false;
    }

    OwnClient* find_client(const AlsaRef& ref) const
    {
        for (const auto& c : clients)
            if (ref.kind == AlsaRefKind::client && c->serial == ref.serial && c->id == ref.client)
                return c.get();
        return nullptr;
    }

    OwnClient* find_output_port(const AlsaRef& ref) const
    {
        for (const auto& c : clients)
            if (ref.kind == AlsaRefKind::output_port && c->out_port >= 0 && c->out_serial == ref.serial &&
                c->id == ref.client && c->out_port == ref.port)
                return c.get();
        return nullptr;
    }

    OwnClient* find_input_port(const AlsaRef& ref) const
    {
        for (const auto& c : clients)
            if (ref.kind == AlsaRefKind::input_port && c->input && c->in_serial == ref.serial &&
                c->input->client_id() == ref.client && c->input->port_id() == ref.port)
                return c.get();
        return nullptr;
    }

    // Walks the other clients (not System, not ours) in sequencer order and
    // calls `visit(client)` for each; stops early when it returns true.
    template <typename Visit>
    void for_each_device(Visit visit) const
    {
        snd_seq_t* seq = query_seq();
        ClientInfo info = new_client_info();
        if (!seq || !info)
            return;
        snd_seq_client_info_set_client(info.get(), -1);
        while (snd_seq_query_next_client(seq, info.get()) >= 0) {
            const int id = snd_seq_client_info_get_client(info.get());
            if (id == SND_SEQ_CLIENT_SYSTEM || is_own_client(id))
                continue;
            if (visit(id))
                return;
        }
    }

    // Walks the ports of the other clients that take `role` and calls
    // `visit(client, port)`; stops early when it returns true.
    template <typename Visit>
    void for_each_port(PortRole role, Visit visit) const
    {
        snd_seq_t* seq = query_seq();
        PortInfo info = new_port_info();
        if (!seq || !info)
            return;
        const unsigned int wanted = role == PortRole::source ? source_caps : destination_caps;
        for_each_device([&](int client) {
            snd_seq_port_info_set_client(info.get(), client);
            snd_seq_port_info_set_port(info.get(), -1);
            while (snd_seq_query_next_port(seq, info.get()) >= 0) {
                const unsigned int caps = snd_seq_port_info_get_capability(info.get());
                if ((caps & wanted) != wanted || (caps & SND_SEQ_PORT_CAP_NO_EXPORT))
                    continue;
                if (visit(client, snd_seq_port_info_get_port(info.get())))
                    return true;
            }
            return false;
        });
    }

    size_t count_ports(PortRole role) const
    {
        size_t n = 0;
        for_each_port(role, [&](int, int) {
            ++n;
            return false;
        });
        return n;
    }

    MidiObjectRef port_at(PortRole role, size_t index) const
    {
        MidiObjectRef found = 0;
        size_t i = 0;
        const AlsaRefKind kind = role == PortRole::source ? AlsaRefKind::source : AlsaRefKind::destination;
        for_each_port(role, [&](int client, int port) {
            if (i++ != index)
                return false;
            found = encode_alsa_ref(AlsaRef{kind, 0, static_cast<uint8_t>(client), static_cast<uint8_t>(port)});
            return true;
        });
        return found;
    }

    // Checks that the object behind `ref` exists right now and finds the
    // sequencer client it belongs to. Fills `port_name` for port handles.
    MidiStatus look_up(const AlsaRef& ref, ClientInfo* client, std::string* port_name) const;
    MidiStatus read_string(const AlsaRef& ref, MidiStringProperty prop, std::string* value) const;
    MidiStatus own_port_for_connection(const AlsaRef& port, OwnClient** owner, int* client, int* port_id) const;
};

MidiStatus AlsaMidiHost::State::look_up(const AlsaRef& ref, ClientInfo* client, std::string* port_name) const
{
    snd_seq_t* seq = query_seq();
    if (!seq)
        return -ENODEV;
    const bool own = ref.kind == AlsaRefKind::client || ref.kind == AlsaRefKind::output_port ||
                     ref.kind == AlsaRefKind::input_port;
    if (own && !find_client(ref) && !find_output_port(ref) && !find_input_port(ref))
        return -ENOENT;
    const bool is_port = ref.kind != AlsaRefKind::client && ref.kind != AlsaRefKind::device;
    if (is_port) {
        PortInfo port = new_port_info();
        if (!port)
            return -ENOMEM;
        if (int err = snd_seq_get_any_port_info(seq, ref.client, ref.port, port.get()); err < 0)
            return err;
        *port_name = snd_seq_port_info_get_name(port.get());
    }
    ClientInfo info = new_client_info();
    if (!info)
        return -ENOMEM;
    if (int err = snd_seq_get_any_client_info(seq, ref.client, info.get()); err < 0)
        return err;
    *client = std::move(info);
    return 0;
}

MidiStatus AlsaMidiHost::State::read_string(const AlsaRef& ref, MidiStringProperty prop, std::string* value) const
{
    ClientInfo client;
    std::string port_name;
    if (MidiStatus err = look_up(ref, &client, &port_name); err != 0)
        return err;
    const bool is_port = ref.kind != AlsaRefKind::client && ref.kind != AlsaRefKind::device;
    const std::string client_name = snd_seq_client_info_get_name(client.get());
    if (prop == MidiStringProperty::name) {
        *value = is_port ? port_name : client_name;
        return 0;
    }
    // A port's model and manufacturer are those of the client it belongs to.
    // A client of a sound card takes the card's names; if the card cannot be
    // read (or there is none) the client's own name stands for the model.
    AlsaCardNames card;
    const int card_number = snd_seq_client_info_get_card(client.get());
    const bool has_card = card_number >= 0 && read_alsa_card_names(card_number, &card) == 0;
    if (prop == MidiStringProperty::model)
        *value = has_card ? card.name : client_name;
    else
        *value = has_card ? usb_manufacturer_from_long_name(card.long_name, card.name) : std::string();
    return 0;
}

// The address of our port behind `port` and the client whose handle makes
// subscriptions for it.
MidiStatus AlsaMidiHost::State::own_port_for_connection(const AlsaRef& port, OwnClient** owner, int* client,
                                                        int* port_id) const
{
    if (OwnClient* c = find_output_port(port)) {
        *owner = c;
        *client = c->id;
        *port_id = c->out_port;
        return 0;
    }
    if (OwnClient* c = find_input_port(port)) {
        *owner = c;
        *client = c->input->client_id();
        *port_id = c->input->port_id();
        return 0;
    }
    return port.kind == AlsaRefKind::output_port || port.kind == AlsaRefKind::input_port ? -ENOENT : -EINVAL;
}

AlsaMidiHost::AlsaMidiHost() : state_(std::make_unique<State>())
{
    // Always succeeds; it only swaps a function pointer.
    snd_lib_error_set_handler(quiet_alsa_errors);
}

AlsaMidiHost::~AlsaMidiHost() = default;

MidiStatus AlsaMidiHost::client_create(const char* name, MidiObjectRef* out_client)
{
    if (!name || !out_client)
        return -EINVAL;
    auto c = std::make_unique<OwnClient>();
    // Output only: this client never receives, so nothing can pile up in it.
    if (int err = snd_seq_open(&c->seq, "default", SND_SEQ_OPEN_OUTPUT, SND_SEQ_NONBLOCK); err < 0) {
        c->seq = nullptr;
        return err;
    }
    if (int err = snd_seq_set_client_name(c->seq, name); err < 0)
        return err;
    c->id = snd_seq_client_id(c->seq);
    if (c->id < 0)
        return c->id;
    if (int err = snd_midi_event_new(sizeof(MidiPacket::data), &c->encoder); err < 0) {
        c->encoder = nullptr;
        return err;
    }
    c->name = name;
    c->serial = state_->next_serial();
    *out_client = encode_alsa_ref(AlsaRef{AlsaRefKind::client, c->serial, static_cast<uint8_t>(c->id), 0});
    state_->clients.push_back(std::move(c));
    return 0;
}

MidiStatus AlsaMidiHost::output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port)
{
    const auto ref = decode_alsa_ref(client);
    if (!ref || ref->kind != AlsaRefKind::client || !name || !out_port)
        return -EINVAL;
    OwnClient* c = state_->find_client(*ref);
    if (!c)
        return -ENOENT;
    if (c->out_port >= 0)
        return -EBUSY;
    // Readable only: it sends, and nothing can be connected into it.
    const int port = snd_seq_create_simple_port(c->seq, name, source_caps,
                                                SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    if (port < 0)
        return port;
    c->out_port = port;
    c->out_serial = state_->next_serial();
    *out_port = encode_alsa_ref(
        AlsaRef{AlsaRefKind::output_port, c->out_serial, static_cast<uint8_t>(c->id), static_cast<uint8_t>(port)});
    return 0;
}

MidiStatus AlsaMidiHost::input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc,
                                           void* proc_ref, MidiObjectRef* out_port)
{
    const auto ref = decode_alsa_ref(client);
    if (!ref || ref->kind != AlsaRefKind::client || !name || !proc || !out_port)
        return -EINVAL;
    OwnClient* c = state_->find_client(*ref);
    if (!c)
        return -ENOENT;
    if (c->input)
        return -EBUSY;
    if (MidiStatus err = AlsaInputPort::open(c->name.c_str(), name, proc, proc_ref, &c->input); err != 0)
        return err;
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
    OwnClient* target = state_->find_client(*ref);
    if (!target)
        return -ENOENT;
    auto& clients = state_->clients;
    const auto it = std::find_if(clients.begin(), clients.end(), [&](const auto& c) { return c.get() == target; });
    const MidiStatus status = target->close();
    clients.erase(it);
    return status;
}

MidiStatus AlsaMidiHost::port_dispose(MidiObjectRef port)
{
    const auto ref = decode_alsa_ref(port);
    if (!ref)
        return -EINVAL;
    if (ref->kind == AlsaRefKind::output_port) {
        OwnClient* c = state_->find_output_port(*ref);
        if (!c)
            return -ENOENT;
        if (int err = snd_seq_delete_simple_port(c->seq, c->out_port); err < 0)
            return err;
        c->out_port = -1;
        c->out_serial = 0;
        return 0;
    }
    if (ref->kind == AlsaRefKind::input_port) {
        OwnClient* c = state_->find_input_port(*ref);
        if (!c)
            return -ENOENT;
        const MidiStatus status = c->input->close();
        c->input.reset();
        c->in_serial = 0;
        return status;
    }
    return -EINVAL;
}

size_t AlsaMidiHost::number_of_sources()
{
    return state_->count_ports(PortRole::source);
}

MidiObjectRef AlsaMidiHost::get_source(size_t index)
{
    return state_->port_at(PortRole::source, index);
}

size_t AlsaMidiHost::number_of_destinations()
{
    return state_->count_ports(PortRole::destination);
}

MidiObjectRef AlsaMidiHost::get_destination(size_t index)
{
    return state_->port_at(PortRole::destination, index);
}

size_t AlsaMidiHost::number_of_devices()
{
    size_t n = 0;
    state_->for_each_device([&](int) {
        ++n;
        return false;
    });
    return n;
}

MidiObjectRef AlsaMidiHost::get_device(size_t index)
{
    MidiObjectRef found = 0;
    size_t i = 0;
    state_->for_each_device([&](int client) {
        if (i++ != index)
            return false;
        found = encode_alsa_ref(AlsaRef{AlsaRefKind::device, 0, static_cast<uint8_t>(client), 0});
        return true;
    });
    return found;
}

MidiStatus AlsaMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer,
                                             size_t size)
{
    const auto ref = decode_alsa_ref(obj);
    if (!ref || !buffer || size == 0)
        return -EINVAL;
    std::string value;
    if (MidiStatus err = state_->read_string(*ref, prop, &value); err != 0)
        return err;
    const size_t n = std::min(value.size(), size - 1);
    std::memcpy(buffer, value.data(), n);
    buffer[n] = '\0';
    return 0;
}

MidiStatus AlsaMidiHost::get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value)
{
    const auto ref = decode_alsa_ref(obj);
    if (!ref || !value || prop != MidiIntegerProperty::offline)
        return -EINVAL;
    // The sequencer has no offline state: what exists is online.
    ClientInfo client;
    std::string port_name;
    if (MidiStatus err = state_->look_up(*ref, &client, &port_name); err != 0)
        return err;
    *value = 0;
    return 0;
}

MidiStatus AlsaMidiHost::port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref)
{
    const auto port_ref = decode_alsa_ref(port);
    const auto source_ref = decode_alsa_ref(source);
    if (!port_ref || !source_ref || source_ref->kind != AlsaRefKind::source)
        return -EINVAL;
    OwnClient* owner = nullptr;
    int client = -1;
    int port_id = -1;
    if (MidiStatus err = state_->own_port_for_connection(*port_ref, &owner, &client, &port_id); err != 0)
        return err;
    // The sequencer lets a client connect anything into its own ports, so our
    // ports' capabilities are checked here: only a writable port takes a source.
    PortInfo info = new_port_info();
    if (!info)
        return -ENOMEM;
    if (int err = snd_seq_get_any_port_info(owner->seq, client, port_id, info.get()); err < 0)
        return err;
    if ((snd_seq_port_info_get_capability(info.get()) & destination_caps) != destination_caps)
        return -EPERM;
    Subscription sub = new_subscription(source_ref->client, source_ref->port, client, port_id);
    if (!sub)
        return -ENOMEM;
    if (int err = snd_seq_subscribe_port(owner->seq, sub.get()); err < 0)
        return err;
    if (owner->input && owner->input->client_id() == client)
        owner->input->set_source_ref(source_ref->client, source_ref->port, conn_ref);
    return 0;
}

MidiStatus AlsaMidiHost::port_disconnect_source(MidiObjectRef port, MidiObjectRef source)
{
    const auto port_ref = decode_alsa_ref(port);
    const auto source_ref = decode_alsa_ref(source);
    if (!port_ref || !source_ref || source_ref->kind != AlsaRefKind::source)
        return -EINVAL;
    OwnClient* owner = nullptr;
    int client = -1;
    int port_id = -1;
    if (MidiStatus err = state_->own_port_for_connection(*port_ref, &owner, &client, &port_id); err != 0)
        return err;
    Subscription sub = new_subscription(source_ref->client, source_ref->port, client, port_id);
    if (!sub)
        return -ENOMEM;
    if (int err = snd_seq_unsubscribe_port(owner->seq, sub.get()); err < 0)
        return err;
    if (owner->input && owner->input->client_id() == client)
        owner->input->forget_source_ref(source_ref->client, source_ref->port);
    return 0;
}

MidiStatus AlsaMidiHost::send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    const auto port_ref = decode_alsa_ref(port);
    const auto dest_ref = decode_alsa_ref(destination);
    if (!port_ref || port_ref->kind != AlsaRefKind::output_port || !dest_ref ||
        dest_ref->kind != AlsaRefKind::destination || !bytes || length == 0)
        return -EINVAL;
    OwnClient* c = state_->find_output_port(*port_ref);
    if (!c)
        return -ENOENT;

    // A sound card's MIDI port opens the device for output only while some
    // port is connected to it, and drops events sent to it otherwise. So our
    // output port stays connected to every destination it sends to; -EBUSY
    // says the connection is already there.
    if (int err = snd_seq_connect_to(c->seq, c->out_port, dest_ref->client, dest_ref->port);
        err < 0 && err != -EBUSY)
        return err;

    snd_midi_event_reset_encode(c->encoder);
    bool sent = false;
    size_t offset = 0;
    while (offset < length) {
        snd_seq_event_t ev;
        snd_seq_ev_clear(&ev);
        const long used =
            snd_midi_event_encode(c->encoder, bytes + offset, static_cast<long>(length - offset), &ev);
        if (used < 0)
            return static_cast<MidiStatus>(used);
        if (used == 0)
            break;
        offset += static_cast<size_t>(used);
        if (ev.type == SND_SEQ_EVENT_NONE)
            continue;  // bytes of a message that has not ended yet
        snd_seq_ev_set_source(&ev, c->out_port);
        snd_seq_ev_set_dest(&ev, dest_ref->client, dest_ref->port);
        snd_seq_ev_set_direct(&ev);
        if (int err = snd_seq_event_output_direct(c->seq, &ev); err < 0)
            return err;
        sent = true;
    }
    // Bytes that make no complete message send nothing, which is a failure.
    return sent ? 0 : -EINVAL;
}

std::unique_ptr<MidiHost> make_alsa_midi_host()
{
    return std::make_unique<AlsaMidiHost>();
}
