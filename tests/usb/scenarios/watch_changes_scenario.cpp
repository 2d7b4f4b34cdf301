// watch_changes on the ALSA host: with no client of the link open, a
// plugged controller is told to the callback; once the link opens, the same
// one watcher serves it (one watcher client in the kernel's list) and the
// family's controllers can be read after each call; an unplug is told too;
// the link closing leaves the watch running; and once the watch's token
// ends, the watcher leaves and nothing more is told.
#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "alsa_scenarios.h"
#include "console_capture.h"
#include "midi/family_presence.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {
const char* const watcher_name = "MIDI Client changes";

void count_call(void* context)
{
    ++*static_cast<std::atomic<int>*>(context);
}

bool wait_for_call(const std::atomic<int>& calls, std::chrono::milliseconds timeout)
{
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (calls == 0) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

// Waits until no call has come for 100 ms, so that what an earlier step
// set off is not taken for what the next one does.
void settle(const std::atomic<int>& calls)
{
    for (int seen = -1; seen != calls;) {
        seen = calls;
        std::this_thread::sleep_for(100ms);
    }
}

int clients_named(const std::string& name)
{
    int n = 0;
    for (const SequencerClient& c : read_sequencer_clients())
        n += c.name == name;
    return n;
}

std::string serials(const std::vector<PresentController>& present)
{
    std::string text;
    for (const PresentController& p : present)
        text += (text.empty() ? "" : ", ") + p.serial + " at " + p.address + " \"" + p.port_name + "\"";
    return text.empty() ? "none" : text;
}
}  // namespace

int watch_changes_scenario(const TestBed& bed)
{
    ScenarioReport report("25", "watch_changes: plugs and unplugs told with and without the link open, one watcher");
    MidiHost& host = midi_host();
    std::atomic<int> calls{0};
    MidiChangeWatch watch;
    if (!report.check(host.watch_changes(count_call, &calls, &watch) == 0, "watch_changes starts with no client open"))
        return report.finish();
    report.check(clients_named(watcher_name) == 1 && clients_named("MIDI Client") == 0,
                 "the kernel lists the watcher and no client of the link");

    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    settle(calls);
    calls = 0;
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();
    report.check(wait_for_call(calls, 2s), "the plug is told while the link is closed");

    midi_init();
    report.check(clients_named(watcher_name) == 1, "with the link open there is still one watcher");
    const std::vector<PresentController> present = present_family_controllers(host);
    report.check(present.size() == 1 && present[0].serial == "4AC1CC27" && present[0].port_name == "4AC1CC27 MIDI 1",
                 "the family's controllers read 4AC1CC27 \"4AC1CC27 MIDI 1\" (got " + serials(present) + ")");

    settle(calls);
    calls = 0;
    report.check(gadget.unplug(), "unplug 4AC1CC27: " + gadget.error());
    report.check(wait_for_call(calls, 5s), "the unplug is told while the link is open");
    report.check(wait_for_client_gone("4AC1CC27", 5s), "the kernel drops the client 4AC1CC27");
    const std::vector<PresentController> after = present_family_controllers(host);
    report.check(after.empty(), "after the unplug no controller of the family is read (got " + serials(after) + ")");
    report.check(emulator.wait_for_exit(5s), "the emulator sees its device go away");

    {
        ConsoleCapture capture;
        midi_exit();
    }
    report.check(clients_named(watcher_name) == 1 && clients_named("MIDI Client") == 0,
                 "the link closed, the watch goes on");
    watch.reset();
    report.check(wait_for_client_gone(watcher_name, 2s), "with neither a watch nor a client the watcher leaves");

    calls = 0;
    EmulatedController again(bed.emulator, bed.file("4AC1CC27-again.log"));
    report.check(gadget.plug(first_udc), "plug 4AC1CC27 again: " + gadget.error());
    report.check(wait_for_sequencer_port("4AC1CC27", "4AC1CC27 MIDI 1", 15s), "the host shows 4AC1CC27 again");
    std::this_thread::sleep_for(200ms);
    report.check(calls == 0, "nothing is told after the watch stopped (" + std::to_string(calls.load()) + " calls)");
    return report.finish();
}
