// A software instrument, client "Renamer" with a port "4AC5CC27 MIDI 1", is
// announced, selected and scanned under its first name; then it renames
// itself to 4AC5CC27. A device matches only when its name and model (for a
// client without a sound card, its name) begin with the target, so before
// the rename nothing is sent, and after it the next programming reaches the
// client: names are read live, not from what was kept at the announcement.
#include <chrono>
#include <string>
#include <thread>

#include "alsa_scenarios.h"
#include "console_capture.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"
#include "sequencer_crowd.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {
bool wait_for_messages(const SequencerCrowd& crowd, size_t count, std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (crowd.received().size() < count) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(10ms);
    }
    return true;
}
}  // namespace

int renamed_client_scenario(const TestBed& bed)
{
    ScenarioReport report("23", "a client renames itself to 4AC5CC27 after its start: the new name is seen");
    SequencerCrowd crowd(bed, "renamer.log");
    if (!crowd.start(report) || !crowd.listen(report, "Renamer", "4AC5CC27 MIDI 1"))
        return report.finish();
    report.check(wait_for_sequencer_port("Renamer", "4AC5CC27 MIDI 1", 5s),
                 "the kernel shows the port \"4AC5CC27 MIDI 1\" of client Renamer");

    midi_init();
    {
        ConsoleCapture capture;
        const uint32_t index = set_device_name(0x4AC5CC27);
        const std::string printed = capture.finish();
        report.check(index != midi_no_match, "set_device_name(0x4AC5CC27) finds the source by its port name");
        report.check(count_lines(printed, "4AC5CC27 MIDI 1 is online\r\n") == 1,
                     "selection prints \"4AC5CC27 MIDI 1 is online\\r\\n\"");
    }
    {
        ConsoleCapture capture;
        const uint8_t result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74);
        const std::string printed = capture.finish();
        bool ok = report.check(result == 5, "before the rename no device matches: usb_midi_main returns 5 (got " +
                                                std::to_string(result) + ")");
        ok &= report.check(count_lines(printed, "midiOutShortMsg\r\n") == 0, "nothing is sent before the rename");
        if (!ok)
            report.detail("link output before the rename", printed);
    }
    std::this_thread::sleep_for(100ms);
    report.check(crowd.received().empty(), "the client receives nothing under its first name");

    if (!crowd.rename(report, "Renamer", "4AC5CC27")) {
        midi_exit();
        return report.finish();
    }
    const std::vector<std::vector<uint8_t>>& sequence = knob5_cc_messages;
    {
        ConsoleCapture capture;
        SendClock clock;
        const uint8_t result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74);
        const std::string printed = capture.finish();
        bool ok = report.check(result == 0,
                               "after the rename usb_midi_main returns 0 (got " + std::to_string(result) + ")");
        ok &= check_send_lines(report, printed, sequence);
        ok &= report.check(std::string(name, 8) == "4AC5CC27" && std::string(model, 8) == "4AC5CC27",
                           "the scan read the new name as name and model (got " + std::string(name) + ", " +
                               std::string(model) + ")");
        if (!ok)
            report.detail("link output after the rename", printed);
        check_sender_pacing(report, clock, sequence);
    }
    report.check(wait_for_messages(crowd, sequence.size(), 2s), "the renamed client receives five messages");
    std::this_thread::sleep_for(100ms);
    std::vector<std::vector<uint8_t>> bytes;
    const std::vector<ReceivedMessage> received = crowd.received();
    for (const ReceivedMessage& m : received)
        bytes.push_back(m.bytes);
    report.check(bytes == sequence,
                 "the renamed client receives exactly" + hex_messages(sequence) + " (got" + hex_messages(bytes) + ")");
    midi_exit();
    return report.finish();
}
