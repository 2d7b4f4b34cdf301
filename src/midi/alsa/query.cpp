// Enumeration of the other sequencer clients and their ports from the kept
// lists, and property reads for every kind of handle: names live, card names
// and existence from what is kept while it stands.
#include <alsa/asoundlib.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>

#include "midi/alsa/alsa_midi_host.h"
#include "midi/alsa/card_names.h"
#include "midi/alsa/host_state.h"

namespace dialcraft {

namespace {

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

bool listed(const std::vector<AlsaAddress>& list, const AlsaRef& ref)
{
    return std::any_of(list.begin(), list.end(),
                       [&](const AlsaAddress& a) { return a.client == ref.client && a.port == ref.port; });
}

// Copies `text` into a fixed buffer, cut to fit and terminated.
template <size_t N>
void copy_text(char (&target)[N], const char* text)
{
    const size_t n = strnlen(text, N - 1);
    std::memcpy(target, text, n);
    target[n] = '\0';
}

// One scan of the link (a count, then reads by index) takes well under this;
// the announcement queue is asked once per such burst, not at every count.
constexpr std::chrono::milliseconds queue_check_interval{2};

}  // namespace

const AlsaDeviceLists& AlsaMidiHost::State::device_lists(bool check_queue)
{
    if (check_queue) {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_queue_check < queue_check_interval)
            check_queue = false;
        else
            last_queue_check = now;
    }
    if (kept.valid && kept.own_stamp == own_changes && watcher && watcher->unchanged_since(kept.stamp, check_queue))
        return kept.lists;
    // Taken before the walk: whatever changes during it moves the count on,
    // so the lists read now are never kept past a change they missed.
    const bool watching = watcher && watcher->alive();
    const uint64_t stamp = watching ? watcher->change_count() : 0;
    kept.card_names.clear();
    for (auto& c : clients)
        c->connected.clear();
    snd_seq_t* seq = query_seq();
    const bool read = seq && read_device_lists(seq, is_own, this, &kept.lists) == 0;
    if (!read)
        kept.lists.clear();
    kept.valid = watching && read;
    kept.stamp = stamp;
    kept.own_stamp = own_changes;
    return kept.lists;
}

bool AlsaMidiHost::State::kept_has(const AlsaRef& ref)
{
    const AlsaDeviceLists& lists = device_lists(false);
    if (!kept.valid)
        return false;
    switch (ref.kind) {
    case AlsaRefKind::device: return ref.port == 0 && lists.has_device(ref.client);
    case AlsaRefKind::source: return listed(lists.sources, ref);
    case AlsaRefKind::destination: return listed(lists.destinations, ref);
    default: return false;
    }
}

const AlsaCardNames* AlsaMidiHost::State::card_names(int card, int client)
{
    const auto key = std::make_pair(card, client);
    if (kept.valid) {
        if (auto it = kept.card_names.find(key); it != kept.card_names.end())
            return &it->second;
    }
    AlsaCardNames read;
    if (read_alsa_card_names(card, &read) != 0)
        return nullptr;
    if (kept.valid)
        return &kept.card_names.insert_or_assign(key, std::move(read)).first->second;
    uncached_card = std::move(read);
    return &uncached_card;
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
    names->client_name[0] = '\0';
    names->port_name[0] = '\0';
    names->card = -1;
    if (is_port_kind(ref.kind)) {
        snd_seq_port_info_t* port = nullptr;
        snd_seq_port_info_alloca(&port);
        if (int err = snd_seq_get_any_port_info(seq, ref.client, ref.port, port); err < 0)
            return err;
        copy_text(names->port_name, snd_seq_port_info_get_name(port));
        // A port exists only on a client that does.
        if (!need_client)
            return 0;
    }
    snd_seq_client_info_t* client = nullptr;
    snd_seq_client_info_alloca(&client);
    if (int err = snd_seq_get_any_client_info(seq, ref.client, client); err < 0)
        return err;
    copy_text(names->client_name, snd_seq_client_info_get_name(client));
    names->card = snd_seq_client_info_get_card(client);
    return 0;
}

MidiStatus AlsaMidiHost::State::port_capability(snd_seq_t* seq, int client, int port, unsigned int* caps)
{
    snd_seq_port_info_t* info = nullptr;
    snd_seq_port_info_alloca(&info);
    if (int err = snd_seq_get_any_port_info(seq, client, port, info); err < 0)
        return err;
    *caps = snd_seq_port_info_get_capability(info);
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

MidiStatus AlsaMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size)
{
    const auto ref = decode_alsa_ref(obj);
    if (!ref || !buffer || size == 0)
        return -EINVAL;
    State& s = *state_;
    std::string value;
    const char* text = nullptr;
    AlsaObjectNames names;
    if (prop == MidiStringProperty::address || prop == MidiStringProperty::name) {
        // Names are read live: a client may rename itself after its start
        // was announced, and no announcement says so.
        if (MidiStatus err = s.look_up(*ref, false, &names); err != 0)
            return err;
        if (prop == MidiStringProperty::name) {
            text = is_port_kind(ref->kind) ? names.port_name : names.client_name;
        } else {
            value = std::to_string(ref->client);
            if (is_port_kind(ref->kind))
                value += ':' + std::to_string(ref->port);
        }
    } else {
        // A port's model and manufacturer are those of its client. A client of
        // a sound card takes the card's names; when there is no card, or it
        // cannot be read, the client's name stands for the model. A device in
        // the kept lists has its card there and the card's names are kept
        // with the lists; the model of a device without a card is its name,
        // read live like every name.
        const AlsaCardNames* card = nullptr;
        bool known = false;
        if (ref->kind == AlsaRefKind::device && s.kept_has(*ref)) {
            const int card_number = s.kept.lists.card_of[ref->client];
            card = card_number >= 0 ? s.card_names(card_number, ref->client) : nullptr;
            known = card || (card_number < 0 && prop == MidiStringProperty::manufacturer);
        }
        if (!known) {
            if (MidiStatus err = s.look_up(*ref, true, &names); err != 0)
                return err;
            card = names.card >= 0 ? s.card_names(names.card, ref->client) : nullptr;
        }
        if (prop == MidiStringProperty::model)
            text = card ? card->name.c_str() : names.client_name;
        else if (card)
            value = usb_manufacturer_from_long_name(card->long_name, card->name);
    }
    if (!text)
        text = value.c_str();
    const size_t n = strnlen(text, size - 1);
    std::memcpy(buffer, text, n);
    buffer[n] = '\0';
    return 0;
}

MidiStatus AlsaMidiHost::get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value)
{
    const auto ref = decode_alsa_ref(obj);
    if (!ref || !value || prop != MidiIntegerProperty::offline)
        return -EINVAL;
    // The sequencer has no offline state: whatever exists is online. What
    // the kept lists hold exists as long as they are kept.
    if (!state_->kept_has(*ref)) {
        AlsaObjectNames names;
        if (MidiStatus err = state_->look_up(*ref, false, &names); err != 0)
            return err;
    }
    *value = 0;
    return 0;
}

}  // namespace dialcraft
