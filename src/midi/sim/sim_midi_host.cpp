#include "midi/sim/sim_midi_host.h"

#include <algorithm>
#include <cstring>
#include <thread>

namespace dialcraft {

namespace {
constexpr MidiStatus not_found = -50;      // no such object, or not of that kind
constexpr MidiStatus not_permitted = -10;  // the service cannot be opened
constexpr MidiStatus no_connection = -20;  // disconnecting what is not connected
}  // namespace

int SimMidiHost::add(Kind kind, Object object)
{
    int id = 0;
    {
        std::lock_guard lock(mutex_);
        object.kind = kind;
        id = next_id_++;
        objects_.emplace(id, std::move(object));
        list(kind).push_back(id);
    }
    notify_changed();
    return id;
}

void SimMidiHost::notify_changed()
{
    watchers_.tell();
}

MidiStatus SimMidiHost::watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch)
{
    if (!proc || !watch)
        return not_found;
    const uint64_t id = watchers_.add(proc, context);
    *watch = MidiChangeWatch([this, id] { watchers_.remove(id); });
    return 0;
}

int SimMidiHost::add_device(const std::string& name, const std::string& manufacturer, const std::string& model,
                            bool offline)
{
    Object o{};
    o.name = name;
    o.manufacturer = manufacturer;
    o.model = model;
    o.offline = offline;
    return add(Kind::device, std::move(o));
}

int SimMidiHost::add_source(const std::string& name, bool offline)
{
    Object o{};
    o.name = name;
    o.offline = offline;
    return add(Kind::source, std::move(o));
}

int SimMidiHost::add_destination(const std::string& name, bool offline)
{
    Object o{};
    o.name = name;
    o.offline = offline;
    return add(Kind::destination, std::move(o));
}

void SimMidiHost::set_offline(int id, bool offline)
{
    {
        std::lock_guard lock(mutex_);
        if (auto it = objects_.find(id); it != objects_.end())
            it->second.offline = offline;
    }
    notify_changed();
}

void SimMidiHost::remove(int id)
{
    {
        std::lock_guard lock(mutex_);
        erase(id);
        for (auto& [_, o] : objects_)
            o.connections.erase(id);
    }
    notify_changed();
}

void SimMidiHost::erase(int id)
{
    auto it = objects_.find(id);
    if (it == objects_.end())
        return;
    std::vector<int>& ids = list(it->second.kind);
    ids.erase(std::remove(ids.begin(), ids.end(), id), ids.end());
    objects_.erase(it);
}

void SimMidiHost::set_name_absent(int id, bool absent)
{
    {
        std::lock_guard lock(mutex_);
        if (auto it = objects_.find(id); it != objects_.end())
            it->second.name_absent = absent;
    }
    notify_changed();
}

void SimMidiHost::rename(int id, const std::string& name)
{
    {
        std::lock_guard lock(mutex_);
        if (auto it = objects_.find(id); it != objects_.end())
            it->second.name = name;
    }
    notify_changed();
}

void SimMidiHost::set_send_status(int destination_id, int status)
{
    std::lock_guard lock(mutex_);
    if (auto it = objects_.find(destination_id); it != objects_.end()) {
        it->second.send_status = status;
        it->second.sends_before_status = 0;
    }
}

void SimMidiHost::set_send_status_after(int destination_id, int accepted, int status)
{
    std::lock_guard lock(mutex_);
    if (auto it = objects_.find(destination_id); it != objects_.end()) {
        it->second.send_status = status;
        it->second.sends_before_status = accepted;
    }
}

void SimMidiHost::set_available(bool available)
{
    std::lock_guard lock(mutex_);
    available_ = available;
}

std::vector<SimMidiHost::Packet> SimMidiHost::sent() const
{
    std::lock_guard lock(mutex_);
    return sent_;
}

void SimMidiHost::clear_sent()
{
    std::lock_guard lock(mutex_);
    sent_.clear();
}

bool SimMidiHost::connected(int source_id) const
{
    std::lock_guard lock(mutex_);
    return std::any_of(objects_.begin(), objects_.end(), [&](const auto& entry) {
        return entry.second.kind == Kind::input_port && entry.second.connections.count(source_id) > 0;
    });
}

void SimMidiHost::inject(int source_id, std::vector<uint8_t> bytes)
{
    struct Receiver {
        MidiReadProc proc;
        void* proc_ref;
        void* conn_ref;
    };
    std::vector<Receiver> receivers;
    std::string source_name;
    bool is_source = false;
    {
        std::lock_guard lock(mutex_);
        for (const auto& [_, o] : objects_)
            if (auto connection = o.connections.find(source_id);
                o.kind == Kind::input_port && o.proc && connection != o.connections.end())
                receivers.push_back(Receiver{o.proc, o.proc_ref, connection->second});
        if (const Object* source = find(static_cast<MidiObjectRef>(source_id), Kind::source)) {
            is_source = true;
            source_name = source->name;
        }
    }
    if (bytes.size() > sizeof(MidiPacket::data))
        return;
    alignas(8) uint8_t buffer[sizeof(MidiPacketList) + 16];
    auto* list = reinterpret_cast<MidiPacketList*>(buffer);
    midi_packet_list_add(list, sizeof buffer, midi_packet_list_init(list), 0, bytes.size(), bytes.data());
    // The real service calls back on its own thread.
    std::thread delivery([&] {
        for (const Receiver& r : receivers)
            r.proc(list, r.proc_ref, r.conn_ref);
        if (!is_source)
            return;
        std::lock_guard lock(listen_mutex_);
        for (Listening& l : listenings_) {
            if (!l.listener->wants(source_name.c_str()))
                continue;
            l.decoders[source_id].push_all(std::span<const uint8_t>(bytes), [&](const MidiMessage& message) {
                l.listener->heard(source_name.c_str(), message);
            });
        }
    });
    delivery.join();
}

size_t SimMidiHost::listener_count() const
{
    std::lock_guard lock(listen_mutex_);
    return listenings_.size();
}

MidiStatus SimMidiHost::listen(MidiListener* listener, MidiChangeWatch* listening)
{
    if (!listener || !listening)
        return not_found;
    {
        std::lock_guard lock(mutex_);
        if (!available_)
            return not_permitted;
    }
    uint64_t id = 0;
    {
        std::lock_guard lock(listen_mutex_);
        id = ++last_listen_id_;
        listenings_.push_back(Listening{id, listener, {}});
    }
    *listening = MidiChangeWatch([this, id] {
        std::lock_guard lock(listen_mutex_);
        std::erase_if(listenings_, [id](const Listening& l) { return l.id == id; });
    });
    return 0;
}

const SimMidiHost::Object* SimMidiHost::find(MidiObjectRef ref, Kind kind) const
{
    auto it = objects_.find(static_cast<int>(ref));
    return it != objects_.end() && it->second.kind == kind ? &it->second : nullptr;
}

SimMidiHost::Object* SimMidiHost::find(MidiObjectRef ref, Kind kind)
{
    return const_cast<Object*>(static_cast<const SimMidiHost*>(this)->find(ref, kind));
}

const SimMidiHost::Object* SimMidiHost::find_with_properties(MidiObjectRef ref) const
{
    for (Kind kind : {Kind::device, Kind::source, Kind::destination})
        if (const Object* o = find(ref, kind))
            return o;
    return nullptr;
}

bool SimMidiHost::client_open() const
{
    return !list(Kind::client).empty();
}

size_t SimMidiHost::count(Kind kind) const
{
    return client_open() ? list(kind).size() : 0;
}

MidiObjectRef SimMidiHost::at(Kind kind, size_t index) const
{
    if (!client_open() || index >= list(kind).size())
        return 0;
    return static_cast<MidiObjectRef>(list(kind)[index]);
}

MidiStatus SimMidiHost::client_create(const char* name, MidiObjectRef* out_client)
{
    {
        std::lock_guard lock(mutex_);
        if (!available_)
            return not_permitted;
    }
    Object o{};
    o.name = name;
    *out_client = static_cast<MidiObjectRef>(add(Kind::client, std::move(o)));
    return 0;
}

MidiStatus SimMidiHost::output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port)
{
    {
        std::lock_guard lock(mutex_);
        if (!find(client, Kind::client))
            return not_found;
    }
    Object o{};
    o.name = name;
    o.owner = static_cast<int>(client);
    *out_port = static_cast<MidiObjectRef>(add(Kind::output_port, std::move(o)));
    return 0;
}

MidiStatus SimMidiHost::input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc, void* proc_ref,
                                          MidiObjectRef* out_port)
{
    {
        std::lock_guard lock(mutex_);
        if (!find(client, Kind::client))
            return not_found;
    }
    Object o{};
    o.name = name;
    o.owner = static_cast<int>(client);
    o.proc = proc;
    o.proc_ref = proc_ref;
    *out_port = static_cast<MidiObjectRef>(add(Kind::input_port, std::move(o)));
    return 0;
}

MidiStatus SimMidiHost::client_dispose(MidiObjectRef client)
{
    std::lock_guard lock(mutex_);
    if (!find(client, Kind::client))
        return not_found;
    // Disposing a client disposes its ports too.
    std::vector<int> gone{static_cast<int>(client)};
    for (const auto& [id, o] : objects_)
        if (o.owner == static_cast<int>(client))
            gone.push_back(id);
    for (int id : gone)
        erase(id);
    return 0;
}

MidiStatus SimMidiHost::port_dispose(MidiObjectRef port)
{
    std::lock_guard lock(mutex_);
    if (!find(port, Kind::output_port) && !find(port, Kind::input_port))
        return not_found;
    erase(static_cast<int>(port));
    return 0;
}

size_t SimMidiHost::number_of_sources()
{
    std::lock_guard lock(mutex_);
    return count(Kind::source);
}

MidiObjectRef SimMidiHost::get_source(size_t index)
{
    std::lock_guard lock(mutex_);
    return at(Kind::source, index);
}

size_t SimMidiHost::number_of_destinations()
{
    std::lock_guard lock(mutex_);
    return count(Kind::destination);
}

MidiObjectRef SimMidiHost::get_destination(size_t index)
{
    std::lock_guard lock(mutex_);
    return at(Kind::destination, index);
}

size_t SimMidiHost::number_of_devices()
{
    std::lock_guard lock(mutex_);
    return count(Kind::device);
}

MidiObjectRef SimMidiHost::get_device(size_t index)
{
    std::lock_guard lock(mutex_);
    return at(Kind::device, index);
}

MidiStatus SimMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size)
{
    std::lock_guard lock(mutex_);
    const Object* o = find_with_properties(obj);
    if (!o || size == 0)
        return not_found;
    const std::string* text = nullptr;
    std::string address;
    switch (prop) {
    case MidiStringProperty::address:
        // The simulated service's own notation: "sim:" and the object's handle.
        address = "sim:" + std::to_string(obj);
        text = &address;
        break;
    case MidiStringProperty::name: text = o->name_absent ? nullptr : &o->name; break;
    case MidiStringProperty::manufacturer: text = o->kind == Kind::device ? &o->manufacturer : nullptr; break;
    case MidiStringProperty::model: text = o->kind == Kind::device ? &o->model : nullptr; break;
    }
    if (!text)
        return not_found;
    const size_t n = std::min(text->size(), size - 1);
    std::memcpy(buffer, text->data(), n);
    buffer[n] = 0;
    return 0;
}

MidiStatus SimMidiHost::get_integer_property(MidiObjectRef obj, MidiIntegerProperty, int32_t* value)
{
    std::lock_guard lock(mutex_);
    const Object* o = find_with_properties(obj);
    if (!o)
        return not_found;
    *value = o->offline ? 1 : 0;
    return 0;
}

MidiStatus SimMidiHost::port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref)
{
    std::lock_guard lock(mutex_);
    Object* p = find(port, Kind::input_port);
    if (!p || !find(source, Kind::source))
        return not_found;
    p->connections[static_cast<int>(source)] = conn_ref;
    return 0;
}

MidiStatus SimMidiHost::port_disconnect_source(MidiObjectRef port, MidiObjectRef source)
{
    std::lock_guard lock(mutex_);
    Object* p = find(port, Kind::input_port);
    if (!p || !find(source, Kind::source))
        return not_found;
    return p->connections.erase(static_cast<int>(source)) > 0 ? 0 : no_connection;
}

MidiStatus SimMidiHost::send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    std::lock_guard lock(mutex_);
    Object* d = find(destination, Kind::destination);
    if (!find(port, Kind::output_port) || !d)
        return not_found;
    if (d->sends_before_status > 0)
        --d->sends_before_status;
    else if (d->send_status != 0)
        return d->send_status;
    sent_.push_back(Packet{d->name, std::vector<uint8_t>(bytes, bytes + length), std::chrono::steady_clock::now()});
    return 0;
}

}  // namespace dialcraft
