// Two controllers 4AC1CC27 and 4AC2CC27 plugged: both probes answer, and only
// the one the model menu names (4AC2CC27) receives the programming.
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"

using namespace dialcraft;

int two_controllers_scenario(const TestBed& bed)
{
    ScenarioReport report("3", "two controllers: both answer, only the named one is programmed");
    UsbGadget first("4AC1CC27", 0x4AC1, 0xCC27);
    UsbGadget second("4AC2CC27", 0x4AC2, 0xCC27);
    EmulatedController first_emulator(bed.emulator, bed.file("4AC1CC27.log"));
    EmulatedController second_emulator(bed.emulator, bed.file("4AC2CC27.log"));
    if (!plug_controller(report, first, first_emulator, first_udc) ||
        !plug_controller(report, second, second_emulator, second_udc))
        return report.finish();

    midi_init();
    check_family_probe(report, probe_family(), {1, 2});
    uint32_t index = set_device_name(0x4AC2CC27);
    report.check(index != midi_no_match, "set_device_name(0x4AC2CC27) finds the source");
    program_knob(report, second_emulator,
                 {7,
                  0x93,
                  20,
                  {{0xF8}, {0x93, 0x14, 0x07}, {0x83, 0x14, 0x07}, {0x93, 0x14, 0x07}, {0xF8}},
                  "knob 7 = Note On, channel 4, controller 20"});
    check_received_nothing(report, first_emulator, "the other controller 4AC1CC27");
    midi_exit();
    return report.finish();
}
