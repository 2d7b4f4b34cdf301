// A controller 4AC1CC27 is programmed, unplugged, and a different one,
// 4AC2CC27, is plugged into the same port, where it gets the same sound card
// number and sequencer client id. Nothing kept about the first may show: the
// probes see only 4AC2CC27, the scan reads its name, model and manufacturer,
// and it is programmed.
#include <chrono>
#include <cstring>
#include <string>

#include "alsa_scenarios.h"
#include "midi/midi_link.h"
#include "scenario_steps.h"
#include "sequencer_clients.h"

using namespace dialcraft;

using namespace std::chrono_literals;

namespace {
struct Seat {
    int card = -1;
    int client = -1;
};

Seat seat_of(const std::string& serial)
{
    return Seat{sound_card_number(" " + serial + " at usb-"), sequencer_client_number(serial)};
}

// The device the host lists as sequencer client `client`, or 0.
MidiObjectRef device_of_client(int client)
{
    MidiHost& host = midi_host();
    const size_t n = host.number_of_devices();
    for (size_t i = 0; i < n; ++i) {
        const MidiObjectRef device = host.get_device(i);
        char address[64] = {};
        if (host.get_string_property(device, MidiStringProperty::address, address, sizeof address) == 0 &&
            address == std::to_string(client))
            return device;
    }
    return 0;
}

std::string property(MidiObjectRef object, MidiStringProperty prop)
{
    char text[64] = {};
    if (midi_host().get_string_property(object, prop, text, sizeof text) != 0)
        return "(absent)";
    return text;
}
}  // namespace

int replug_other_serial_scenario(const TestBed& bed)
{
    ScenarioReport report("22", "4AC1CC27 replaced by 4AC2CC27 on the same card and client id: new names seen");
    const std::vector<std::vector<uint8_t>>& first_sequence = knob5_cc_messages;
    Seat first_seat;
    {
        UsbGadget gadget("4AC1CC27", 0x4AC1, 0xCC27);
        EmulatedController emulator(bed.emulator, bed.file("4AC1CC27.log"));
        if (!plug_controller(report, gadget, emulator, first_udc))
            return report.finish();
        first_seat = seat_of("4AC1CC27");
        report.check(first_seat.card >= 0 && first_seat.client >= 0, "the kernel shows 4AC1CC27's card and client");

        midi_init();
        check_family_probe(report, probe_family(), {1});
        report.check(set_device_name(0x4AC1CC27) != midi_no_match, "set_device_name(0x4AC1CC27) finds the source");
        // The scans read (and keep) the first controller's card names.
        program_knob(report, emulator,
                     {5, 0xB1, 74, first_sequence, "knob 5 = Control Change, channel 2, controller 74"});
        report.check(property(device_of_client(first_seat.client), MidiStringProperty::model) == "4AC1CC27",
                     "the host reads the model 4AC1CC27");

        report.check(gadget.unplug(), "unplug 4AC1CC27: " + gadget.error());
        report.check(wait_for_client_gone("4AC1CC27", 10s), "the host drops the sequencer client 4AC1CC27");
        report.check(emulator.wait_for_exit(5s), "the emulator of 4AC1CC27 ends");
    }

    UsbGadget gadget("4AC2CC27", 0x4AC2, 0xCC27);
    EmulatedController emulator(bed.emulator, bed.file("4AC2CC27.log"));
    if (!plug_controller(report, gadget, emulator, first_udc)) {
        midi_exit();
        return report.finish();
    }
    const Seat seat = seat_of("4AC2CC27");
    report.check(seat.card == first_seat.card && seat.client == first_seat.client,
                 "4AC2CC27 takes the same card " + std::to_string(first_seat.card) + " and client " +
                     std::to_string(first_seat.client) + " (got card " + std::to_string(seat.card) + ", client " +
                     std::to_string(seat.client) + ")");

    check_family_probe(report, probe_family(), {2});
    report.check(set_device_name(0x4AC2CC27) != midi_no_match, "set_device_name(0x4AC2CC27) finds the source");
    program_knob(report, emulator,
                 {7,
                  0xB2,
                  20,
                  {{0xF8}, {0x92, 0x14, 0x07}, {0x82, 0x14, 0x07}, {0xB2, 0x14, 0x07}, {0xF8}},
                  "knob 7 = Control Change, channel 3, controller 20"});
    // The scan's last device read is the controller it sent to.
    report.check(std::strcmp(name, "4AC2CC27") == 0, std::string("the scan read the name 4AC2CC27 (got ") + name + ")");
    report.check(std::strcmp(model, "4AC2CC27") == 0,
                 std::string("the scan read the model 4AC2CC27 (got ") + model + ")");
    report.check(std::strcmp(manuf, "dialcraft test bed") == 0,
                 std::string("the scan read the manufacturer \"dialcraft test bed\" (got ") + manuf + ")");
    const MidiObjectRef device = device_of_client(seat.client);
    report.check(property(device, MidiStringProperty::name) == "4AC2CC27" &&
                     property(device, MidiStringProperty::model) == "4AC2CC27",
                 "the host names client " + std::to_string(seat.client) + " 4AC2CC27, model 4AC2CC27 (got " +
                     property(device, MidiStringProperty::name) + ", " + property(device, MidiStringProperty::model) +
                     ")");
    midi_exit();
    return report.finish();
}
