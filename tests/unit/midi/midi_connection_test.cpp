#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "sim_link_fixture.h"

using namespace dialcraft;

namespace {
void target(const char* serial)
{
    std::memset(device_name, 0, sizeof device_name);
    std::memcpy(device_name, serial, 8);
}
}  // namespace

using MidiConnection = SimLinkTest;

TEST_F(MidiConnection, NoSourcesFails)
{
    target("4AC1CC27");
    realtime_connect_state_flag = 1;
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_source_connect(); });
    EXPECT_EQ(out, "MIDIGetNumberOfSources 0 \r\nmidi init failed \r\n");
    EXPECT_EQ(index, 0xFFFFFFFFu);
    EXPECT_EQ(realtime_connect_state_flag, 0);
}

TEST_F(MidiConnection, LastMatchingSourceIsConnected)
{
    target("4AC1CC27");
    const int a = sim.add_source("4AC1CC27 A");
    const int b = sim.add_source("4AC1CC27 B");
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_source_connect(); });
    EXPECT_EQ(out,
              "MIDIGetNumberOfSources 2 \r\n"
              "midi init success ,number code 1 \r\n"
              "4AC1CC27 B is online\r\n");
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(realtime_connect_state_flag, 1);
    EXPECT_FALSE(sim.connected(a));
    EXPECT_TRUE(sim.connected(b));
}

TEST_F(MidiConnection, SevenCharacterNameDoesNotMatch)
{
    target("4AC1CC27");
    sim.add_source("4AC1CC2");
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_source_connect(); });
    EXPECT_EQ(out, "MIDIGetNumberOfSources 1 \r\nmidi init failed \r\n");
    EXPECT_EQ(index, 0xFFFFFFFFu);
}

TEST_F(MidiConnection, MatchIsCaseSensitive)
{
    target("4ACACC27");
    sim.add_source("4AcaCC27 MIDI 1");
    EXPECT_EQ(output_of([] { midi_source_connect(); }), "MIDIGetNumberOfSources 1 \r\nmidi init failed \r\n");
}

TEST_F(MidiConnection, OfflineSourceKeepsFlagZeroButReturnsItsIndex)
{
    target("4AC1CC27");
    sim.add_source("Other");
    sim.add_source("4AC1CC27 MIDI 1", true);
    realtime_connect_state_flag = 1;
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_source_connect(); });
    EXPECT_EQ(out,
              "MIDIGetNumberOfSources 2 \r\n"
              "midi init success ,number code 1 \r\n"
              "4AC1CC27 MIDI 1 is offline\r\n");
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(realtime_connect_state_flag, 0);
}

TEST_F(MidiConnection, EverySourceIsDetachedBeforeTheMatchIsAttached)
{
    const int one = sim.add_source("4AC1CC27 MIDI 1");
    const int two = sim.add_source("4AC2CC27 MIDI 1");
    target("4AC1CC27");
    quietly([] { midi_source_connect(); });
    EXPECT_TRUE(sim.connected(one));
    target("4AC2CC27");
    quietly([] { midi_source_connect(); });
    EXPECT_FALSE(sim.connected(one));
    EXPECT_TRUE(sim.connected(two));
}

TEST_F(MidiConnection, AbsentNameKeepsThePreviousEndpointsText)
{
    target("4AC1CC27");
    sim.add_source("4AC1CC27 MIDI 1");
    const int nameless = sim.add_source("zzz");
    sim.set_name_absent(nameless, true);
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_source_connect(); });
    // The nameless source is compared with the text left in the buffer, so it
    // matches too and, being later, wins; its status line shows that same text.
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(out,
              "MIDIGetNumberOfSources 2 \r\n"
              "midi init success ,number code 1 \r\n"
              "4AC1CC27 is online\r\n");
}

TEST_F(MidiConnection, DestinationLookupWithNoneReturnsNoMatchWithoutStatusLine)
{
    target("4AC1CC27");
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_get_destination(); });
    EXPECT_EQ(out, "MIDIGetNumberOfDestinations 0 \r\n");
    EXPECT_EQ(index, 0xFFFFFFFFu);
}

TEST_F(MidiConnection, DestinationLookupTakesTheLastMatchAndReportsFromPastTheEnd)
{
    target("4AC1CC27");
    sim.add_destination("4AC1CC27 MIDI 1");
    sim.add_destination("4AC1CC27 MIDI 2");
    sim.add_destination("Other port");
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_get_destination(); });
    EXPECT_EQ(index, 1u);
    // The object past the end does not exist: the name stays the last one read,
    // cut to eight characters, and the offline value stays 0.
    EXPECT_EQ(out, "MIDIGetNumberOfDestinations 3 \r\nCCCCC: Other po is online\r\n");
}

TEST_F(MidiConnection, DestinationLookupWithoutMatch)
{
    target("4AC1CC27");
    sim.add_destination("Midi Through Port-0");
    uint32_t index = 0;
    std::string out = output_of([&] { index = midi_get_destination(); });
    EXPECT_EQ(index, 0xFFFFFFFFu);
    EXPECT_EQ(out, "MIDIGetNumberOfDestinations 1 \r\nCCCCC: Midi Thr is online\r\n");
}

TEST_F(MidiConnection, UnavailableServiceFailsToOpenAndNothingMatches)
{
    quietly([] { midi_exit(); });
    sim.set_available(false);
    plug("4AC1CC27");
    EXPECT_NE(midi_init(), 0);
    uint32_t index = 0;
    std::string out = output_of([&] { index = set_device_name(0x4AC1CC27); });
    EXPECT_EQ(index, 0xFFFFFFFFu);
    EXPECT_EQ(out,
              "set_device_name 4ac1cc27 \r\n"
              "middle_value 1 \r\n"
              "Generated device_name: 4AC1CC27\n"
              "MIDIGetNumberOfSources 0 \r\n"
              "midi init failed \r\n");
}

TEST_F(MidiConnection, ExitDisposesTheClientAndPrints)
{
    plug("4AC1CC27");
    std::string out = output_of([] { EXPECT_NE(midi_exit(), 0); });
    // The client's ports go with it, so disposing them afterwards fails.
    EXPECT_EQ(out, "midi_exit\r\n");
    EXPECT_EQ(sim.number_of_sources(), 0u);
    EXPECT_EQ(output_of([] { midi_source_connect(); }), "MIDIGetNumberOfSources 0 \r\nmidi init failed \r\n");
    midi_init();
}

TEST_F(MidiConnection, InitClearsBuffersButKeepsTheTarget)
{
    target("4AC1CC27");
    std::memcpy(jname, "junk", 5);
    std::memcpy(name, "junk", 5);
    midiout_databuffer[61] = 0xB1;
    quietly([] { midi_exit(); });
    EXPECT_EQ(midi_init(), 0);
    EXPECT_EQ(jname[0], 0);
    EXPECT_EQ(name[0], 0);
    EXPECT_EQ(midiout_databuffer[61], 0);
    EXPECT_EQ(gDest, 0u);
    EXPECT_NE(client, 0u);
    EXPECT_NE(gOutPort, 0u);
    EXPECT_NE(inPort, 0u);
    EXPECT_STREQ(device_name, "4AC1CC27");
}

TEST_F(MidiConnection, ReceivedBytesArePrintedAsHexPerPacket)
{
    const int source = plug("4AC1CC27");
    target("4AC1CC27");
    quietly([] { midi_source_connect(); });
    std::string out = output_of([&] { sim.inject(source, {0xB0, 0x4A, 0x40}); });
    EXPECT_EQ(out, "b0\t4a\t40\t\r\n");
}

TEST_F(MidiConnection, UnconnectedSourceDeliversNothing)
{
    const int source = plug("4AC1CC27");
    std::string out = output_of([&] { sim.inject(source, {0x90, 0x3C, 0x7F}); });
    EXPECT_EQ(out, "");
}

TEST_F(MidiConnection, ReadProcPrintsEveryPacketOfAList)
{
    alignas(8) uint8_t buffer[1024];
    auto* list = reinterpret_cast<MidiPacketList*>(buffer);
    const uint8_t clock[] = {0xF8};
    const uint8_t note[] = {0x90, 0x3C, 0x7F};
    MidiPacket* p = midi_packet_list_init(list);
    p = midi_packet_list_add(list, sizeof buffer, p, 0, 1, clock);
    p = midi_packet_list_add(list, sizeof buffer, p, 0, 3, note);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(output_of([&] { MyReadProc(list, nullptr, nullptr); }), "f8\t\r\n90\t3c\t7f\t\r\n");
}
