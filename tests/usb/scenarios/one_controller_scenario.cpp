// One controller 4AC1CC27 plugged: only its probe answers, and knob 5 is
// programmed as Control Change on channel 2, controller 74.
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"

using namespace dialcraft;

int one_controller_scenario(const TestBed& bed)
{
    ScenarioReport report("1", "one controller 4AC1CC27: probes, online line, knob 5 programmed");
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    midi_init();
    check_family_probe(report, probe_family(), {1});
    uint32_t index = set_device_name(0x4AC1CC27);
    report.check(index != midi_no_match, "set_device_name(0x4AC1CC27) finds the source");
    program_knob(report, emulator, knob5_cc_request);
    midi_exit();
    return report.finish();
}
