#pragma once
// What every MidiHost must do, as GoogleTest cases run against each host:
// the simulated one in the unit tests, the ALSA one in the USB test bed with
// an emulated controller on the bus. A host's test program supplies a bed
// (the host with one controller of the family plugged in) and instantiates
// the cases:
//   INSTANTIATE_TEST_SUITE_P(Sim, MidiHostContract, testing::Values(MidiHostBedMaker{"Sim", &make_sim_bed}),
//                            midi_host_bed_name);
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "midi/midi_host.h"

namespace dialcraft {

class MidiHostBed {
public:
    virtual ~MidiHostBed() = default;
    // A fresh host, with nothing of ours open.
    virtual MidiHost& host() = 0;
    // The serial of the controller plugged in: the host shows a device, a
    // source and a destination whose names begin with it, and the device's
    // model too.
    virtual std::string serial() const = 0;
    // Makes something come and go that the host must report to its watches,
    // from outside the host (another client, or an object of the service).
    virtual void make_change() = 0;
    // Whether the controller received `message` since the bed was made,
    // waiting up to `within` for it.
    virtual bool controller_received(const std::vector<uint8_t>& message, std::chrono::milliseconds within) = 0;
    // Has the controller send `message` to the host.
    virtual void controller_sends(const std::vector<uint8_t>& message) = 0;
};

struct MidiHostBedMaker {
    const char* name;
    std::unique_ptr<MidiHostBed> (*make)();
};

// Names the instantiated cases after the bed: "Sim", "Alsa".
std::string midi_host_bed_name(const testing::TestParamInfo<MidiHostBedMaker>& info);

class MidiHostContract : public testing::TestWithParam<MidiHostBedMaker> {
protected:
    void SetUp() override { bed = GetParam().make(); }
    void TearDown() override { bed.reset(); }

    MidiHost& host() { return bed->host(); }

    std::unique_ptr<MidiHostBed> bed;
};

}  // namespace dialcraft
