#include <gtest/gtest.h>

#include <unistd.h>

#include <string>

#include "console_capture.h"
#include "midi/midi_link.h"

// Without a sequencer device the platform's own service cannot be opened and
// the link reports that nothing matched.
TEST(AlsaLink, WithoutSequencerNothingMatches)
{
    if (access("/dev/snd/seq", F_OK) == 0)
        GTEST_SKIP() << "this machine has a sequencer";
    set_midi_host(nullptr);
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
