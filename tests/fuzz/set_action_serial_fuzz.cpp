// One press of knob 5's set button with the model menu holding the text of
// the input, against the simulated MIDI service, the 8 ms pauses skipped.
// The first byte picks the service: no devices at all, two controllers of
// the family (4AC1CC27, 4ACACC27) beside another device, or exactly one
// (4AC5CC27). A reference predicts, from the menu text alone, which
// controller is chosen, the lines that say so, the bytes on the wire and the
// outcome text. The one menu text that is fatal by design ("4ACC27", whose
// affixes overlap) is left out.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>

#include <QString>

#include "actions/set_action.h"
#include "fuzz_check.h"
#include "midi/midi_link.h"
#include "midi/pace_sleep.h"
#include "midi/sim/sim_midi_host.h"
#include "model/global_state.h"

using namespace dialcraft;

namespace {

enum Service { no_devices, two_controllers, one_controller, service_count };

SimMidiHost hosts[service_count];
CollectedLines printed;

void plug(SimMidiHost& host, const std::string& serial)
{
    host.add_device(serial, "Maker", serial);
    host.add_source(serial + " MIDI 1");
    host.add_destination(serial + " MIDI 1");
}

void no_pause(unsigned) {}

int hex_digit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The middle digit a menu text names, if it names one: one optional sign,
// hexadecimal digits only, a value from 0 to 15 ("-0" is 0).
std::optional<unsigned> middle_digit(const QString& menu)
{
    if (!menu.startsWith(QLatin1String("4AC")) || !menu.endsWith(QLatin1String("CC27")))
        return std::nullopt;
    const std::string middle = menu.mid(3, menu.size() - 7).toStdString();
    size_t i = 0;
    bool negative = false;
    if (i < middle.size() && (middle[i] == '+' || middle[i] == '-'))
        negative = middle[i++] == '-';
    if (i == middle.size())
        return std::nullopt;
    unsigned value = 0;
    for (; i < middle.size(); ++i) {
        const int digit = hex_digit(middle[i]);
        if (digit < 0)
            return std::nullopt;
        value = std::min(value * 16 + unsigned(digit), 16u);
    }
    if (value > 15 || (negative && value != 0))
        return std::nullopt;
    return value;
}

std::string serial_of(unsigned digit)
{
    char text[16];
    std::snprintf(text, sizeof text, "4AC%XCC27", digit);
    return text;
}

size_t packets_to(const SimMidiHost& host, const std::string& serial)
{
    size_t count = 0;
    for (const auto& packet : host.sent())
        count += packet.destination == serial + " MIDI 1";
    return count;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    set_pace_sleep(no_pause);
    set_console_sink(&printed);
    hosts[two_controllers].add_device("Midi Through", "", "Midi Through");
    plug(hosts[two_controllers], "4AC1CC27");
    plug(hosts[two_controllers], "4ACACC27");
    plug(hosts[one_controller], "4AC5CC27");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const Service service = Service(data[0] % service_count);
    const QString menu = QString::fromUtf8(reinterpret_cast<const char*>(data) + 1, qsizetype(size) - 1);
    if (menu.startsWith(QLatin1String("4AC")) && menu.endsWith(QLatin1String("CC27")) && menu.size() < 7)
        return 0;

    SimMidiHost& host = hosts[service];
    set_midi_host(&host);
    host.clear_sent();
    midi_init();
    GlobalState state;
    CreateSetupAreaViewData& knob = *state.record(5);
    knob.set_message_type_menu_string(QStringLiteral("Control Change"));
    knob.set_message_channel_menu_string(QStringLiteral("2"));
    knob.set_message_controller_number_code_string(QStringLiteral("74"));
    state.set_machine_type_menu_string(menu);
    printed.clear();
    setup_button_action(knob, state);

    std::string chosen;
    if (service == one_controller) {
        chosen = "4AC5CC27";
        fuzz_require(state.machine_type_menu_string() == QLatin1String("4AC5CC27"), "menu follows the one controller");
        fuzz_require(printed.has_line("-5--set_device_name(0x4AC5CC27);"), "the one controller is named");
    } else if (const auto digit = middle_digit(menu)) {
        chosen = serial_of(*digit);
        fuzz_require(printed.has_line("User selected: " + menu.toStdString()), "the menu's choice is printed");
        fuzz_require(printed.has_line("set_device_name(0x" + chosen + ");"), "the menu's device code is printed");
        fuzz_require(state.machine_type_menu_string() == menu, "menu keeps its text");
    } else {
        // The last probe's target stays selected.
        chosen = "4ACFCC27";
        const bool affixes = menu.startsWith(QLatin1String("4AC")) && menu.endsWith(QLatin1String("CC27"));
        fuzz_require(printed.has_line(affixes ? "Error: Invalid middle hex value in machine type"
                                              : "Error: Invalid machine type selected"),
                     "a menu text naming no controller is reported");
        fuzz_require(printed.text().find("User selected: ") == std::string::npos, "no choice is printed");
        fuzz_require(state.machine_type_menu_string() == menu, "menu keeps its text");
    }
    fuzz_require(std::strcmp(device_name, chosen.c_str()) == 0, "the predicted controller is selected");

    const bool plugged = (service == two_controllers && (chosen == "4AC1CC27" || chosen == "4ACACC27")) ||
                         service == one_controller;
    fuzz_require(host.sent().size() == (plugged ? 5u : 0u), "five messages exactly when the chosen one is there");
    fuzz_require(packets_to(host, chosen) == host.sent().size(), "every message goes to the chosen controller");
    const bool succeeded = plugged || service == no_devices;
    const QString outcome = succeeded ? QStringLiteral("旋钮5-设置成功!")
                                      : QStringLiteral("旋钮5-设置失败..\n") + state.machine_type_menu_string();
    fuzz_require(state.fullText() == outcome, "the outcome text");
    midi_exit();
    set_midi_host(nullptr);
    return 0;
}
