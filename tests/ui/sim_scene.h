#pragma once
// Controllers plugged into the simulated MIDI service, and a copy of the MIDI
// link's module-level state, for tests that must leave that state alone.
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "midi/midi_link.h"
#include "midi/sim/sim_midi_host.h"
#include "model/handover.h"

using namespace dialcraft;

// The ids of one plugged controller's device, source and destination.
struct PluggedController {
    int device;
    int source;
    int destination;
};

// A controller as the service shows it: device "<serial>", source and
// destination "<serial> MIDI 1".
inline PluggedController plug_controller(SimMidiHost& sim, const std::string& serial)
{
    const int device = sim.add_device(serial, "Maker", serial);
    const int source = sim.add_source(serial + " MIDI 1");
    const int destination = sim.add_destination(serial + " MIDI 1");
    return {device, source, destination};
}

inline void unplug_controller(SimMidiHost& sim, const PluggedController& controller)
{
    sim.remove(controller.destination);
    sim.remove(controller.source);
    sim.remove(controller.device);
}

// Everything the link keeps between calls, and the set action's hand-over values.
struct LinkSnapshot {
    std::array<char, 24> target{};
    uint8_t realtime = 0;
    uint16_t vid = 0, pid = 0;
    uint32_t vid_pid = 0;
    MidiObjectRef client_ref = 0, out_port = 0, in_port = 0, dest = 0;
    std::array<char, 64> jname_buffer{}, name_buffer{}, manuf_buffer{}, model_buffer{}, offline_buffer{};
    std::array<uint8_t, 64> out_buffer{};
    std::vector<uint8_t> probes;

    static LinkSnapshot take()
    {
        LinkSnapshot s;
        std::memcpy(s.target.data(), device_name, sizeof device_name);
        s.realtime = realtime_connect_state_flag;
        s.vid = VID_val;
        s.pid = PID_val;
        s.vid_pid = VID_PID_val;
        s.client_ref = client;
        s.out_port = gOutPort;
        s.in_port = inPort;
        s.dest = gDest;
        std::memcpy(s.jname_buffer.data(), jname, sizeof jname);
        std::memcpy(s.name_buffer.data(), name, sizeof name);
        std::memcpy(s.manuf_buffer.data(), manuf, sizeof manuf);
        std::memcpy(s.model_buffer.data(), model, sizeof model);
        std::memcpy(s.offline_buffer.data(), offline_flag, sizeof offline_flag);
        std::memcpy(s.out_buffer.data(), midiout_databuffer, sizeof midiout_databuffer);
        s.probes = device_connect_state_retval;
        return s;
    }
    bool operator==(const LinkSnapshot&) const = default;
};
