// Enumeration of the other sequencer clients and their ports, and live
// property reads for every kind of handle.
#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/card_names.h"
#include "midi/alsa/host_state.h"

namespace {

struct ClientInfoFree {
    void operator()(snd_seq_client_info_t* info) const { snd_seq_client_info_free(info); }
};
struct PortInfoFree {
    void operator()(snd_seq_port_info_t* info) const { snd_seq_port_info_free(info); }
};
using ClientInfo = std::unique_ptr<snd_seq_client_info_t, ClientInfoFree>;
using PortInfo = std::unique_ptr<snd_seq_port_info_t, PortInfoFree>;

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

enum class PortRole { source, destination };

constexpr unsigned int role_caps(PortRole role)
{
    return role == PortRole::source ? SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ
                                    : SND_SEQ_PORT_CAP_WRITE | SND_SEQ_PORT_CAP_SUBS_WRITE;
}

// Walks the devices, the clients that are neither System nor ours, in
// sequencer order; stops early when `visit(client)` returns true.
template <typename Visit>
void for_each_device(const AlsaMidiHost::State& state, Visit visit)
{
    snd_seq_t* seq = state.query_seq();
    ClientInfo info = new_client_info();
    if (!seq || !info)
        return;
    snd_seq_client_info_set_client(info.get(), -1);
    while (snd_seq_query_next_client(seq, info.get()) >= 0) {
        const int id = snd_seq_client_info_get_client(info.get());
        if (id == SND_SEQ_CLIENT_SYSTEM || state.is_own_client(id))
            continue;
        if (visit(id))
            return;
    }
}

// Walks the devices' ports that others may connect in `role` (hidden ports
// left out); stops early when `visit(client, port)` returns true.
template <typename Visit>
void for_each_port(const AlsaMidiHost::State& state, PortRole role, Visit visit)
{
    snd_seq_t* seq = state.query_seq();
    PortInfo info = new_port_info();
    if (!seq || !info)
        return;
    const unsigned int wanted = role_caps(role);
    for_each_device(state, [&](int client) {
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

size_t count_ports(const AlsaMidiHost::State& state, PortRole role)
{
    size_t n = 0;
    for_each_port(state, role, [&](int, int) {
        ++n;
        return false;
    });
    return n;
}

MidiObjectRef port_at(const AlsaMidiHost::State& state, PortRole role, size_t index)
{
    const AlsaRefKind kind = role == PortRole::source ? AlsaRefKind::source : AlsaRefKind::destination;
    MidiObjectRef found = 0;
    size_t i = 0;
    for_each_port(state, role, [&](int client, int port) {
        if (i++ != index)
            return false;
        found = encode_alsa_ref(AlsaRef{kind, 0, static_cast<uint8_t>(client), static_cast<uint8_t>(port)});
        return true;
    });
    return found;
}

bool is_port_kind(AlsaRefKind kind)
{
    return kind != AlsaRefKind::client && kind != AlsaRefKind::device;
}

}  // namespace

MidiStatus AlsaMidiHost::State::look_up(const AlsaRef& ref, AlsaObjectNames* names) const
{
    snd_seq_t* seq = query_seq();
    if (!seq)
        return -ENODEV;
    const bool own = ref.kind == AlsaRefKind::client || ref.kind == AlsaRefKind::output_port ||
                     ref.kind == AlsaRefKind::input_port;
    if (own && !find_client(ref) && !find_output_port(ref) && !find_input_port(ref))
        return -ENOENT;
    std::string port_name;
    if (is_port_kind(ref.kind)) {
        PortInfo port = new_port_info();
        if (!port)
            return -ENOMEM;
        if (int err = snd_seq_get_any_port_info(seq, ref.client, ref.port, port.get()); err < 0)
            return err;
        port_name = snd_seq_port_info_get_name(port.get());
    }
    ClientInfo client = new_client_info();
    if (!client)
        return -ENOMEM;
    if (int err = snd_seq_get_any_client_info(seq, ref.client, client.get()); err < 0)
        return err;
    names->client_name = snd_seq_client_info_get_name(client.get());
    names->port_name = std::move(port_name);
    names->card = snd_seq_client_info_get_card(client.get());
    return 0;
}

MidiStatus AlsaMidiHost::State::port_capability(snd_seq_t* seq, int client, int port, unsigned int* caps)
{
    PortInfo info = new_port_info();
    if (!info)
        return -ENOMEM;
    if (int err = snd_seq_get_any_port_info(seq, client, port, info.get()); err < 0)
        return err;
    *caps = snd_seq_port_info_get_capability(info.get());
    return 0;
}

size_t AlsaMidiHost::number_of_sources()
{
    return count_ports(*state_, PortRole::source);
}

MidiObjectRef AlsaMidiHost::get_source(size_t index)
{
    return port_at(*state_, PortRole::source, index);
}

size_t AlsaMidiHost::number_of_destinations()
{
    return count_ports(*state_, PortRole::destination);
}

MidiObjectRef AlsaMidiHost::get_destination(size_t index)
{
    return port_at(*state_, PortRole::destination, index);
}

size_t AlsaMidiHost::number_of_devices()
{
    size_t n = 0;
    for_each_device(*state_, [&](int) {
        ++n;
        return false;
    });
    return n;
}

MidiObjectRef AlsaMidiHost::get_device(size_t index)
{
    MidiObjectRef found = 0;
    size_t i = 0;
    for_each_device(*state_, [&](int client) {
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
    AlsaObjectNames names;
    if (MidiStatus err = state_->look_up(*ref, &names); err != 0)
        return err;
    std::string value;
    if (prop == MidiStringProperty::address) {
        value = std::to_string(ref->client);
        if (is_port_kind(ref->kind))
            value += ':' + std::to_string(ref->port);
    } else if (prop == MidiStringProperty::name) {
        value = is_port_kind(ref->kind) ? names.port_name : names.client_name;
    } else {
        // A port's model and manufacturer are those of its client. A client of
        // a sound card takes the card's names; when there is no card, or it
        // cannot be read, the client's name stands for the model.
        AlsaCardNames card;
        const bool has_card = names.card >= 0 && read_alsa_card_names(names.card, &card) == 0;
        if (prop == MidiStringProperty::model)
            value = has_card ? card.name : names.client_name;
        else if (has_card)
            value = usb_manufacturer_from_long_name(card.long_name, card.name);
    }
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
    // The sequencer has no offline state: whatever exists is online.
    AlsaObjectNames names;
    if (MidiStatus err = state_->look_up(*ref, &names); err != 0)
        return err;
    *value = 0;
    return 0;
}
