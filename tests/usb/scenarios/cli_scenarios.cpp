// dialcraft-cli and dialcraft-virtual-controller inside the test VM, run as
// processes as a user runs them:
//   8   dialcraft-cli list sees the plugged gadgets (and none before)
//   9   dialcraft-cli apply of a file with five configured knobs programs
//       exactly those five on the gadget
//   10  two virtual controllers are found by list, one is programmed by set,
//       and its knob turn arrives at the link's input port
//   11  dialcraft-cli set programs a gadget and the ledger remembers it:
//       show --controller reports the knob, apply --changed of a file
//       holding the same setting sends nothing
//   12  dialcraft-cli verify on a gadget programmed by set: the knob's new
//       setting exits 0, its old one exits 1; a virtual controller's
//       sweep of 1000 is counted exactly by dialcraft-cli monitor
//   usb_cli_scenarios <8|9|10|11|12> <controller_emulator path> <work directory>
// The two programs are packed beside the emulator.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "alsa_link_host.h"
#include "child_process.h"
#include "console_capture.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"
#include "watchdog.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {

struct Programs {
    std::string cli;
    std::string virtual_controller;
};

Programs programs_beside(const std::string& emulator)
{
    const std::string dir = emulator.substr(0, emulator.rfind('/') + 1);
    return {dir + "dialcraft-cli", dir + "dialcraft-virtual-controller"};
}

ProcessResult run_cli(const Programs& programs, std::vector<std::string> args)
{
    args.insert(args.begin(), programs.cli);
    return run_process(args, 30s);
}

std::string list_line(const std::string& serial)
{
    return serial + "  " + sequencer_port_address(serial, serial + " MIDI 1") + "  " + serial + " MIDI 1\n";
}

int client_number(const std::string& serial)
{
    const std::string address = sequencer_port_address(serial, serial + " MIDI 1");
    return std::atoi(address.c_str());
}

std::string ok_line(int knob, const std::string& setting, const std::string& serial)
{
    return "旋钮(knob) " + std::to_string(knob) + ": " + setting + " -> " + serial +
           " MIDI 1, 已接受(accepted) 5/5, 成功(ok)\n";
}

void detail(ScenarioReport& report, const std::string& what, const ProcessResult& result)
{
    report.detail(what + ", exit " + std::to_string(result.status),
                  "stdout:\n" + result.out + "stderr:\n" + result.err);
}

int list_scenario(const TestBed& bed, const Programs& programs)
{
    ScenarioReport report("8", "dialcraft-cli list: none, then 4AC1CC27 and 4AC3CC27 with their ports");
    const ProcessResult none = run_cli(programs, {"list"});
    report.check(none.status == 3, "list with no controller exits 3 (got " + std::to_string(none.status) + ")");
    report.check(none.out.empty(), "list with no controller prints nothing on standard output");

    UsbGadget first("4AC1CC27", 0x4AC1, 0xCC27);
    UsbGadget second("4AC3CC27", 0x4AC3, 0xCC27);
    EmulatedController first_emulator(bed.emulator, bed.file("4AC1CC27.log"));
    EmulatedController second_emulator(bed.emulator, bed.file("4AC3CC27.log"));
    if (!plug_controller(report, first, first_emulator, first_udc) ||
        !plug_controller(report, second, second_emulator, second_udc))
        return report.finish();

    // The sequencer lists its clients in number order.
    std::vector<std::string> serials{"4AC1CC27", "4AC3CC27"};
    if (client_number("4AC3CC27") < client_number("4AC1CC27"))
        std::swap(serials[0], serials[1]);
    const std::string expected = list_line(serials[0]) + list_line(serials[1]);
    const ProcessResult listed = run_cli(programs, {"list"});
    report.check(listed.status == 0, "list exits 0");
    report.check(listed.out == expected, "list prints\n" + expected);
    report.check(listed.err.empty(), "list writes nothing to standard error");
    if (report.failed())
        detail(report, "dialcraft-cli list", listed);

    const ProcessResult json = run_cli(programs, {"list", "--json"});
    std::string expected_json;
    for (const std::string& serial : serials)
        expected_json += std::string(expected_json.empty() ? "[" : ",") + "{\"address\":\"" +
                         sequencer_port_address(serial, serial + " MIDI 1") + "\",\"port\":\"" + serial +
                         " MIDI 1\",\"serial\":\"" + serial + "\"}";
    expected_json += "]\n";
    report.check(json.status == 0 && json.out == expected_json, "list --json prints " + expected_json);
    if (json.out != expected_json)
        detail(report, "dialcraft-cli list --json", json);
    return report.finish();
}

int apply_scenario(const TestBed& bed, const Programs& programs)
{
    ScenarioReport report("9", "dialcraft-cli apply of 5 configured knobs programs exactly those 5 on 4AC3CC27");
    UsbGadget gadget("4AC3CC27", 0x4AC3, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC3CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    // Knobs 0 to 29, three lines each; the unconfigured ones blank (twenty
    // spaces), so no line is empty and nothing shifts.
    std::vector<std::string> slot_texts(90, std::string(20, ' '));
    const struct {
        int knob;
        const char* type;
        const char* channel;
        const char* controller;
    } knobs[] = {{0, "Note On", "1", "60"},
                 {3, "Control Change", "2", "74"},
                 {12, "Bend Change", "16", "127"},
                 {20, "Note Off", "10", "0"},
                 {26, "Control Change", "16", "5"}};
    for (const auto& k : knobs) {
        slot_texts[static_cast<size_t>(k.knob * 3)] = k.type;
        slot_texts[static_cast<size_t>(k.knob * 3 + 1)] = k.channel;
        slot_texts[static_cast<size_t>(k.knob * 3 + 2)] = k.controller;
    }
    const std::string path = bed.file("five-knobs.txt");
    {
        std::ofstream file(path, std::ios::binary);
        for (size_t i = 0; i < slot_texts.size(); ++i)
            file << (i ? "\n" : "") << slot_texts[i];
    }

    const ProcessResult applied = run_cli(programs, {"apply", path});
    std::string expected;
    for (const auto& k : knobs)
        expected += ok_line(k.knob,
                            std::string(k.type) + ", 通道(channel) " + k.channel + ", 控制器号(controller) " +
                                k.controller,
                            "4AC3CC27");
    expected += "已设置(programmed) 5, 失败(failed) 0, 跳过(skipped) 22\n";
    report.check(applied.status == 0, "apply exits 0 (got " + std::to_string(applied.status) + ")");
    report.check(applied.out == expected, "apply prints one line per knob and the summary");
    report.check(applied.err.empty(), "apply writes nothing to standard error (not a terminal: no progress bar)");
    if (report.failed())
        detail(report, "dialcraft-cli apply", applied);

    const std::vector<std::string> frames{"knob 0 = Note On, channel 1, controller 60",
                                          "knob 3 = Control Change, channel 2, controller 74",
                                          "knob 12 = Bend Change, channel 16, controller 127",
                                          "knob 20 = Note Off, channel 10, controller 0",
                                          "knob 26 = Control Change, channel 16, controller 5"};
    emulator.wait_for_line(frames.back(), 5s);
    report.check(emulator.programmed() == frames, "the controller decoded exactly the five knobs, in order");
    const std::vector<std::vector<uint8_t>> wire{{0xF8}, {0x90, 60, 0},   {0x80, 60, 0},   {0x90, 60, 0},   {0xF8},
                                                 {0xF8}, {0x91, 74, 3},   {0x81, 74, 3},   {0xB1, 74, 3},   {0xF8},
                                                 {0xF8}, {0x9F, 127, 12}, {0x8F, 127, 12}, {0xEF, 127, 12}, {0xF8},
                                                 {0xF8}, {0x99, 0, 20},   {0x89, 0, 20},   {0x89, 0, 20},   {0xF8},
                                                 {0xF8}, {0x9F, 5, 26},   {0x8F, 5, 26},   {0xBF, 5, 26},   {0xF8}};
    const std::vector<ReceivedMessage> received = emulator.received();
    std::vector<std::vector<uint8_t>> bytes;
    for (const ReceivedMessage& message : received)
        bytes.push_back(message.bytes);
    report.check(bytes == wire, "the controller received exactly the 25 programming messages:" + hex_messages(wire) +
                                    "\n  got:" + hex_messages(bytes));
    report.report_arrival_gaps(received);
    return report.finish();
}

int virtual_controller_scenario(const Programs& programs)
{
    ScenarioReport report("10", "virtual controllers 4AC1CC27 4AC2CC27: listed, 4AC2CC27 set, its turn received");
    InteractiveProcess controllers;
    report.check(controllers.start({programs.virtual_controller, "4AC1CC27", "4AC2CC27"}),
                 "start dialcraft-virtual-controller 4AC1CC27 4AC2CC27");
    const std::string ready1 = controllers.wait_for_line("4AC1CC27: 就绪(ready)", 10s);
    const std::string ready2 = controllers.wait_for_line("4AC2CC27: 就绪(ready)", 10s);
    if (!report.check(!ready1.empty() && !ready2.empty(), "both virtual controllers say they are ready"))
        return report.finish();
    const std::string address = sequencer_port_address("4AC2CC27", "4AC2CC27 MIDI 1");
    report.check(ready2 == "4AC2CC27: 就绪(ready), 端口(port) " + address + " \"4AC2CC27 MIDI 1\"",
                 "the ready line names the port the kernel shows (" + ready2 + ")");

    const ProcessResult listed = run_cli(programs, {"list"});
    std::vector<std::string> serials{"4AC1CC27", "4AC2CC27"};
    if (client_number("4AC2CC27") < client_number("4AC1CC27"))
        std::swap(serials[0], serials[1]);
    const std::string expected = list_line(serials[0]) + list_line(serials[1]);
    report.check(listed.status == 0 && listed.out == expected, "list finds both:\n" + expected);
    if (listed.out != expected)
        detail(report, "dialcraft-cli list", listed);

    const ProcessResult ambiguous = run_cli(programs, {"set", "5", "cc", "2", "74"});
    report.check(ambiguous.status == 2 && ambiguous.out.empty(), "set without --serial among two exits 2");

    const ProcessResult set = run_cli(programs, {"set", "5", "cc", "2", "74", "--serial", "4AC2CC27"});
    const std::string set_line = ok_line(5, "Control Change, 通道(channel) 2, 控制器号(controller) 74", "4AC2CC27");
    report.check(set.status == 0 && set.out == set_line, "set --serial 4AC2CC27 prints " + set_line);
    if (set.out != set_line)
        detail(report, "dialcraft-cli set", set);

    const std::string programmed = controllers.wait_for_line("4AC2CC27 knob 5 = ", 5s);
    const std::string frame = "4AC2CC27 knob 5 = Control Change, channel 2, controller 74; 间隔(gaps) ";
    report.check(programmed.rfind(frame, 0) == 0,
                 "the virtual controller prints \"" + frame + "...\" (got \"" + programmed + "\")");
    // The four gaps between the frame's messages, each at least 8 ms.
    std::vector<ReceivedMessage> times;
    if (programmed.rfind(frame, 0) == 0) {
        std::string gaps = programmed.substr(frame.size());
        int64_t at = 0;
        times.push_back({at, {}});
        for (char* p = gaps.data(); *p;) {
            char* end = nullptr;
            const double ms = std::strtod(p, &end);
            if (end == p)
                break;
            at += static_cast<int64_t>(ms * 1e6);
            times.push_back({at, {}});
            p = end;
            while (*p == ',' || *p == ' ')
                ++p;
        }
        report.check(times.size() == 5, "four gaps are printed");
        report.report_arrival_gaps(times);
    }
    for (const std::string& line : controllers.lines())
        report.check(line.rfind("4AC1CC27 knob", 0) != 0, "4AC1CC27 was not programmed (" + line + ")");

    controllers.write_line("table");
    report.check(controllers.wait_for_line("4AC1CC27: ", 3s) == "4AC1CC27: 尚未设置旋钮(no knob programmed yet)",
                 "table: 4AC1CC27 has no knob");
    report.check(controllers.wait_for_line("4AC2CC27 ", 3s) ==
                     "4AC2CC27 knob 5 = Control Change, channel 2, controller 74",
                 "table: 4AC2CC27 knob 5 = Control Change, channel 2, controller 74");

    // The link connects 4AC2CC27's source to its input port, as the window
    // does; a turn of knob 5 must arrive there as B1 4A 40.
    midi_init();
    report.check(set_device_name(0x4AC2CC27) != midi_no_match, "the link connects 4AC2CC27's source");
    ConsoleCapture capture;
    controllers.write_line("turn 5 64 4AC2CC27");
    const std::string turned = controllers.wait_for_line("4AC2CC27 knob 5 转到(turned to) 64", 3s);
    const bool arrived = capture.wait_for_line("b1\t4a\t40\t\r\n", 5s);
    const std::string printed = capture.finish();
    report.check(turned == "4AC2CC27 knob 5 转到(turned to) 64: 已发送(sent) b1 4a 40",
                 "the virtual controller sends b1 4a 40 (" + turned + ")");
    report.check(arrived && count_lines(printed, "b1\t4a\t40\t\r\n") == 1,
                 "MyReadProc prints \"b1\\t4a\\t40\\t\\r\\n\" once");
    midi_exit();

    report.check(controllers.stop() == 0, "the virtual controller ends at the end of its input with status 0");
    if (report.failed()) {
        std::string text;
        for (const std::string& line : controllers.lines())
            text += line + "\n";
        report.detail("virtual controller output", text);
    }
    return report.finish();
}

int ledger_scenario(const TestBed& bed, const Programs& programs)
{
    ScenarioReport report("11", "dialcraft-cli set on 4AC3CC27, show --controller, apply --changed sends nothing");
    UsbGadget gadget("4AC3CC27", 0x4AC3, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC3CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    const ProcessResult set = run_cli(programs, {"set", "5", "cc", "2", "74"});
    const std::string set_line = ok_line(5, "Control Change, 通道(channel) 2, 控制器号(controller) 74", "4AC3CC27");
    report.check(set.status == 0 && set.out == set_line, "set 5 cc 2 74 prints " + set_line);
    if (set.out != set_line)
        detail(report, "dialcraft-cli set", set);
    const std::string knob5 = "knob 5 = Control Change, channel 2, controller 74";
    report.check(emulator.wait_for_line(knob5, 5s), "the controller decoded " + knob5);

    // The row of knob 5 names what the controller holds and when it was written.
    const ProcessResult shown = run_cli(programs, {"show", "--controller", "4AC3CC27"});
    std::string row;
    for (const std::string& line : printed_lines(shown.out))
        if (line.rfind("5 ", 0) == 0)
            row = line;
    const size_t held = row.find("Control Change, 2, 74  ");
    report.check(shown.status == 0 && held != std::string::npos,
                 "show --controller 4AC3CC27 has knob 5 held as Control Change, 2, 74 (" + row + ")");
    if (held != std::string::npos) {
        const std::string written = row.substr(held + 23, 20);
        report.check(written.size() == 20 && written[10] == 'T' && written[19] == 'Z',
                     "with the time it was written, in UTC (" + written + ")");
    }
    const ProcessResult json = run_cli(programs, {"show", "--controller", "4AC3CC27", "--json"});
    report.check(json.status == 0 && json.out.find("\"held\":{\"channel\":2,\"controller\":74,"
                                                   "\"type\":\"Control Change\",\"written\":\"") != std::string::npos,
                 "show --controller --json holds knob 5");
    if (report.failed())
        detail(report, "dialcraft-cli show --controller 4AC3CC27", shown);

    // A file that sets knob 5 to what the controller already holds.
    std::vector<std::string> slot_texts(90, std::string(20, ' '));
    slot_texts[15] = "Control Change";
    slot_texts[16] = "2";
    slot_texts[17] = "74";
    const std::string path = bed.file("knob5.txt");
    {
        std::ofstream file(path, std::ios::binary);
        for (size_t i = 0; i < slot_texts.size(); ++i)
            file << (i ? "\n" : "") << slot_texts[i];
    }
    const ProcessResult changed = run_cli(programs, {"apply", path, "--changed"});
    const std::string summary = "已设置(programmed) 0, 失败(failed) 0, 跳过(skipped) 26, 已相同(unchanged) 1\n";
    report.check(changed.status == 0 && changed.out == summary, "apply --changed prints " + summary);
    if (changed.out != summary)
        detail(report, "dialcraft-cli apply --changed", changed);

    // Knob 6 afterwards: its frame must follow knob 5's directly, so nothing
    // was sent in between.
    const ProcessResult six = run_cli(programs, {"set", "6", "note-on", "1", "60"});
    report.check(six.status == 0, "set 6 note-on 1 60 exits 0");
    const std::string knob6 = "knob 6 = Note On, channel 1, controller 60";
    report.check(emulator.wait_for_line(knob6, 5s), "the controller decoded " + knob6);
    const std::vector<std::vector<uint8_t>> wire{{0xF8}, {0x91, 74, 5}, {0x81, 74, 5}, {0xB1, 74, 5}, {0xF8},
                                                 {0xF8}, {0x90, 60, 6}, {0x80, 60, 6}, {0x90, 60, 6}, {0xF8}};
    std::vector<std::vector<uint8_t>> bytes;
    for (const ReceivedMessage& message : emulator.received())
        bytes.push_back(message.bytes);
    report.check(bytes == wire, "the controller received knob 5's and knob 6's messages only:" + hex_messages(wire) +
                                    "\n  got:" + hex_messages(bytes));
    return report.finish();
}

// Runs dialcraft-cli verify, with the controller sending `hex` every 100 ms
// until verify answers (it listens only once it has started); returns its
// line and exit status.
ProcessResult verify_while_sending(const Programs& programs, EmulatedController& emulator, const std::string& hex)
{
    InteractiveProcess verify;
    ProcessResult result;
    if (!verify.start({programs.cli, "verify", "5", "--timeout", "20"}))
        return result;
    for (int i = 0; i < 100 && result.out.empty(); ++i) {
        emulator.send(hex);
        result.out = verify.wait_for_line("旋钮(knob) 5: ", 100ms);
    }
    result.status = verify.stop();
    return result;
}

int monitor_scenario(const TestBed& bed, const Programs& programs)
{
    ScenarioReport report("12",
                          "verify 4AC3CC27 knob 5: new setting 0, old setting 1; a sweep of 1000 counted by monitor");
    UsbGadget gadget("4AC3CC27", 0x4AC3, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC3CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    const ProcessResult first = run_cli(programs, {"set", "5", "cc", "1", "10"});
    const ProcessResult second = run_cli(programs, {"set", "5", "cc", "2", "74"});
    report.check(first.status == 0 && second.status == 0, "set 5 cc 1 10, then set 5 cc 2 74, exit 0");
    report.check(emulator.wait_for_line("knob 5 = Control Change, channel 2, controller 74", 5s),
                 "the controller decoded knob 5 = Control Change, channel 2, controller 74");

    // A controller that kept the old setting: verify names it and exits 1.
    const ProcessResult old = verify_while_sending(programs, emulator, "b0 0a 10");
    const std::string old_line =
        "旋钮(knob) 5: 收到别的设置(a different setting arrived): Control Change  ch 1  #10  16  -> 未匹配(unmatched)";
    report.check(old.status == 1 && old.out == old_line, "the old setting: exit 1, \"" + old_line + "\" (got " +
                                                             std::to_string(old.status) + ", \"" + old.out + "\")");
    // The knob turned as programmed: verified, exit 0, and the ledger says so.
    const ProcessResult verified = verify_while_sending(programs, emulator, "b1 4a 40");
    const std::string verified_line =
        "旋钮(knob) 5: 已验证(verified) Control Change, 通道(channel) 2, 控制器号(controller) 74";
    report.check(verified.status == 0 && verified.out == verified_line,
                 "the new setting: exit 0, \"" + verified_line + "\" (got " + std::to_string(verified.status) + ", \"" +
                     verified.out + "\")");
    std::ifstream ledger(bed.work_dir + "/dialcraft/ledger.json");
    const std::string ledger_text((std::istreambuf_iterator<char>(ledger)), std::istreambuf_iterator<char>());
    report.check(ledger_text.find("\"verified\": \"") != std::string::npos, "the ledger records when it was verified");

    // A sweep of a thousand messages from a virtual controller, counted by
    // the monitor, which listens beside everything else.
    InteractiveProcess controller;
    report.check(controller.start({programs.virtual_controller, "4AC5CC27"}), "start dialcraft-virtual-controller");
    report.check(!controller.wait_for_line("4AC5CC27: 就绪(ready)", 10s).empty(), "the virtual controller is ready");
    const ProcessResult set = run_cli(programs, {"set", "5", "cc", "2", "74", "--serial", "4AC5CC27"});
    report.check(set.status == 0, "set 5 cc 2 74 --serial 4AC5CC27 exits 0");
    InteractiveProcess monitor;
    report.check(monitor.start({programs.cli, "monitor", "--serial", "4AC5CC27", "--count", "1000"}),
                 "start dialcraft-cli monitor --count 1000");
    report.check(wait_for_sequencer_port("MIDI Client monitor", "Monitor", 10s), "the monitor listens on its own port");
    controller.write_line("sweep 5 1000");
    const std::string swept = controller.wait_for_line("4AC5CC27 knob 5 扫过(swept)", 20s);
    report.check(swept == "4AC5CC27 knob 5 扫过(swept): 已发送(sent) 1000/1000", "the sweep sent 1000 (" + swept + ")");
    const int monitor_status = monitor.wait_for_exit(30s);
    const std::vector<std::string>& lines = monitor.lines();
    size_t matched = 0;
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string rest = "  4AC5CC27  Control Change  ch 2  #74  " + std::to_string(i % 128) + "  -> 5号旋钮";
        matched += lines[i].size() > 12 && lines[i].substr(12) == rest;
    }
    report.check(monitor_status == 0 && lines.size() == 1000 && matched == 1000,
                 "monitor --count 1000 printed the 1000 messages in order and ended with 0 (lines " +
                     std::to_string(lines.size()) + ", as expected " + std::to_string(matched) + ", exit " +
                     std::to_string(monitor_status) + ")");
    controller.stop();
    return report.finish();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <scenario 8|9|10|11|12> <controller_emulator> <work dir>\n", argv[0]);
        return 2;
    }
    const std::string id = argv[1];
    const TestBed bed{argv[2], argv[3]};
    const Programs programs = programs_beside(bed.emulator);
    // The tool's settings store lives in the scenario's own folder.
    setenv("HOME", bed.work_dir.c_str(), 1);
    setenv("XDG_CONFIG_HOME", bed.work_dir.c_str(), 1);
    arm_watchdog(id, 60);
    const AlsaLinkHost alsa;
    if (id == "8")
        return list_scenario(bed, programs);
    if (id == "9")
        return apply_scenario(bed, programs);
    if (id == "10")
        return virtual_controller_scenario(programs);
    if (id == "11")
        return ledger_scenario(bed, programs);
    if (id == "12")
        return monitor_scenario(bed, programs);
    std::fprintf(stderr, "unknown scenario %s\n", id.c_str());
    return 2;
}
