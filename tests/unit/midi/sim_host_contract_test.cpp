// The cases every MidiHost must pass, run against the simulated service.
#include <algorithm>
#include <memory>

#include "midi/sim/sim_midi_host.h"
#include "midi_host_contract.h"

using namespace dialcraft;

namespace {

class SimBed final : public MidiHostBed {
public:
    SimBed()
    {
        sim_.add_device(serial(), "Maker", serial());
        source_ = sim_.add_source(serial() + " MIDI 1");
        sim_.add_destination(serial() + " MIDI 1");
    }

    MidiHost& host() override { return sim_; }
    std::string serial() const override { return "4AC1CC27"; }
    void make_change() override { sim_.remove(sim_.add_destination("Midi Through Port-0")); }
    bool controller_received(const std::vector<uint8_t>& message, std::chrono::milliseconds) override
    {
        const std::vector<SimMidiHost::Packet> sent = sim_.sent();
        return std::any_of(sent.begin(), sent.end(), [&](const SimMidiHost::Packet& p) {
            return p.destination == serial() + " MIDI 1" && p.bytes == message;
        });
    }
    void controller_sends(const std::vector<uint8_t>& message) override { sim_.inject(source_, message); }

private:
    SimMidiHost sim_;
    int source_ = 0;
};

std::unique_ptr<MidiHostBed> make_sim_bed()
{
    return std::make_unique<SimBed>();
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Sim, MidiHostContract, testing::Values(MidiHostBedMaker{"Sim", &make_sim_bed}),
                         midi_host_bed_name);
