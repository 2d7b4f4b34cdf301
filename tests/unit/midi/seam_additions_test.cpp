// The console sink, change watching on the simulated service, the reader of
// the family controllers present and the tally of accepted sends.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "base/console.h"
#include "console_capture.h"
#include "midi/family_presence.h"
#include "midi/send_tally.h"
#include "sim_link_fixture.h"

using namespace dialcraft;

namespace {

class RecordingSink final : public ConsoleSink {
public:
    void write(std::string_view text) override { writes.emplace_back(text); }
    std::vector<std::string> writes;
};

void count_change(void* context)
{
    ++*static_cast<int*>(context);
}

}  // namespace

TEST(ConsoleSink, EveryLineIsOneWriteToTheSinkInPlace)
{
    RecordingSink sink;
    ConsoleSink* before = set_console_sink(&sink);
    console_printf("MSG: %x %x %x \r\n", 0xB1, 0x4A, 5);
    console_line("参数正确");
    EXPECT_EQ(set_console_sink(before), &sink);
    EXPECT_EQ(sink.writes, (std::vector<std::string>{"MSG: b1 4a 5 \r\n", "参数正确\n"}));
}

TEST(ConsoleSink, CapturesNestAndGiveTheirLinesBack)
{
    ConsoleCapture outer;
    console_line("outer 1");
    {
        ConsoleCapture inner;
        console_line("inner");
        EXPECT_EQ(inner.finish(), "inner\n");
    }
    console_line("outer 2");
    EXPECT_EQ(outer.finish(), "outer 1\nouter 2\n");
}

TEST(SimChanges, EveryChangeIsReportedUntilWatchingStops)
{
    SimMidiHost sim;
    int changes = 0;
    MidiChangeWatch watch;
    ASSERT_EQ(sim.watch_changes(count_change, &changes, &watch), 0);
    const int device = sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    const int destination = sim.add_destination("4AC1CC27 MIDI 1");
    sim.set_offline(destination, true);
    sim.rename(destination, "4AC2CC27 MIDI 1");
    sim.set_name_absent(destination, true);
    sim.remove(device);
    EXPECT_EQ(changes, 6);
    watch.reset();
    sim.remove(destination);
    EXPECT_EQ(changes, 6);
}

class FamilyPresenceTest : public SimLinkTest {};

TEST_F(FamilyPresenceTest, ListsFamilyDestinationsInServiceOrderAndLeavesTheLinkAlone)
{
    sim.add_destination("Midi Through Port-0");
    plug("4AC3CC27");
    sim.add_destination("16C3C008 MIDI 1");
    sim.add_destination("4AC1CC2");  // seven characters: no serial
    sim.add_destination("4ACgCC27 MIDI 1");
    plug("4AC1CC27");
    std::memcpy(device_name, "4ACBCC27", 8);
    realtime_connect_state_flag = 1;

    ConsoleCapture capture;
    const std::vector<PresentController> found = present_family_controllers(sim);
    EXPECT_EQ(capture.finish(), "");
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0].serial, "4AC3CC27");
    EXPECT_EQ(found[0].port_name, "4AC3CC27 MIDI 1");
    EXPECT_EQ(found[0].address.rfind("sim:", 0), 0u);
    EXPECT_EQ(found[1].serial, "4AC1CC27");
    EXPECT_NE(found[0].address, found[1].address);
    EXPECT_STREQ(device_name, "4ACBCC27");
    EXPECT_EQ(realtime_connect_state_flag, 1);
    EXPECT_TRUE(sim.sent().empty());
}

TEST(FamilySerial, OnlyUpperCaseMiddleDigitsOfTheFamily)
{
    EXPECT_TRUE(is_family_serial("4AC0CC27"));
    EXPECT_TRUE(is_family_serial("4ACFCC27 MIDI 1"));
    EXPECT_FALSE(is_family_serial("4ACfCC27"));
    EXPECT_FALSE(is_family_serial("4AC1CC2"));
    EXPECT_FALSE(is_family_serial("4AC1CC04"));
    EXPECT_FALSE(is_family_serial("16C3C008"));
}

class SendTallyTest : public SimLinkTest {};

TEST_F(SendTallyTest, CountsTheFiveMessagesTheControllerAccepted)
{
    plug("4AC1CC27");
    quietly([] { set_device_name(0x4AC1CC27); });
    SendTally tally;
    quietly([] { usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(tally.accepted(), 5);
    EXPECT_EQ(tally.refused(), 0);
    EXPECT_EQ(tally.destinations(), std::vector<std::string>{"4AC1CC27 MIDI 1"});
    EXPECT_EQ(sim.sent().size(), 5u);
}

TEST_F(SendTallyTest, NothingSentWithNoDevicesAlthoughTheLinkReportsSuccess)
{
    SendTally tally;
    uint8_t result = 1;
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(tally.accepted(), 0);
    EXPECT_TRUE(tally.destinations().empty());
}

TEST_F(SendTallyTest, RefusedSendsAreCountedApartAndTheObserverIsRestored)
{
    plug("4AC1CC27");
    const int destination = sim.add_destination("4AC1CC27 MIDI 2");
    sim.set_send_status(destination, 7);
    quietly([] { set_device_name(0x4AC1CC27); });
    {
        SendTally outer;
        {
            SendTally inner;
            quietly([] { usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
            EXPECT_EQ(inner.accepted(), 0);
            EXPECT_EQ(inner.refused(), 5);
        }
        quietly([] { usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
        EXPECT_EQ(outer.refused(), 5);
    }
    EXPECT_EQ(set_midi_send_observer(nullptr), nullptr);
}
