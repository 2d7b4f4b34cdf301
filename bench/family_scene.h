#pragma once
// A busy MIDI service: the sixteen serials of the family as devices with a
// source and a destination each (only `online` of them online), plus 64
// unrelated endpoints.
#include <cstdio>
#include <string>

#include "midi/sim/sim_midi_host.h"

using namespace dialcraft;

inline void populate_family_scene(SimMidiHost& sim, int online)
{
    for (int i = 0; i < 16; ++i) {
        char serial[9];
        std::snprintf(serial, sizeof serial, "4AC%XCC27", i);
        const bool offline = i != online;
        sim.add_device(serial, "Maker", serial, offline);
        sim.add_source(std::string(serial) + " MIDI 1", offline);
        sim.add_destination(std::string(serial) + " MIDI 1", offline);
    }
    for (int i = 0; i < 32; ++i) {
        sim.add_source("Synth " + std::to_string(i) + " Out");
        sim.add_destination("Synth " + std::to_string(i) + " In");
    }
}
