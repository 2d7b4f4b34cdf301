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

bool is_own(int client, const void* state)
{
    return static_cast<const AlsaMidiHost::State*>(state)->is_own_client(client);
}

MidiObjectRef device_ref(uint8_t client)
{
    return encode_alsa_ref(AlsaRef{AlsaRefKind::device, 0, client, 0});
}

MidiObjectRef port_ref(AlsaRefKind kind, const std::vector<AlsaAddress>& list, size_t index)
{
    if (index >= list.size())
        return 0;
    return encode_alsa_ref(AlsaRef{kind, 0, list[index].client, list[index].port});
}

bool is_port_kind(AlsaRefKind kind)
{
    return kind != AlsaRefKind::client && kind != AlsaRefKind::device;
}

}  // namespace

const AlsaDeviceLists& AlsaMidiHost::State::device_lists(bool check_queue)
{
    if (kept.valid && kept.own_stamp == own_changes && watcher && watcher->unchanged_since(kept.stamp, check_queue))
        return kept.lists;
    // Taken before the walk: whatever changes during it moves the count on,
    // so the lists read now are never kept past a change they missed.
    const bool watching = watcher && watcher->alive();
    const uint64_t stamp = watching ? watcher->change_count() : 0;
    kept.card_names.clear();
    snd_seq_t* seq = query_seq();
    const bool read = seq && read_device_lists(seq, is_own, this, &kept.lists) == 0;
    if (!read)
        kept.lists.clear();
    kept.valid = watching && read;
    kept.stamp = stamp;
    kept.own_stamp = own_changes;
    return kept.lists;
}

MidiStatus AlsaMidiHost::State::card_names(int card, int client, AlsaCardNames* out)
{
    const auto key = std::make_pair(card, client);
    if (kept.valid) {
        if (auto it = kept.card_names.find(key); it != kept.card_names.end()) {
            *out = it->second;
            return 0;
        }
    }
    if (MidiStatus err = read_alsa_card_names(card, out); err != 0)
        return err;
    if (kept.valid)
        kept.card_names.emplace(key, *out);
    return 0;
}

MidiStatus AlsaMidiHost::State::look_up(const AlsaRef& ref, bool need_client, AlsaObjectNames* names) const
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
        // A port exists only on a client that does.
        if (!need_client) {
            names->client_name.clear();
            names->port_name = std::move(port_name);
            names->card = -1;
            return 0;
        }
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

// A count starts every scan of the link, so it also makes sure no
// announcement is waiting; a look-up by index trusts the watcher's count.
size_t AlsaMidiHost::number_of_sources()
{
    return state_->device_lists(true).sources.size();
}

MidiObjectRef AlsaMidiHost::get_source(size_t index)
{
    return port_ref(AlsaRefKind::source, state_->device_lists(false).sources, index);
}

size_t AlsaMidiHost::number_of_destinations()
{
    return state_->device_lists(true).destinations.size();
}

MidiObjectRef AlsaMidiHost::get_destination(size_t index)
{
    return port_ref(AlsaRefKind::destination, state_->device_lists(false).destinations, index);
}

size_t AlsaMidiHost::number_of_devices()
{
    return state_->device_lists(true).devices.size();
}

MidiObjectRef AlsaMidiHost::get_device(size_t index)
{
    const AlsaDeviceLists& lists = state_->device_lists(false);
    return index < lists.devices.size() ? device_ref(lists.devices[index]) : 0;
}

MidiStatus AlsaMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer,
                                             size_t size)
{
    const auto ref = decode_alsa_ref(obj);
    if (!ref || !buffer || size == 0)
        return -EINVAL;
    std::string value;
    if (prop == MidiStringProperty::address || prop == MidiStringProperty::name) {
        // Names are read live: a client may rename itself after its start
        // was announced, and no announcement says so.
        AlsaObjectNames names;
        if (MidiStatus err = state_->look_up(*ref, false, &names); err != 0)
            return err;
        if (prop == MidiStringProperty::name) {
            value = is_port_kind(ref->kind) ? names.port_name : names.client_name;
        } else {
            value = std::to_string(ref->client);
            if (is_port_kind(ref->kind))
                value += ':' + std::to_string(ref->port);
        }
    } else {
        // A port's model and manufacturer are those of its client. A client of
        // a sound card takes the card's names; when there is no card, or it
        // cannot be read, the client's name stands for the model. A device in
        // the kept lists has its card there, and the card's names are kept
        // with the lists; anything else is read live.
        AlsaCardNames card;
        bool has_card = false;
        bool known = false;
        const AlsaDeviceLists& lists = state_->device_lists(false);
        if (ref->kind == AlsaRefKind::device && state_->kept.valid && lists.has_device(ref->client) &&
            lists.card_of[ref->client] >= 0) {
            has_card = state_->card_names(lists.card_of[ref->client], ref->client, &card) == 0;
            known = has_card;
        }
        std::string client_name;
        if (!known) {
            AlsaObjectNames names;
            if (MidiStatus err = state_->look_up(*ref, true, &names); err != 0)
                return err;
            has_card = names.card >= 0 && state_->card_names(names.card, ref->client, &card) == 0;
            client_name = std::move(names.client_name);
        }
        if (prop == MidiStringProperty::model)
            value = has_card ? card.name : client_name;
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
    if (MidiStatus err = state_->look_up(*ref, false, &names); err != 0)
        return err;
    *value = 0;
    return 0;
}
