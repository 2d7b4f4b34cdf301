#pragma once
// The one seam between the MIDI link and the platform's MIDI service.
// The link reaches the service only through the host the program selects
// (host_selection.h), so the same link code drives the ALSA sequencer and
// the in-process simulation.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "midi/midi_change_watch.h"
#include "midi/midi_listener.h"
#include "midi/midi_packet.h"

namespace dialcraft {

// Opaque handle of a client, port, source, destination or device; 0 is null.
using MidiObjectRef = uint32_t;
// Non-zero statuses are failures.
using MidiStatus = int32_t;

// `address` is where the service puts the object, as its own tools write it
// (on ALSA "client:port" for endpoints, "client" for devices).
enum class MidiStringProperty { name, manufacturer, model, address };
enum class MidiIntegerProperty { offline };

// Called on the service's own thread for every batch of received packets.
using MidiReadProc = void (*)(const MidiPacketList* list, void* read_proc_ref, void* src_conn_ref);

class MidiHost {
public:
    virtual ~MidiHost() = default;

    virtual MidiStatus client_create(const char* name, MidiObjectRef* out_client) = 0;
    virtual MidiStatus output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port) = 0;
    virtual MidiStatus input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc, void* proc_ref,
                                         MidiObjectRef* out_port) = 0;
    virtual MidiStatus client_dispose(MidiObjectRef client) = 0;
    virtual MidiStatus port_dispose(MidiObjectRef port) = 0;

    // Enumeration works only while a client is open; otherwise counts are 0.
    virtual size_t number_of_sources() = 0;
    virtual MidiObjectRef get_source(size_t index) = 0;  // 0 when out of range
    virtual size_t number_of_destinations() = 0;
    virtual MidiObjectRef get_destination(size_t index) = 0;  // 0 when out of range
    virtual size_t number_of_devices() = 0;
    virtual MidiObjectRef get_device(size_t index) = 0;  // 0 when out of range

    // Copies the property as 8-bit text, cut to `size` - 1 bytes and terminated.
    // A non-zero status means the property is absent and `buffer` is untouched.
    virtual MidiStatus get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer, size_t size) = 0;
    // A non-zero status leaves `*value` untouched.
    virtual MidiStatus get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value) = 0;

    virtual MidiStatus port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref) = 0;
    virtual MidiStatus port_disconnect_source(MidiObjectRef port, MidiObjectRef source) = 0;

    // Sends one packet of raw MIDI bytes through `port` to `destination` at once.
    virtual MidiStatus send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length) = 0;

    // Starts watching the service for changes: `proc` is told after each
    // one until the watch held in `*watch` ends; a watch the token held
    // before ends once the new one runs. Any number of watches may run at once; each is
    // told of every change. Works whether or not a client is open. Returns a
    // non-zero status when the service cannot be watched; `*watch` is left
    // as it was and nothing is called then.
    virtual MidiStatus watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch) = 0;

    // Starts listening to every source `listener` wants, through a port of
    // the host's own, until the token held in `*listening` ends (the same
    // kind of token as a change watch: ending it returns once `listener` is
    // no longer being told). Works whether or not a client is open; sources
    // that come later are listened to as they come. Returns a non-zero
    // status when the service cannot be listened to; `*listening` is left as
    // it was and nothing is told then.
    virtual MidiStatus listen(MidiListener* listener, MidiChangeWatch* listening) = 0;
};

}  // namespace dialcraft
