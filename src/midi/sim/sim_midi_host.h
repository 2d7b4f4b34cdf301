#pragma once
// An in-process MIDI service for tests: devices, sources and destinations are
// added by the test, sends are recorded with their time, and bytes can be
// injected as if a device had sent them.
#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "midi/decode/midi_byte_decoder.h"
#include "midi/midi_host.h"

namespace dialcraft {

class SimMidiHost : public MidiHost {
public:
    struct Packet {
        std::string destination;
        std::vector<uint8_t> bytes;
        std::chrono::steady_clock::time_point at;
    };

    // Ids are unique positive integers; each list keeps insertion order.
    int add_device(const std::string& name, const std::string& manufacturer, const std::string& model,
                   bool offline = false);
    int add_source(const std::string& name, bool offline = false);
    int add_destination(const std::string& name, bool offline = false);

    void set_offline(int id, bool offline);
    // An unplug: the object leaves its list and its handle stops working.
    void remove(int id);
    void set_name_absent(int id, bool absent);
    // A client or port that renames itself.
    void rename(int id, const std::string& name);
    // What sending to the destination returns (0 = delivered).
    void set_send_status(int destination_id, int status);
    // The next `accepted` sends to the destination are delivered, every later
    // one returns `status`: a port that gives out halfway through a press.
    void set_send_status_after(int destination_id, int accepted, int status);
    // false: the service cannot be opened.
    void set_available(bool available);

    std::vector<Packet> sent() const;
    void clear_sent();

    // Whether the source is connected to the program's input port.
    bool connected(int source_id) const;
    // Delivers `bytes` to the read callback on another thread, as if the
    // source had sent them, and to every listener that wants the source,
    // decoded (one byte decoder per listener and source, so a message may
    // span injections); returns once delivered.
    void inject(int source_id, std::vector<uint8_t> bytes);
    // How many listeners are listening now.
    size_t listener_count() const;

    MidiStatus client_create(const char* name, MidiObjectRef* out_client) override;
    MidiStatus output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port) override;
    MidiStatus input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc, void* proc_ref,
                                 MidiObjectRef* out_port) override;
    MidiStatus client_dispose(MidiObjectRef client) override;
    MidiStatus port_dispose(MidiObjectRef port) override;
    size_t number_of_sources() override;
    MidiObjectRef get_source(size_t index) override;
    size_t number_of_destinations() override;
    MidiObjectRef get_destination(size_t index) override;
    size_t number_of_devices() override;
    MidiObjectRef get_device(size_t index) override;
    MidiStatus get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size) override;
    MidiStatus get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value) override;
    MidiStatus port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref) override;
    MidiStatus port_disconnect_source(MidiObjectRef port, MidiObjectRef source) override;
    MidiStatus send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length) override;
    // Every add, remove, rename, offline or name change is reported, on the
    // thread that made it, after the change.
    MidiStatus watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch) override;
    // A listener is asked whether it wants a source at each injection, with
    // the source's name as it is then.
    MidiStatus listen(MidiListener* listener, MidiChangeWatch* listening) override;

private:
    enum class Kind { device, source, destination, client, output_port, input_port };
    struct Object {
        Kind kind;
        std::string name;
        std::string manufacturer;
        std::string model;
        bool offline = false;
        bool name_absent = false;
        int send_status = 0;
        int sends_before_status = 0;  // delivered before send_status applies
        int owner = 0;                // a port's client
        MidiReadProc proc = nullptr;
        void* proc_ref = nullptr;
        std::map<int, void*> connections;  // sources connected to an input port, with their references
    };

    int add(Kind kind, Object object);
    const Object* find(MidiObjectRef ref, Kind kind) const;
    Object* find(MidiObjectRef ref, Kind kind);
    // A device, source or destination: the objects that carry properties.
    const Object* find_with_properties(MidiObjectRef ref) const;
    bool client_open() const;
    size_t count(Kind kind) const;
    MidiObjectRef at(Kind kind, size_t index) const;
    std::vector<int>& list(Kind kind) { return lists_[static_cast<size_t>(kind)]; }
    const std::vector<int>& list(Kind kind) const { return lists_[static_cast<size_t>(kind)]; }
    void erase(int id);
    void notify_changed();

    mutable std::mutex mutex_;
    std::map<int, Object> objects_;
    static constexpr size_t kind_count = 6;
    std::vector<int> lists_[kind_count];  // live objects of each kind, in insertion order
    std::vector<Packet> sent_;
    int next_id_ = 1;
    bool available_ = true;
    MidiChangeSubscribers watchers_;

    struct Listening {
        uint64_t id;
        MidiListener* listener;
        std::map<int, MidiByteDecoder> decoders;  // by source
    };
    // Held while listeners are told, so that ending a listening waits for a
    // call in flight; never taken while mutex_ is held.
    mutable std::mutex listen_mutex_;
    std::vector<Listening> listenings_;
    uint64_t last_listen_id_ = 0;
};

}  // namespace dialcraft
