// No controller plugged: all sixteen probes answer 0, each printing
// "midi init failed \r\n".
#include "console_capture.h"
#include "link_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"

using namespace dialcraft;

int no_controller_scenario(const TestBed&)
{
    ScenarioReport report("6", "no controller: sixteen probes 0, \"midi init failed\" lines");
    midi_init();
    FamilyProbe probe = probe_family();
    check_family_probe(report, probe, {});
    int failed_lines = 0;
    for (const std::string& out : probe.output)
        failed_lines += count_lines(out, "midi init failed \r\n");
    report.check(failed_lines == 16, "sixteen \"midi init failed \\r\\n\" lines in all");
    midi_exit();
    return report.finish();
}
