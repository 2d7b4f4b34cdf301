#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "link_lines.h"
#include "sim_link_fixture.h"

using namespace dialcraft;

using namespace std::chrono_literals;
using Bytes = std::vector<uint8_t>;

class MidiTransmit : public SimLinkTest {
protected:
    void select(uint32_t code)
    {
        quietly([&] { set_device_name(code); });
    }
    std::vector<Bytes> wire() const
    {
        std::vector<Bytes> out;
        for (const auto& p : sim.sent())
            out.push_back(p.bytes);
        return out;
    }
};

TEST_F(MidiTransmit, WorkedExampleSendsTheExactSequenceWithItsLines)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    uint8_t result = 99;
    const auto start = std::chrono::steady_clock::now();
    std::string out = output_of([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(out, scan_lines(1) + "key_code_value_set\r\n" + scan_lines(1) + sent_lines("clock mc\r\n") +
                       sent_lines("MSG: 91 4a 5 \r\n") + sent_lines("MSG: 81 4a 5 \r\n") +
                       sent_lines("MSG: b1 4a 5 \r\n") + sent_lines("clock mc\r\n"));

    const auto packets = sim.sent();
    ASSERT_EQ(packets.size(), 5u);
    EXPECT_EQ(wire(), (std::vector<Bytes>{{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}}));
    for (const auto& p : packets)
        EXPECT_EQ(p.destination, "4AC1CC27 MIDI 1");
    // Two scans and the first message's own pause come before the first byte.
    EXPECT_GE(packets[0].at - start, 24ms);
    for (size_t i = 1; i < packets.size(); ++i)
        EXPECT_GE(packets[i].at - packets[i - 1].at, 8ms) << "gap before packet " << i;
    EXPECT_EQ(midiout_databuffer[61], 0xB1);
    EXPECT_EQ(midiout_databuffer[62], 74);
    EXPECT_EQ(midiout_databuffer[63], 74);
}

TEST_F(MidiTransmit, NoDevicesAtAllCountsAsSuccessThoughNothingIsSent)
{
    sim.add_destination("4AC1CC27 MIDI 1");
    select(0x4AC1CC27);
    uint8_t result = 99;
    std::string out = output_of([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(sim.sent().empty());
    const std::string empty_scan = "send_midi_out_data\r\n MIDIGetNumberOfDevices  0\r\n";
    EXPECT_EQ(out, empty_scan + "key_code_value_set\r\n" + empty_scan + empty_scan + empty_scan + empty_scan +
                       empty_scan + empty_scan);
}

TEST_F(MidiTransmit, DevicesWithoutAMatchFailEverySend)
{
    sim.add_device("4AC1CC27", "Maker", "Other model");  // name matches, model does not
    sim.add_device("Midi Through", "", "Midi Through");
    sim.add_destination("4AC1CC27 MIDI 1");
    select(0x4AC1CC27);
    uint8_t result = 0;
    std::string out = output_of([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 5);
    EXPECT_TRUE(sim.sent().empty());
    const std::string miss = "send_midi_out_data\r\n MIDIGetNumberOfDevices  2\r\n";
    EXPECT_EQ(out, miss + "key_code_value_set\r\n" + miss + miss + miss + miss + miss + miss);
}

TEST_F(MidiTransmit, DifferingControllerBytesSendNothingAfterTheScan)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    uint8_t result = 0;
    std::string out = output_of([&] { result = key_code_value_set(5, static_cast<int8_t>(0xB1), 74, 75); });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(out, "key_code_value_set\r\n" + scan_lines(1));
    EXPECT_TRUE(sim.sent().empty());
    EXPECT_EQ(midiout_databuffer[61], 0);
}

TEST_F(MidiTransmit, OnlyTheLowSevenBitsOfTheControllerBytesAreCompared)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    uint8_t result = 9;
    quietly([&] { result = key_code_value_set(5, static_cast<int8_t>(0xB1), static_cast<int8_t>(0xCA), 0x4A); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(wire()[3], (Bytes{0xB1, 0x4A, 0x05}));
    EXPECT_EQ(midiout_databuffer[62], 0xCA);
}

TEST_F(MidiTransmit, OfflineDestinationFailsEveryRealSend)
{
    sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    sim.add_destination("4AC1CC27 MIDI 1", true);
    select(0x4AC1CC27);
    uint8_t result = 0;
    std::string out = output_of([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 5);
    EXPECT_TRUE(sim.sent().empty());
    const std::string lookup = "MIDIGetNumberOfDestinations 1 \r\nCCCCC: 4AC1CC27 is online\r\n";
    const std::string offline = "send_midi_out_data\r\n MIDIGetNumberOfDevices  1\r\nmidiOutShortMsg\r\n" + lookup +
                                lookup + lookup + "midi_get_destination 0 \r\noffline \r\n";
    EXPECT_EQ(out, scan_lines(1) + "key_code_value_set\r\n" + scan_lines(1) + offline + offline + offline + offline +
                       offline);
}

TEST_F(MidiTransmit, NoMatchingDestinationFailsEveryRealSend)
{
    sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    sim.add_destination("Midi Through Port-0");
    select(0x4AC1CC27);
    uint8_t result = 0;
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 5);
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(MidiTransmit, ServiceSendFailuresAreCounted)
{
    sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    const int dest = sim.add_destination("4AC1CC27 MIDI 1");
    sim.set_send_status(dest, -19);
    select(0x4AC1CC27);
    uint8_t result = 0;
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 5);
}

TEST_F(MidiTransmit, ChannelSixteen)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    quietly([&] { usb_midi_main(12, static_cast<int8_t>(0xEF), 127, 127); });
    EXPECT_EQ(wire(), (std::vector<Bytes>{{0xF8}, {0x9F, 0x7F, 0x0C}, {0x8F, 0x7F, 0x0C}, {0xEF, 0x7F, 0x0C}, {0xF8}}));
}

TEST_F(MidiTransmit, NoteTypesRepeatTheSecondOrThirdMessage)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    quietly([&] { usb_midi_main(0, static_cast<int8_t>(0x90), 0, 0); });
    quietly([&] { usb_midi_main(1, static_cast<int8_t>(0x83), 64, 64); });
    EXPECT_EQ(wire(), (std::vector<Bytes>{{0xF8},
                                          {0x90, 0x00, 0x00},
                                          {0x80, 0x00, 0x00},
                                          {0x90, 0x00, 0x00},
                                          {0xF8},
                                          {0xF8},
                                          {0x93, 0x40, 0x01},
                                          {0x83, 0x40, 0x01},
                                          {0x83, 0x40, 0x01},
                                          {0xF8}}));
}

TEST_F(MidiTransmit, StatusWithHighNibbleFSendsTheClockByte)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    quietly([&] { usb_midi_main(5, static_cast<int8_t>(0xF3), 74, 74); });
    EXPECT_EQ(wire()[3], Bytes{0xF8});
    uint8_t result = 9;
    sim.clear_sent();
    std::string out = output_of([&] { result = send_midi_out_data(0xF5, 3, 1, 2); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(wire(), std::vector<Bytes>{Bytes{0xF8}});
    EXPECT_EQ(out, sent_lines("clock mc\r\n"));
}

TEST_F(MidiTransmit, ChannelZeroWrapsToTheLastChannel)
{
    plug("4AC1CC27");
    select(0x4AC1CC27);
    quietly([&] { send_midi_out_data(0x90, 0, 1, 2); });
    EXPECT_EQ(wire(), std::vector<Bytes>{Bytes({0x9F, 0x01, 0x02})});
}

TEST_F(MidiTransmit, DeviceMustMatchByNameAndModel)
{
    std::strcpy(device_name, "4AC1CC27");
    std::strcpy(name, "4AC1CC27");
    std::strcpy(model, "4AC1CC27 extra");
    EXPECT_EQ(midi_device_name_judge(), 1);
    model[3] = 'c';
    EXPECT_EQ(midi_device_name_judge(), 0);
    std::strcpy(model, "4AC1CC27");
    std::strcpy(name, "4AC2CC27");
    EXPECT_EQ(midi_device_name_judge(), 0);
}

TEST_F(MidiTransmit, AbsentDevicePropertiesKeepThePreviousDevicesText)
{
    sim.add_device("4AC1CC27", "Maker", "Other model");
    const int nameless = sim.add_device("x", "", "4AC1CC27");
    sim.set_name_absent(nameless, true);
    sim.add_destination("4AC1CC27 MIDI 1");
    select(0x4AC1CC27);
    uint8_t result = 9;
    quietly([&] { result = send_midi_out_data(0x90, 1, 2, 3); });
    // The nameless device is judged with the first device's name and its own model.
    EXPECT_EQ(result, 0);
    EXPECT_STREQ(name, "4AC1CC27");
    EXPECT_STREQ(manuf, "");
    EXPECT_STREQ(model, "4AC1CC27");
    EXPECT_EQ(wire(), std::vector<Bytes>{Bytes({0x90, 0x02, 0x03})});
}

TEST_F(MidiTransmit, UnpluggedControllerFailsThenWorksWhenBack)
{
    sim.add_device("Midi Through", "", "Midi Through");
    const int device = sim.add_device("4AC1CC27", "Maker", "4AC1CC27");
    const int dest = sim.add_destination("4AC1CC27 MIDI 1");
    select(0x4AC1CC27);
    sim.remove(device);
    sim.remove(dest);
    uint8_t result = 0;
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 5);
    plug("4AC1CC27");
    quietly([&] { result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(sim.sent().size(), 5u);
}
