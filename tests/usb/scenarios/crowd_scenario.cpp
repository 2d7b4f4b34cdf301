// Forty other programs' sequencer clients are about while one controller
// 4AC1CC27 is probed and programmed: the probes, the device count of the
// scan and the bytes the controller receives are exactly as with none.
#include <cstdio>
#include <string>

#include "alsa_scenarios.h"
#include "console_capture.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"
#include "sequencer_crowd.h"

using namespace dialcraft;

namespace {
// Every client the kernel lists except System and the link's own (its two
// clients "MIDI Client" and the watcher "MIDI Client changes").
unsigned other_clients()
{
    unsigned n = 0;
    for (const SequencerClient& c : read_sequencer_clients())
        n += c.number != 0 && c.name != "MIDI Client" && c.name != "MIDI Client changes";
    return n;
}
}  // namespace

int crowd_scenario(const TestBed& bed)
{
    ScenarioReport report("21", "40 other sequencer clients: probes, device count, knob 5 programmed");
    SequencerCrowd crowd(bed, "crowd.log");
    if (!crowd.start(report) || !crowd.grow_to(report, 40))
        return report.finish();
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    midi_init();
    check_family_probe(report, probe_family(), {1});
    const uint32_t index = set_device_name(0x4AC1CC27);
    report.check(index != midi_no_match, "set_device_name(0x4AC1CC27) finds the source");
    {
        ConsoleCapture capture;
        const uint8_t result = send_midi_out_data(0xFF, 15, 0, 0);
        const std::string printed = capture.finish();
        char count_line[64];
        std::snprintf(count_line, sizeof count_line, " MIDIGetNumberOfDevices  %x\r\n", other_clients());
        bool ok = report.check(result == 0, "the scan finds the controller");
        ok &= report.check(count_lines(printed, count_line) == 1,
                           "the scan counts every other client the kernel lists (" + std::to_string(other_clients()) +
                               ")");
        ok &= report.check(count_lines(printed, "no macthing name B \r\n") == 1,
                           "the scan prints \"no macthing name B \\r\\n\"");
        if (!ok)
            report.detail("output of the scan", printed);
    }
    program_knob(report, emulator, knob5_cc_request);
    midi_exit();
    return report.finish();
}
