// The cases every MidiHost must pass (tests/contract), run against the ALSA
// host with an emulated controller plugged in, inside the test VM:
//   usb_host_contract 26 <controller_emulator path> <work directory>
// Each case gets a fresh host; the controller stays plugged for all of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include "midi/alsa/alsa_midi_host.h"
#include "midi_host_contract.h"
#include "scenario_report.h"
#include "scenario_steps.h"
#include "watchdog.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {

EmulatedController* plugged_controller = nullptr;

class AlsaBed final : public MidiHostBed {
public:
    AlsaBed() : host_(make_alsa_midi_host()), received_before_(plugged_controller->received().size()) {}

    MidiHost& host() override { return *host_; }
    std::string serial() const override { return "4AC1CC27"; }
    void make_change() override
    {
        // Another program's client that comes and goes: a second host's.
        const std::unique_ptr<MidiHost> other = make_alsa_midi_host();
        MidiObjectRef client = 0;
        if (other->client_create("Contract change", &client) == 0)
            EXPECT_EQ(other->client_dispose(client), 0);
        else
            ADD_FAILURE() << "a second sequencer client cannot be opened";
    }
    bool controller_received(const std::vector<uint8_t>& message, std::chrono::milliseconds within) override
    {
        const auto deadline = std::chrono::steady_clock::now() + within;
        for (;;) {
            const std::vector<ReceivedMessage> received = plugged_controller->received();
            if (std::any_of(received.begin() + static_cast<std::ptrdiff_t>(std::min(received_before_, received.size())),
                            received.end(), [&](const ReceivedMessage& m) { return m.bytes == message; }))
                return true;
            if (std::chrono::steady_clock::now() >= deadline)
                return false;
            std::this_thread::sleep_for(10ms);
        }
    }
    void controller_sends(const std::vector<uint8_t>& message) override
    {
        EXPECT_TRUE(plugged_controller->send(hex_messages({message})) &&
                    plugged_controller->wait_for_line("sent ", std::chrono::milliseconds(3000)))
            << "the controller does not send" << hex_messages({message});
    }

private:
    std::unique_ptr<MidiHost> host_;
    size_t received_before_;
};

std::unique_ptr<MidiHostBed> make_alsa_bed()
{
    return std::make_unique<AlsaBed>();
}

// Every failed assertion of a case becomes a check marker of the scenario.
class FailuresToReport final : public testing::EmptyTestEventListener {
public:
    explicit FailuresToReport(ScenarioReport& report) : report_(report) {}
    void OnTestPartResult(const testing::TestPartResult& result) override
    {
        if (!result.failed())
            return;
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        std::string what = std::string(test ? test->name() : "set-up") + ": " + result.summary();
        std::replace(what.begin(), what.end(), '\n', ' ');
        report_.check(false, what);
    }

private:
    ScenarioReport& report_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Alsa, MidiHostContract, testing::Values(MidiHostBedMaker{"Alsa", &make_alsa_bed}),
                         midi_host_bed_name);

int main(int argc, char** argv)
{
    if (argc != 4 || std::string(argv[1]) != "26") {
        std::fprintf(stderr, "usage: %s 26 <controller_emulator> <work dir>\n", argv[0]);
        return 2;
    }
    arm_watchdog(argv[1], 60);
    const TestBed bed{argv[2], argv[3]};
    ScenarioReport report("26", "the MidiHost contract cases on the ALSA host");
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();
    plugged_controller = &emulator;

    int gtest_argc = 1;
    char* gtest_argv[] = {argv[0], nullptr};
    testing::InitGoogleTest(&gtest_argc, gtest_argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FailuresToReport(report));
    const int status = RUN_ALL_TESTS();
    report.check(status == 0 && testing::UnitTest::GetInstance()->successful_test_count() > 0,
                 "every contract case passes");
    plugged_controller = nullptr;
    emulator.stop();
    return report.finish();
}
