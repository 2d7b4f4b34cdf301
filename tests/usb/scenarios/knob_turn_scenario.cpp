// A knob turned on the controller sends B0 4A 40; the link's receive callback
// prints the bytes.
#include <chrono>

#include "console_capture.h"
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"

using namespace dialcraft;

using namespace std::chrono_literals;

int knob_turn_scenario(const TestBed& bed)
{
    ScenarioReport report("4", "controller sends B0 4A 40: MyReadProc prints it");
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    midi_init();
    uint32_t index = set_device_name(0x4AC1CC27);
    report.check(index != midi_no_match, "set_device_name(0x4AC1CC27) finds and connects the source");

    const std::string expected = "b0\t4a\t40\t\r\n";
    ConsoleCapture capture;
    bool sent = emulator.send("b0 4a 40") && emulator.wait_for_line("sent ", 3s);
    bool printed = capture.wait_for_line(expected, 5s);
    std::string output = capture.finish();
    report.check(sent, "the controller sends B0 4A 40");
    report.check(printed && count_lines(output, expected) == 1, "MyReadProc prints \"b0\\t4a\\t40\\t\\r\\n\" once");
    report.check(printed_lines(output).size() == 1, "nothing else is printed on receipt");
    if (report.failed())
        report.detail("printed on receipt", output);
    midi_exit();
    return report.finish();
}
