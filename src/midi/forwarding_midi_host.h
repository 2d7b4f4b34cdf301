#pragma once
// A host that passes every call on to another one: the base of decorators
// (a host that times or records the calls of the one it wraps), which
// override only the calls they look at. Watches are the inner host's own,
// so their tokens end there.
#include "midi/midi_host.h"

namespace dialcraft {

class ForwardingMidiHost : public MidiHost {
public:
    explicit ForwardingMidiHost(MidiHost& inner) : inner_(inner) {}

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
    MidiStatus watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch) override;
    MidiStatus listen(MidiListener* listener, MidiChangeWatch* listening) override;

protected:
    MidiHost& inner() const { return inner_; }

private:
    MidiHost& inner_;
};

}  // namespace dialcraft
