// A full press of knob 5's set button (Control Change, channel 2, controller
// 74) with the model menu on 4AC0CC27 and one controller 4AC3CC27 plugged:
// the action finds 4AC3CC27, switches the menu to it, programs it and reports
// success in fullText.
//   usb_set_press_scenario 2 <controller_emulator path> <work directory>
#include <QCoreApplication>

#include <cstdio>
#include <string>

#include "actions/set_action.h"
#include "alsa_link_host.h"
#include "console_capture.h"
#include "midi/midi_link.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "model/knob_record.h"
#include "scenario_steps.h"
#include "watchdog.h"

using namespace dialcraft;

namespace {

int set_press_scenario(const TestBed& bed)
{
    ScenarioReport report("2", "set press, menu 4AC0CC27, controller 4AC3CC27: programmed, menu switched");
    UsbGadget gadget("4AC3CC27", 0x4AC3, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC3CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc))
        return report.finish();

    GlobalState state;
    CreateSetupAreaViewData knob(5);
    knob.set_message_type_menu_string("Control Change");
    knob.set_message_channel_menu_string("2");
    knob.set_message_controller_number_code_string("74");
    report.check(state.machine_type_menu_string() == "4AC0CC27", "the menu starts on 4AC0CC27");

    midi_init();
    ConsoleCapture capture;
    SendClock clock;
    setup_button_action(knob, state);
    std::string printed = capture.finish();
    const std::vector<std::vector<uint8_t>>& sequence = knob5_cc_messages;
    check_sender_pacing(report, clock, sequence);

    bool ok = true;
    for (size_t i = 0; i < device_connect_state_retval.size(); ++i)
        ok &= report.check(device_connect_state_retval[i] == (i == 3 ? 1 : 0),
                           "probe result " + std::to_string(i) + " is " + (i == 3 ? "1" : "0"));
    ok &= report.check(count_lines(printed, "-3--set_device_name(0x4AC3CC27);\n") == 1,
                       "prints \"-3--set_device_name(0x4AC3CC27);\"");
    ok &= report.check(count_lines(printed, "4AC3CC27 MIDI 1 is online\r\n") == 2,
                       "the probe and the selection each print \"4AC3CC27 MIDI 1 is online\\r\\n\"");
    ok &= report.check(count_lines(printed, "midi init failed \r\n") == 15, "fifteen probes fail");
    ok &= report.check(count_lines(printed, "参数正确\n") == 1, "the parameter check passes");
    ok &= report.check(count_lines(printed, "CONTROL_CHANGE\n") == 1, "prints CONTROL_CHANGE");
    ok &= report.check(!printed_lines(printed).empty() && printed_lines(printed).back() == "0\n",
                       "the last line printed is the result 0");
    ok &= check_send_lines(report, printed, sequence);
    ok &= report.check(c_arg_transfer_UInt8_1 == 0x05 && c_arg_transfer_UInt8_2 == 0xB1 &&
                           c_arg_transfer_UInt8_3 == 0x4A && c_arg_transfer_UInt8_4 == 0x4A,
                       "the staged bytes are 05 B1 4A 4A");
    ok &= report.check(command_setup_succeed_flag == 0, "command_setup_succeed_flag is 0");
    ok &= report.check(state.machine_type_menu_string() == "4AC3CC27", "the menu switched to 4AC3CC27");
    ok &= report.check(state.fullText() == QString::fromUtf8("旋钮5-设置成功!"),
                       "fullText is 旋钮5-设置成功! (got " + state.fullText().toStdString() + ")");
    if (!ok)
        report.detail("output of the press", printed);

    check_programming_received(report, emulator, sequence, "knob 5 = Control Change, channel 2, controller 74");
    midi_exit();
    return report.finish();
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4 || std::string(argv[1]) != "2") {
        std::fprintf(stderr, "usage: %s 2 <controller_emulator> <work dir>\n", argv[0]);
        return 2;
    }
    QCoreApplication app(argc, argv);
    arm_watchdog(argv[1], 60);
    const AlsaLinkHost alsa;
    return set_press_scenario(TestBed{argv[2], argv[3]});
}
