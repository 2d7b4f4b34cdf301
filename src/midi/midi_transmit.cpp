// Short messages to the target controller and the knob programming sequence.
#include <sys/prctl.h>
#include <unistd.h>

#include "base/console.h"
#include "midi/link_properties.h"
#include "midi/midi_link.h"
#include "midi/pace_sleep.h"

namespace dialcraft {

namespace {

constexpr uint8_t clock_byte = 0xF8;
constexpr uint8_t scan_only = 0xFF;
// Paces every message for the controller; never remove or shorten it.
constexpr useconds_t pacing_us = 8000;

uint8_t u8(int8_t v)
{
    return static_cast<uint8_t>(v);
}

void sleep_with_usleep(unsigned microseconds)
{
    usleep(microseconds);
}

PaceSleep pace_sleep = sleep_with_usleep;

void pace()
{
    // The kernel's default 50 us timer slack would stretch every pause; the
    // pause itself is never shortened.
    thread_local const bool tight = prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL) == 0;
    (void)tight;
    pace_sleep(pacing_us);
}

}  // namespace

PaceSleep set_pace_sleep(PaceSleep sleep)
{
    const PaceSleep previous = pace_sleep;
    pace_sleep = sleep ? sleep : sleep_with_usleep;
    return previous;
}

uint8_t usb_midi_main(int8_t knob, int8_t type_channel, int8_t controller_a, int8_t controller_b)
{
    send_midi_out_data(scan_only, 15, 0, 0);
    return key_code_value_set(knob, type_channel, controller_a, controller_b);
}

uint8_t key_code_value_set(int8_t knob, int8_t type_channel, int8_t controller_a, int8_t controller_b)
{
    console_printf("key_code_value_set\r\n");
    send_midi_out_data(scan_only, 15, 0, 0);
    // Both controller bytes carry the same number; a mismatch is the caller's fault.
    if ((u8(controller_a) & 0x7F) != (u8(controller_b) & 0x7F))
        return 1;
    midiout_databuffer[61] = u8(type_channel);
    midiout_databuffer[62] = u8(controller_a);
    midiout_databuffer[63] = u8(controller_b);

    const uint8_t type = u8(type_channel) & 0xF0;
    const uint8_t channel = static_cast<uint8_t>((u8(type_channel) & 0x0F) + 1);
    const uint8_t d1 = u8(controller_b) & 0x7F;
    const uint8_t d2 = u8(knob) & 0x7F;

    // The controller learns the knob from this exact order: clock, note on,
    // note off, the chosen type, clock. All five are tried.
    uint8_t failures = 0;
    failures += send_midi_out_data(0xF0, 0, 0, 0) != 0;
    failures += send_midi_out_data(0x90, channel, d1, d2) != 0;
    failures += send_midi_out_data(0x80, channel, d1, d2) != 0;
    failures += send_midi_out_data(type, channel, d1, d2) != 0;
    failures += send_midi_out_data(0xF0, 0, 0, 0) != 0;
    return failures;
}

uint8_t send_midi_out_data(uint8_t status, uint8_t channel, uint8_t data1, uint8_t data2)
{
    pace();
    console_printf("send_midi_out_data\r\n");
    const uint32_t word = (static_cast<uint32_t>(data2) << 16) + (static_cast<uint32_t>(data1) << 8) +
                          ((status & 0xF0u) | ((channel - 1u) & 0x0Fu));

    MidiHost& host = midi_host();
    const size_t n = host.number_of_devices();
    console_printf(" MIDIGetNumberOfDevices  %x\r\n", static_cast<unsigned>(n));
    uint8_t result = 0;  // no devices at all counts as success
    for (size_t i = 0; i < n; ++i) {
        MidiObjectRef device = host.get_device(i);
        copy_string_property(device, MidiStringProperty::name, name);
        copy_string_property(device, MidiStringProperty::manufacturer, manuf);
        copy_string_property(device, MidiStringProperty::model, model);
        if (!midi_device_name_judge()) {
            result = 1;
            continue;
        }
        if (status == scan_only) {
            console_printf("no macthing name B \r\n");
            return 0;
        }
        console_printf("midiOutShortMsg\r\n");
        return midiOutShortMsg(status, word);
    }
    return result;
}

uint8_t midi_device_name_judge()
{
    int equal = 0;
    for (int k = 0; k < 8; ++k)
        equal += name[k] == model[k] && name[k] == device_name[k];
    return equal == 8 ? 1 : 0;
}

uint8_t midiOutShortMsg(uint8_t status, uint32_t word)
{
    return core_midi_send_msg(static_cast<uint8_t>((status & 0xF0) | (word & 0x0F)), static_cast<uint8_t>(word >> 8),
                              static_cast<uint8_t>(word >> 16));
}

uint8_t core_midi_send_msg(uint8_t status, uint8_t data1, uint8_t data2)
{
    alignas(8) uint8_t packet_buffer[1024];
    auto* list = reinterpret_cast<MidiPacketList*>(packet_buffer);
    MidiPacket* packet = midi_packet_list_init(list);
    const uint8_t message[3] = {status, data1, data2};

    MidiHost& host = midi_host();
    // The destination is looked up three times, each printing its own lines.
    MidiObjectRef destination = host.get_destination(midi_get_destination());
    if (midi_get_destination() == midi_no_match)
        return 1;
    console_printf("midi_get_destination %x \r\n", midi_get_destination());

    int32_t offline = 0;
    host.get_integer_property(destination, MidiIntegerProperty::offline, &offline);
    if (offline == 1) {
        console_printf("offline \r\n");
        return 1;
    }
    if ((status & 0xF0) == 0xF0) {
        console_printf("clock mc\r\n");
        packet = midi_packet_list_add(list, sizeof packet_buffer, packet, 0, 1, &clock_byte);
    } else {
        console_printf("MSG: %x %x %x \r\n", status, data1, data2);
        packet = midi_packet_list_add(list, sizeof packet_buffer, packet, 0, 3, message);
    }
    MidiStatus sent = 0;
    const MidiPacket* p = &list->packet[0];
    for (uint32_t i = 0; i < list->numPackets; ++i, p = midi_packet_next(p))
        sent = midi_host_send(gOutPort, destination, p->data, p->length);
    return static_cast<uint8_t>(sent & 0xFF);
}

}  // namespace dialcraft
