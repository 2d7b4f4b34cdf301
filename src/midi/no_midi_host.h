#pragma once
// The host the link uses while the program has selected none: no MIDI
// service at all. Every call fails with `no_midi_service` or finds nothing,
// touches no output buffer and prints nothing, so the link behaves as on a
// machine without a MIDI service: it reports that nothing matched and
// sends nothing. It never crashes and never blocks.
#include <cerrno>

#include "midi/midi_host.h"

namespace dialcraft {

// The status of every call that can fail: no such device.
constexpr MidiStatus no_midi_service = -ENODEV;

class NoMidiHost final : public MidiHost {
public:
    MidiStatus client_create(const char*, MidiObjectRef*) override { return no_midi_service; }
    MidiStatus output_port_create(MidiObjectRef, const char*, MidiObjectRef*) override { return no_midi_service; }
    MidiStatus input_port_create(MidiObjectRef, const char*, MidiReadProc, void*, MidiObjectRef*) override
    {
        return no_midi_service;
    }
    MidiStatus client_dispose(MidiObjectRef) override { return no_midi_service; }
    MidiStatus port_dispose(MidiObjectRef) override { return no_midi_service; }

    size_t number_of_sources() override { return 0; }
    MidiObjectRef get_source(size_t) override { return 0; }
    size_t number_of_destinations() override { return 0; }
    MidiObjectRef get_destination(size_t) override { return 0; }
    size_t number_of_devices() override { return 0; }
    MidiObjectRef get_device(size_t) override { return 0; }

    MidiStatus get_string_property(MidiObjectRef, MidiStringProperty, char*, size_t) override
    {
        return no_midi_service;
    }
    MidiStatus get_integer_property(MidiObjectRef, MidiIntegerProperty, int32_t*) override { return no_midi_service; }

    MidiStatus port_connect_source(MidiObjectRef, MidiObjectRef, void*) override { return no_midi_service; }
    MidiStatus port_disconnect_source(MidiObjectRef, MidiObjectRef) override { return no_midi_service; }
    MidiStatus send(MidiObjectRef, MidiObjectRef, const uint8_t*, size_t) override { return no_midi_service; }
    MidiStatus watch_changes(MidiChangeProc, void*, MidiChangeWatch*) override { return no_midi_service; }
    MidiStatus listen(MidiListener*, MidiChangeWatch*) override { return no_midi_service; }
};

}  // namespace dialcraft
