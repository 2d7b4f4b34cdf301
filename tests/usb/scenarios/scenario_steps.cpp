#include "scenario_steps.h"

#include <chrono>
#include <cstdio>
#include <thread>

#include "console_capture.h"
#include "midi/midi_link.h"
#include "sequencer_clients.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {
std::string format(const char* pattern, unsigned a, unsigned b = 0, unsigned c = 0)
{
    char text[128];
    std::snprintf(text, sizeof text, pattern, a, b, c);
    return text;
}

// The lines the link prints for the packets it sends, in order.
std::vector<std::string> send_lines(const std::string& printed)
{
    std::vector<std::string> lines;
    for (const std::string& line : printed_lines(printed))
        if (line.rfind("MSG: ", 0) == 0 || line == "clock mc\r\n")
            lines.push_back(line);
    return lines;
}

std::vector<std::string> expected_send_lines(const std::vector<std::vector<uint8_t>>& messages)
{
    std::vector<std::string> lines;
    for (const auto& m : messages) {
        if (m.size() == 1)
            lines.push_back("clock mc\r\n");
        else
            lines.push_back(format("MSG: %x %x %x \r\n", m[0], m[1], m[2]));
    }
    return lines;
}

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& l : lines)
        text += (text.empty() ? "\"" : " \"") + l + "\"";
    return text;
}

std::string log_text(const EmulatedController& emulator)
{
    std::string text;
    for (const std::string& line : emulator.log_lines())
        text += line + "\n";
    return text;
}
}  // namespace

std::string hex_messages(const std::vector<std::vector<uint8_t>>& messages)
{
    std::string text;
    for (const auto& m : messages) {
        if (!text.empty())
            text += " |";
        for (uint8_t b : m)
            text += format(" %02X", b);
    }
    return text;
}

bool plug_controller(ScenarioReport& report, UsbGadget& gadget, EmulatedController& emulator, const std::string& udc)
{
    const std::string& serial = gadget.serial();
    bool done = gadget.create();
    if (!report.check(done, "create gadget " + serial + ": " + gadget.error()))
        return false;
    done = gadget.plug(udc);
    if (!report.check(done, "plug " + serial + " into " + udc + ": " + gadget.error()))
        return false;
    done = emulator.start(gadget.rawmidi_device(), 5s);
    if (!report.check(done, "start the emulator of " + serial + ": " + emulator.error()))
        return false;
    return report.check(wait_for_sequencer_port(serial, serial + " MIDI 1", 15s),
                        "the host shows the sequencer port \"" + serial + " MIDI 1\"");
}

FamilyProbe probe_family()
{
    FamilyProbe probe;
    for (unsigned i = 0; i < 16; ++i) {
        ConsoleCapture capture;
        probe.answers[i] = judge_device_connect_state_with_id(0x4AC0CC27u + (i << 16));
        probe.output[i] = capture.finish();
    }
    return probe;
}

void check_family_probe(ScenarioReport& report, const FamilyProbe& probe, const std::vector<int>& online)
{
    for (unsigned i = 0; i < 16; ++i) {
        bool expected_online = false;
        for (int o : online)
            expected_online = expected_online || static_cast<unsigned>(o) == i;
        std::string serial = format("4AC%XCC27", i);
        const std::string& out = probe.output[i];
        bool ok = true;
        ok &= report.check(count_lines(out, format("set_device_name %x \r\n", 0x4AC0CC27u + (i << 16))) == 1,
                           "probe " + serial + " prints its set_device_name line once");
        if (expected_online) {
            ok &= report.check(probe.answers[i] == 1, "probe " + serial + " answers 1");
            ok &= report.check(count_lines(out, serial + " MIDI 1 is online\r\n") == 1,
                               "probe " + serial + " prints \"" + serial + " MIDI 1 is online\\r\\n\"");
            ok &= report.check(count_lines(out, "midi init failed \r\n") == 0,
                               "probe " + serial + " does not print \"midi init failed\"");
        } else {
            ok &= report.check(probe.answers[i] == 0, "probe " + serial + " answers 0");
            ok &= report.check(count_lines(out, "midi init failed \r\n") == 1,
                               "probe " + serial + " prints \"midi init failed \\r\\n\"");
            ok &= report.check(out.find(" is online\r\n") == std::string::npos,
                               "probe " + serial + " prints no online line");
        }
        if (!ok)
            report.detail("output of probe " + serial, out);
    }
}

bool check_send_lines(ScenarioReport& report, const std::string& printed,
                      const std::vector<std::vector<uint8_t>>& messages)
{
    std::vector<std::string> expected = expected_send_lines(messages);
    return report.check(send_lines(printed) == expected, "the link prints the send lines " + joined(expected));
}

bool check_programming_received(ScenarioReport& report, const EmulatedController& emulator,
                                const std::vector<std::vector<uint8_t>>& messages, const std::string& frame)
{
    bool framed = emulator.wait_for_line("knob ", 5s);
    // Anything arriving after the frame would be a stray extra message.
    std::this_thread::sleep_for(200ms);
    std::vector<ReceivedMessage> received = emulator.received();
    std::vector<std::vector<uint8_t>> bytes;
    for (const ReceivedMessage& m : received)
        bytes.push_back(m.bytes);
    bool ok = report.check(framed, "the controller decodes a programming frame");
    ok &= report.check(bytes == messages, "the controller receives exactly" + hex_messages(messages) + " (got" +
                                              hex_messages(bytes) + ")");
    ok &= report.check(emulator.programmed() == std::vector<std::string>{frame},
                       "the controller logs \"" + frame + "\"");
    if (bytes == messages)
        report.report_arrival_gaps(received);
    if (!ok)
        report.detail("emulator log " + emulator.log_path(), log_text(emulator));
    return ok;
}

void check_sender_pacing(ScenarioReport& report, const SendClock& clock,
                         const std::vector<std::vector<uint8_t>>& messages)
{
    if (report.check(clock.accepted().size() == messages.size(), "the service accepted " +
                                                                     std::to_string(messages.size()) + " sends (got " +
                                                                     std::to_string(clock.accepted().size()) + ")"))
        report.check_send_gaps(clock.accepted());
}

void program_knob(ScenarioReport& report, EmulatedController& emulator, const KnobRequest& request)
{
    ConsoleCapture capture;
    SendClock clock;
    uint8_t result = usb_midi_main(request.knob, static_cast<int8_t>(request.type_channel), request.controller,
                                   request.controller);
    std::string printed = capture.finish();
    check_sender_pacing(report, clock, request.expected_messages);

    bool ok = report.check(result == 0, "usb_midi_main returns 0 (got " + std::to_string(result) + ")");
    ok &= check_send_lines(report, printed, request.expected_messages);
    if (!ok)
        report.detail("link output of usb_midi_main", printed);
    check_programming_received(report, emulator, request.expected_messages, request.expected_frame);
}

void check_received_nothing(ScenarioReport& report, const EmulatedController& emulator, const std::string& who)
{
    std::this_thread::sleep_for(200ms);
    if (!report.check(emulator.received().empty(), who + " receives nothing"))
        report.detail("emulator log " + emulator.log_path(), log_text(emulator));
}
