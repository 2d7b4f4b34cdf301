// The link without a MIDI service: on the ALSA host of a machine without a
// sequencer device, and with no host selected at all. Either way it reports
// that nothing matched, sends nothing and fails to open and close.
#include <gtest/gtest.h>

#include <unistd.h>

#include <memory>
#include <string>

#include "console_capture.h"
#include "midi/alsa/alsa_midi_host.h"
#include "midi/midi_link.h"
#include "midi/no_midi_host.h"

using namespace dialcraft;

namespace {

// Opens the link, programs knob 5 of 4AC1CC27 and closes the link, checking
// every result and every line printed on the way.
void expect_nothing_matches()
{
    EXPECT_NE(midi_init(), 0);
    ConsoleCapture capture;
    const uint32_t index = set_device_name(0x4AC1CC27);
    const uint8_t failures = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74);
    const uint8_t exit_status = midi_exit();
    const std::string out = capture.finish();
    EXPECT_EQ(index, 0xFFFFFFFFu);
    EXPECT_EQ(failures, 0);  // no devices at all
    EXPECT_NE(exit_status, 0);
    const std::string empty_scan = "send_midi_out_data\r\n MIDIGetNumberOfDevices  0\r\n";
    EXPECT_EQ(out,
              "set_device_name 4ac1cc27 \r\nmiddle_value 1 \r\nGenerated device_name: 4AC1CC27\n"
              "MIDIGetNumberOfSources 0 \r\nmidi init failed \r\n" +
                  empty_scan + "key_code_value_set\r\n" + empty_scan + empty_scan + empty_scan + empty_scan +
                  empty_scan + empty_scan + "midi_exit\r\n");
}

}  // namespace

TEST(AlsaLink, WithoutSequencerNothingMatches)
{
    if (access("/dev/snd/seq", F_OK) == 0)
        GTEST_SKIP() << "this machine has a sequencer";
    const std::unique_ptr<MidiHost> alsa = make_alsa_midi_host();
    MidiHost* const before = set_midi_host(alsa.get());
    expect_nothing_matches();
    EXPECT_EQ(set_midi_host(before), alsa.get());
}

TEST(NoHostLink, WithNoHostSelectedNothingMatches)
{
    MidiHost* const before = set_midi_host(nullptr);
    EXPECT_NE(dynamic_cast<NoMidiHost*>(&midi_host()), nullptr);
    expect_nothing_matches();
    set_midi_host(before);
}

TEST(NoHostLink, EveryCallFailsOrFindsNothingAndTouchesNoBuffer)
{
    NoMidiHost none;
    MidiObjectRef handle = 0x5A5A5A5A;
    EXPECT_EQ(none.client_create("MIDI Client", &handle), no_midi_service);
    EXPECT_EQ(none.output_port_create(1, "Output port", &handle), no_midi_service);
    EXPECT_EQ(none.input_port_create(1, "Input port", nullptr, nullptr, &handle), no_midi_service);
    EXPECT_EQ(handle, 0x5A5A5A5Au);
    EXPECT_EQ(none.number_of_sources() + none.number_of_destinations() + none.number_of_devices(), 0u);
    EXPECT_EQ(none.get_source(0) | none.get_destination(0) | none.get_device(0), 0u);
    char buffer[16] = "earlier text";
    EXPECT_EQ(none.get_string_property(1, MidiStringProperty::name, buffer, sizeof buffer), no_midi_service);
    EXPECT_STREQ(buffer, "earlier text");
    int32_t offline = 7;
    EXPECT_EQ(none.get_integer_property(1, MidiIntegerProperty::offline, &offline), no_midi_service);
    EXPECT_EQ(offline, 7);
    const uint8_t clock = 0xF8;
    EXPECT_EQ(none.send(1, 2, &clock, 1), no_midi_service);
    MidiChangeWatch watch;
    EXPECT_EQ(none.watch_changes([](void*) {}, nullptr, &watch), no_midi_service);
    EXPECT_FALSE(watch.active());
}
