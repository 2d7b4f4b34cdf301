#pragma once
// Runs the MIDI link against a fresh simulated MIDI service with an open client.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>

#include "console_capture.h"
#include "midi/midi_link.h"
#include "midi/sim/sim_midi_host.h"

namespace dialcraft {

class SimLinkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        set_midi_host(&sim);
        std::memset(device_name, 0, sizeof device_name);
        realtime_connect_state_flag = 0;
        midi_init();
    }
    void TearDown() override
    {
        quietly([] { midi_exit(); });
        set_midi_host(nullptr);
    }

    // Standard output printed while `f` runs.
    static std::string output_of(const std::function<void()>& f)
    {
        ConsoleCapture capture;
        f();
        return capture.finish();
    }
    static void quietly(const std::function<void()>& f) { (void)output_of(f); }

    // A controller as the service shows it: device, source and destination.
    // Returns the source's id.
    int plug(const std::string& serial, bool offline = false)
    {
        sim.add_device(serial, "Maker", serial, offline);
        const int source = sim.add_source(serial + " MIDI 1", offline);
        sim.add_destination(serial + " MIDI 1", offline);
        return source;
    }

    SimMidiHost sim;
};

}  // namespace dialcraft
