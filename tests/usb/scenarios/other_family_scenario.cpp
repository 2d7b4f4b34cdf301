// A controller of another family, 16C3C008: set_device_name selects it by its
// own device code and a knob is programmed on it (knob 12, Bend Change,
// channel 16, controller 127).
#include <cstring>

#include "console_capture.h"
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"

using namespace dialcraft;

int other_family_scenario(const TestBed& bed)
{
    ScenarioReport report("7", "other family 16C3C008: selected and programmed");
    UsbGadget gadget("16C3C008", 0x16C3, 0xC008);
    EmulatedController emulator(bed.emulator, bed.file("16C3C008.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    midi_init();
    ConsoleCapture capture;
    uint32_t index = set_device_name(0x16C3C008);
    std::string printed = capture.finish();
    bool ok = report.check(index != midi_no_match, "set_device_name(0x16C3C008) finds the source");
    ok &= report.check(std::strcmp(device_name, "16C3C008") == 0, "device_name is 16C3C008");
    ok &= report.check(realtime_connect_state_flag == 1, "the connection flag is 1");
    ok &= report.check(count_lines(printed, "Generated device_name: 16C3C008\n") == 1,
                       "prints \"Generated device_name: 16C3C008\\n\"");
    ok &= report.check(count_lines(printed, "16C3C008 MIDI 1 is online\r\n") == 1,
                       "prints \"16C3C008 MIDI 1 is online\\r\\n\"");
    if (!ok)
        report.detail("output of set_device_name(0x16C3C008)", printed);
    program_knob(report, emulator,
                 {12,
                  0xEF,
                  127,
                  {{0xF8}, {0x9F, 0x7F, 0x0C}, {0x8F, 0x7F, 0x0C}, {0xEF, 0x7F, 0x0C}, {0xF8}},
                  "knob 12 = Bend Change, channel 16, controller 127"});
    midi_exit();
    return report.finish();
}
