// The controller is unplugged after it was selected and before it is
// programmed: every real send fails and the result is 5, without a crash or a
// hang. Plugged in again, the next programming goes through.
#include <chrono>

#include "console_capture.h"
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {
bool other_client_present()
{
    for (const SequencerClient& c : read_sequencer_clients())
        if (c.name == "Midi Through" && !c.ports.empty())
            return true;
    return false;
}
}  // namespace

int unplug_scenario(const TestBed& bed)
{
    ScenarioReport report("5", "unplug after selection: result 5, no hang; replugged: programmed");
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    midi_init();
    {
        ConsoleCapture capture;
        uint32_t index = set_device_name(0x4AC1CC27);
        std::string printed = capture.finish();
        report.check(index != midi_no_match, "set_device_name(0x4AC1CC27) finds the source");
        report.check(count_lines(printed, "4AC1CC27 MIDI 1 is online\r\n") == 1,
                     "selection prints \"4AC1CC27 MIDI 1 is online\\r\\n\"");
    }

    bool unplugged = gadget.unplug();
    report.check(unplugged, "unplug 4AC1CC27: " + gadget.error());
    report.check(wait_for_client_gone("4AC1CC27", 10s), "the host drops the sequencer client 4AC1CC27");
    report.check(emulator.wait_for_exit(5s) && emulator.wait_for_line("gone ", 0ms),
                 "the emulator sees its device go away");
    // With no MIDI device at all every send would count as a success; another
    // client keeps the device list non-empty, as on a real desktop.
    report.check(other_client_present(), "another sequencer client (Midi Through) is present");

    {
        ConsoleCapture capture;
        uint8_t result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74);
        std::string printed = capture.finish();
        bool ok = report.check(result == 5,
                               "usb_midi_main returns 5 after the unplug (got " + std::to_string(result) + ")");
        ok &= report.check(count_lines(printed, "send_midi_out_data\r\n") == 7,
                           "the scans and all five sends are tried");
        ok &= report.check(count_lines(printed, "midiOutShortMsg\r\n") == 0, "no send reaches a destination");
        if (!ok)
            report.detail("link output after the unplug", printed);
    }

    EmulatedController replugged(bed.emulator, bed.file("4AC1CC27-again.log"));
    bool plugged = gadget.plug(first_udc);
    report.check(plugged, "plug 4AC1CC27 in again: " + gadget.error());
    bool started = plugged && replugged.start(gadget.rawmidi_device(), 5s);
    report.check(started, "restart the emulator: " + replugged.error());
    report.check(wait_for_sequencer_port("4AC1CC27", "4AC1CC27 MIDI 1", 15s),
                 "the host shows \"4AC1CC27 MIDI 1\" again");
    if (started) {
        ConsoleCapture capture;
        uint32_t index = set_device_name(0x4AC1CC27);
        std::string printed = capture.finish();
        report.check(index != midi_no_match, "set_device_name(0x4AC1CC27) finds the source again");
        report.check(count_lines(printed, "4AC1CC27 MIDI 1 is online\r\n") == 1,
                     "reselection prints \"4AC1CC27 MIDI 1 is online\\r\\n\"");
        program_knob(report, replugged, knob5_cc_request);
    }
    midi_exit();
    return report.finish();
}
