// The pause before every message goes through the replaceable sleep: always
// the full 8 ms, once per send attempt, and usleep again once restored.
#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "midi/pace_sleep.h"
#include "sim_link_fixture.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {

std::vector<unsigned> requested;

void record_pause(unsigned microseconds)
{
    requested.push_back(microseconds);
}

class PaceSleepTest : public SimLinkTest {
protected:
    void SetUp() override
    {
        SimLinkTest::SetUp();
        requested.clear();
        plug("4AC1CC27");
        quietly([] { set_device_name(0x4AC1CC27); });
    }
    void TearDown() override
    {
        set_pace_sleep(nullptr);
        SimLinkTest::TearDown();
    }
};

TEST_F(PaceSleepTest, EverySendAsksForTheFullPause)
{
    set_pace_sleep(record_pause);
    uint8_t result = 99;
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 0);
    // Two scans, then the five messages of the sequence.
    EXPECT_EQ(requested, std::vector<unsigned>(7, 8000));
    EXPECT_EQ(sim.sent().size(), 5u);
}

TEST_F(PaceSleepTest, ReplacingReturnsThePreviousAndNullRestoresUsleep)
{
    const PaceSleep original = set_pace_sleep(record_pause);
    EXPECT_NE(original, nullptr);
    EXPECT_EQ(set_pace_sleep(nullptr), &record_pause);
    EXPECT_EQ(set_pace_sleep(nullptr), original);

    const auto start = std::chrono::steady_clock::now();
    quietly([] { send_midi_out_data(0x90, 1, 60, 0); });
    EXPECT_GE(std::chrono::steady_clock::now() - start, 8ms);
    EXPECT_TRUE(requested.empty());
}

}  // namespace
