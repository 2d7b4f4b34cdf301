#include "midi/forwarding_midi_host.h"

namespace dialcraft {

MidiStatus ForwardingMidiHost::client_create(const char* name, MidiObjectRef* out_client)
{
    return inner_.client_create(name, out_client);
}

MidiStatus ForwardingMidiHost::output_port_create(MidiObjectRef client, const char* name, MidiObjectRef* out_port)
{
    return inner_.output_port_create(client, name, out_port);
}

MidiStatus ForwardingMidiHost::input_port_create(MidiObjectRef client, const char* name, MidiReadProc proc,
                                                 void* proc_ref, MidiObjectRef* out_port)
{
    return inner_.input_port_create(client, name, proc, proc_ref, out_port);
}

MidiStatus ForwardingMidiHost::client_dispose(MidiObjectRef client)
{
    return inner_.client_dispose(client);
}

MidiStatus ForwardingMidiHost::port_dispose(MidiObjectRef port)
{
    return inner_.port_dispose(port);
}

size_t ForwardingMidiHost::number_of_sources()
{
    return inner_.number_of_sources();
}

MidiObjectRef ForwardingMidiHost::get_source(size_t index)
{
    return inner_.get_source(index);
}

size_t ForwardingMidiHost::number_of_destinations()
{
    return inner_.number_of_destinations();
}

MidiObjectRef ForwardingMidiHost::get_destination(size_t index)
{
    return inner_.get_destination(index);
}

size_t ForwardingMidiHost::number_of_devices()
{
    return inner_.number_of_devices();
}

MidiObjectRef ForwardingMidiHost::get_device(size_t index)
{
    return inner_.get_device(index);
}

MidiStatus ForwardingMidiHost::get_string_property(MidiObjectRef obj, MidiStringProperty prop, char* buffer,
                                                   size_t size)
{
    return inner_.get_string_property(obj, prop, buffer, size);
}

MidiStatus ForwardingMidiHost::get_integer_property(MidiObjectRef obj, MidiIntegerProperty prop, int32_t* value)
{
    return inner_.get_integer_property(obj, prop, value);
}

MidiStatus ForwardingMidiHost::port_connect_source(MidiObjectRef port, MidiObjectRef source, void* conn_ref)
{
    return inner_.port_connect_source(port, source, conn_ref);
}

MidiStatus ForwardingMidiHost::port_disconnect_source(MidiObjectRef port, MidiObjectRef source)
{
    return inner_.port_disconnect_source(port, source);
}

MidiStatus ForwardingMidiHost::send(MidiObjectRef port, MidiObjectRef destination, const uint8_t* bytes, size_t length)
{
    return inner_.send(port, destination, bytes, length);
}

MidiStatus ForwardingMidiHost::watch_changes(MidiChangeProc proc, void* context, MidiChangeWatch* watch)
{
    return inner_.watch_changes(proc, context, watch);
}

MidiStatus ForwardingMidiHost::listen(MidiListener* listener, MidiChangeWatch* listening)
{
    return inner_.listen(listener, listening);
}

}  // namespace dialcraft
