// The monitor's inbox on the simulated service: only the family's sources
// are heard, decoded across packets, every message counted, a full inbox
// gives way oldest first, and ending the listening stops it.
#include <gtest/gtest.h>

#include <atomic>

#include "actions/monitor_inbox.h"
#include "midi/sim/sim_midi_host.h"

using namespace dialcraft;

TEST(MonitorInboxTest, HearsFamilySourcesDecodedAcrossPackets)
{
    SimMidiHost sim;
    const int family = sim.add_source("4AC1CC27 MIDI 1");
    const int other = sim.add_source("Keyboard MIDI 1");
    std::atomic<int> wakes{0};
    MonitorInbox inbox([&] { ++wakes; });
    ASSERT_EQ(inbox.start(sim), 0);
    EXPECT_EQ(sim.listener_count(), 1u);
    sim.inject(family, {0xB1, 0x4A});
    // The rest, then the first data byte of the next message under running status.
    sim.inject(family, {0x40, 0x41});
    sim.inject(other, {0x90, 0x3C, 0x40});
    sim.inject(family, {0x42});
    std::vector<HeardMessage> taken;
    inbox.take(taken);
    ASSERT_EQ(taken.size(), 2u);
    EXPECT_STREQ(taken[0].serial, "4AC1CC27");
    EXPECT_EQ(taken[0].message, (MidiMessage{MidiKind::control_change, 2, 74, 64}));
    EXPECT_EQ(taken[1].message, (MidiMessage{MidiKind::control_change, 2, 65, 66}));
    EXPECT_EQ(inbox.received(), 2u);
    EXPECT_EQ(wakes, 1);
    inbox.stop();
    EXPECT_EQ(sim.listener_count(), 0u);
    sim.inject(family, {0xB1, 0x4A, 0x01});
    inbox.take(taken);
    EXPECT_TRUE(taken.empty());
}

TEST(MonitorInboxTest, AFullInboxGivesWayOldestFirstAndCountsAll)
{
    SimMidiHost sim;
    const int family = sim.add_source("4AC2CC27 MIDI 1");
    MonitorInbox inbox;
    ASSERT_EQ(inbox.start(sim), 0);
    const size_t total = MonitorInbox::capacity + 10;
    for (size_t i = 0; i < total; ++i)
        sim.inject(family, {0xB0, 0x01, static_cast<uint8_t>(i & 0x7F)});
    EXPECT_EQ(inbox.received(), total);
    EXPECT_EQ(inbox.overflowed(), 10u);
    std::vector<HeardMessage> taken;
    inbox.take(taken);
    ASSERT_EQ(taken.size(), MonitorInbox::capacity);
    EXPECT_EQ(taken.front().message.value, 10);
}

TEST(MonitorInboxTest, AServiceThatCannotBeOpenedIsNotListenedTo)
{
    SimMidiHost sim;
    sim.set_available(false);
    MonitorInbox inbox;
    EXPECT_NE(inbox.start(sim), 0);
    EXPECT_FALSE(inbox.listening());
}
