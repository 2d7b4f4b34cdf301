#pragma once
// The Linux MIDI service: the ALSA sequencer. The link's client is a
// sequencer client holding the output port; the input port lives on a second
// client of the same name, read by its own thread. Devices are the other
// sequencer clients, sources and destinations the other clients' readable and
// writable ports. Handles name sequencer addresses.
//
// A third client, "MIDI Client changes", listens on the System Announce port
// with a thread of its own while a client is open or a change watch runs. As long as it has seen no client or port
// come, go or change, the host keeps the addresses of every device, source and destination from one walk of the
// sequencer, and each device's sound card names; a scan then costs one walk after a change instead of one per index.
// Names of clients and ports are always read live (a client may rename itself unannounced), so a vanished object's name
// read fails. The same listener tells every watch_changes watch. All calls come from one thread; the watches are told
// on the listener's.
#include <memory>

#include "midi/midi_host.h"

namespace dialcraft {

class AlsaMidiHost final : public MidiHost {
public:
    AlsaMidiHost();
    ~AlsaMidiHost() override;
    AlsaMidiHost(const AlsaMidiHost&) = delete;
    AlsaMidiHost& operator=(const AlsaMidiHost&) = delete;

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
    // Each listening is a client of its own, "MIDI Client monitor", read by
    // a thread of its own (source_listener.h).
    MidiStatus listen(MidiListener* listener, MidiChangeWatch* listening) override;

    struct State;

private:
    std::unique_ptr<State> state_;
};

// The platform's own host: the ALSA sequencer.
std::unique_ptr<MidiHost> make_alsa_midi_host();

}  // namespace dialcraft
