// How the link's pacing holds up with other sequencer clients about,
// against the least an alsa-lib program can do (tests/usb/helpers/
// reference_sender.cpp): with 0, 10 and 40 extra clients, the link and the
// reference take turns programming the same controller several times (in
// turns, so that whatever else the machine is doing weighs on both), and the table
// gives the median gap between consecutive programming messages, at the
// controller and at the sender, with the ratio (link − 8) / (reference − 8):
// the link's work per message measured against the least there is. The
// figures are reported, not asserted; every programming's bytes are checked.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <sstream>
#include <string>
#include <thread>

#include "alsa_scenarios.h"
#include "console_capture.h"
#include "helper_process.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_crowd.h"
#include "timed_host.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {

constexpr int programmings = 8;
constexpr int work_programmings = 4;
const std::vector<std::vector<uint8_t>>& sequence = knob5_cc_messages;

struct Gaps {
    std::vector<double> sent;
    std::vector<double> arrived;
};

void add_gaps(const std::vector<int64_t>& ns, std::vector<double>* gaps)
{
    for (size_t i = 1; i < ns.size(); ++i)
        gaps->push_back(static_cast<double>(ns[i] - ns[i - 1]) / 1e6);
}

double median(std::vector<double> v)
{
    if (v.empty())
        return 0;
    std::sort(v.begin(), v.end());
    const size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

bool wait_for_count(const EmulatedController& emulator, size_t count)
{
    const auto deadline = std::chrono::steady_clock::now() + 3s;
    while (emulator.received().size() < count) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

// Checks the programming that arrives from message `first` on and adds the
// gaps between its messages.
void check_arrivals(ScenarioReport& report, const EmulatedController& emulator, size_t first, const std::string& who,
                    std::vector<double>* gaps)
{
    const bool complete = wait_for_count(emulator, first + sequence.size());
    std::vector<ReceivedMessage> received = emulator.received();
    std::vector<std::vector<uint8_t>> bytes;
    std::vector<int64_t> ns;
    for (size_t i = first; i < received.size(); ++i) {
        bytes.push_back(received[i].bytes);
        ns.push_back(received[i].monotonic_ns);
    }
    if (report.check(complete && bytes == sequence,
                     who + ": the controller receives" + hex_messages(sequence) + " (got" + hex_messages(bytes) + ")"))
        add_gaps(ns, gaps);
}

// One programming by the link; returns false when it failed.
bool program_by_link(ScenarioReport& report, Gaps* gaps)
{
    ConsoleCapture capture;
    SendClock clock;
    const uint8_t result = usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74);
    capture.finish();
    bool ok = report.check(result == 0, "the link's programming returns 0 (got " + std::to_string(result) + ")");
    check_sender_pacing(report, clock, sequence);
    add_gaps(clock.accepted(), &gaps->sent);
    return ok;
}

// One programming by the reference sender; returns false when it failed.
bool program_by_reference(ScenarioReport& report, HelperProcess& sender, Gaps* gaps)
{
    std::vector<std::string> lines;
    std::string first;
    bool ok = sender.ask("program", &first, 5s);
    lines.push_back(first);
    ok = ok && (first == "done" || sender.read_until("done", &lines, 5s));
    std::vector<int64_t> stamps;
    for (const std::string& line : lines) {
        std::istringstream words(line);
        std::string word;
        long long ns = 0;
        if (words >> word >> ns && word == "sent")
            stamps.push_back(ns);
    }
    ok = report.check(ok && stamps.size() == sequence.size(),
                      "reference_sender programs and reports five sends: " + sender.error());
    add_gaps(stamps, &gaps->sent);
    return ok;
}

// The link's own work per message, timed inside the VM through a timing
// host around the ALSA host: from the scan's first host call, right after
// the pause, to the end of the send; of it, the time inside the host's
// look-ups (counts, handles, properties) and inside the send. Taken in
// programmings of their own, after the ratio's. Beside it, the one walk of
// the sequencer that a change of clients costs the next count.
std::string work_row(ScenarioReport& report, const EmulatedController& emulator, int extra, double walk_ms)
{
    MidiHost& alsa = midi_host();
    TimedMidiHost timed(alsa);
    set_midi_host(&timed);
    const size_t first = emulator.received().size();
    {
        ConsoleCapture capture;
        for (int p = 0; p < work_programmings; ++p)
            report.check(usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74) == 0, "the timed programming returns 0");
    }
    set_midi_host(&alsa);
    wait_for_count(emulator, first + sequence.size() * work_programmings);
    std::vector<double> work, lookups, sends, calls;
    for (const TimedMidiHost::Message& m : timed.take_messages()) {
        work.push_back(m.work_ms);
        lookups.push_back(m.lookup_ms);
        sends.push_back(m.send_ms);
        calls.push_back(m.calls);
    }
    char walk[16] = "-";
    if (walk_ms >= 0)
        std::snprintf(walk, sizeof walk, "%.2f", walk_ms);
    char text[160];
    std::snprintf(text, sizeof text, "| %d | %.3f | %.3f | %.3f | %.0f | %s |", extra, median(work), median(lookups),
                  median(sends), median(calls), walk);
    return text;
}

std::string ratio(double link, double reference)
{
    if (reference - 8 < 0.01)
        return "-";
    char text[16];
    std::snprintf(text, sizeof text, "%.2f", (link - 8) / (reference - 8));
    return text;
}

std::string row(int extra, const Gaps& link, const Gaps& reference)
{
    const double la = median(link.arrived), ra = median(reference.arrived);
    const double ls = median(link.sent), rs = median(reference.sent);
    char text[256];
    std::snprintf(text, sizeof text, "| %d | %.2f | %.2f | %s | %.2f | %.2f | %s |", extra, la, ra,
                  ratio(la, ra).c_str(), ls, rs, ratio(ls, rs).c_str());
    return text;
}

}  // namespace

int client_count_benchmark(const TestBed& bed)
{
    ScenarioReport report("24", "benchmark: the link against a minimal alsa-lib sender with 0, 10, 40 extra clients");
    SequencerCrowd crowd(bed, "benchmark-crowd.log");
    UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
    if (!crowd.start(report) || !plug_controller(report, gadget, emulator, first_udc))
        return report.finish();
    midi_init();
    report.check(set_device_name(0x4AC1CC27) != midi_no_match, "set_device_name(0x4AC1CC27) finds the source");

    HelperProcess sender({bed.program("reference_sender"), "4AC1CC27 MIDI 1", "5", "2", "74"});
    if (!report.check(sender.start(), "start reference_sender: " + sender.error())) {
        midi_exit();
        return report.finish();
    }

    std::vector<std::string> rows, work_rows;
    for (int extra : {0, 10, 40}) {
        if (!crowd.grow_to(report, extra))
            break;
        // The first count after the crowd changed walks the sequencer again
        // (with no extra clients nothing changed: no figure).
        const auto walk_start = std::chrono::steady_clock::now();
        midi_host().number_of_devices();
        const double walk_ms =
            extra == 0
                ? -1
                : std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - walk_start).count();
        Gaps link, reference;
        for (int p = 0; p < programmings; ++p) {
            // Each programming has arrived before the next one starts.
            const size_t first = emulator.received().size();
            if (!program_by_link(report, &link))
                break;
            check_arrivals(report, emulator, first, "the link", &link.arrived);
            if (!program_by_reference(report, sender, &reference))
                break;
            check_arrivals(report, emulator, first + sequence.size(), "the reference", &reference.arrived);
        }
        rows.push_back(row(extra, link, reference));
        work_rows.push_back(work_row(report, emulator, extra, walk_ms));
    }
    report.check(sender.finish(5s), "reference_sender ends: " + sender.error());
    midi_exit();

    report.table("benchmark: median gap between consecutive programming messages, ms; " + std::to_string(programmings) +
                 " programmings (" + std::to_string(programmings * 4) +
                 " gaps) per sender and row, the two senders taking turns");
    report.table(
        "| extra clients | link, at controller | reference, at controller | ratio (link - 8) / (reference - 8) "
        "| link, sent | reference, sent | ratio, sent |");
    report.table("|---|---|---|---|---|---|---|");
    for (const std::string& r : rows)
        report.table(r);
    report.table("the link's work per message, from the scan after the pause to the end of the send, medians of " +
                 std::to_string(work_programmings * 5) + " messages, timed in programmings of their own");
    report.table(
        "| extra clients | work per message, ms | in the host's look-ups, ms | in the send, ms | host calls "
        "per message | the walk after a change, ms |");
    report.table("|---|---|---|---|---|---|");
    for (const std::string& r : work_rows)
        report.table(r);
    return report.finish();
}
