// The MIDI client, its two ports, and the source and destination of the
// target controller.
#include <cstring>

#include "base/console.h"
#include "midi/link_properties.h"
#include "midi/midi_link.h"

namespace dialcraft {

MidiObjectRef client;
MidiObjectRef gOutPort;
MidiObjectRef inPort;
MidiObjectRef gDest;
char jname[64];
char name[64];
char manuf[64];
char model[64];
char offline_flag[64];
uint8_t midiout_databuffer[64];

namespace {
// Receives one string property at a time; cleared again once copied.
char pname[64];
}  // namespace

bool copy_string_property(MidiObjectRef obj, MidiStringProperty prop, char (&target)[64])
{
    if (midi_host().get_string_property(obj, prop, pname, sizeof pname) != 0)
        return false;
    // Like a C-string copy: bytes after the terminator keep their old text.
    std::memcpy(target, pname, std::strlen(pname) + 1);
    std::memset(pname, 0, sizeof pname);
    return true;
}

MidiStatus midi_init()
{
    client = 0;
    inPort = 0;
    gOutPort = 0;
    gDest = 0;
    for (char* buffer : {name, manuf, model, offline_flag, jname})
        std::memset(buffer, 0, 64);
    std::memset(midiout_databuffer, 0, sizeof midiout_databuffer);

    MidiHost& host = midi_host();
    // The first two statuses are not checked; the input port's is returned.
    host.client_create("MIDI Client", &client);
    host.output_port_create(client, "Output port", &gOutPort);
    return host.input_port_create(client, "Input port", MyReadProc, nullptr, &inPort);
}

MidiStatus midi_exit()
{
    console_printf("midi_exit\r\n");
    MidiHost& host = midi_host();
    MidiStatus status = host.client_dispose(client);
    status = host.port_dispose(gOutPort);
    status = host.port_dispose(inPort);
    return status;
}

void MyReadProc(const MidiPacketList* list, void*, void*)
{
    const MidiPacket* packet = &list->packet[0];
    for (uint32_t i = 0; i < list->numPackets; ++i) {
        // One write per packet line, so it never tears another thread's line.
        char line[sizeof packet->data * 3 + 3];
        size_t used = 0;
        for (uint16_t b = 0; b < packet->length; ++b)
            used += static_cast<size_t>(std::snprintf(line + used, sizeof line - used, "%x\t", packet->data[b]));
        std::memcpy(line + used, "\r\n", 3);
        console_printf("%s", line);
        packet = midi_packet_next(packet);
    }
}

uint32_t midi_source_connect()
{
    MidiHost& host = midi_host();
    const size_t n = host.number_of_sources();
    console_printf("MIDIGetNumberOfSources %x \r\n", static_cast<unsigned>(n));
    uint32_t found = midi_no_match;
    for (size_t i = 0; i < n; ++i) {
        MidiObjectRef source = host.get_source(i);
        // Every source is detached first, matching or not.
        host.port_disconnect_source(gOutPort, source);
        host.port_disconnect_source(inPort, source);
        copy_string_property(source, MidiStringProperty::name, jname);
        jname[8] = 0;
        if (matches_device_name(jname))
            found = static_cast<uint32_t>(i);  // the last match wins
    }
    if (found == midi_no_match) {
        console_printf("midi init failed \r\n");
        realtime_connect_state_flag = 0;
        return midi_no_match;
    }

    console_printf("midi init success ,number code %x \r\n", found);
    MidiObjectRef source = host.get_source(found);
    copy_string_property(source, MidiStringProperty::name, jname);  // whole name for the status line
    // Attaching to the output port as well is deliberate; its status does not matter.
    host.port_connect_source(gOutPort, source, nullptr);
    host.port_connect_source(inPort, source, nullptr);
    int32_t offline = 0;
    host.get_integer_property(source, MidiIntegerProperty::offline, &offline);
    if (offline != 1) {
        console_printf("%s is online\r\n", jname);
        realtime_connect_state_flag = 1;
    } else {
        console_printf("%s is offline\r\n", jname);
        realtime_connect_state_flag = 0;
    }
    return found;
}

uint32_t midi_get_destination()
{
    MidiHost& host = midi_host();
    const size_t n = host.number_of_destinations();
    console_printf("MIDIGetNumberOfDestinations %x \r\n", static_cast<unsigned>(n));
    if (n == 0)
        return midi_no_match;
    uint32_t found = midi_no_match;
    for (size_t i = 0; i < n; ++i) {
        MidiObjectRef destination = host.get_destination(i);
        copy_string_property(destination, MidiStringProperty::name, jname);
        jname[8] = 0;
        if (matches_device_name(jname))
            found = static_cast<uint32_t>(i);
    }
    // The status line reads one past the last destination: the service has no
    // such object, so the name stays the last one read and the offline value
    // stays as initialised. It is diagnostic only.
    MidiObjectRef past_end = host.get_destination(n);
    copy_string_property(past_end, MidiStringProperty::name, jname);
    int32_t offline = 0;
    host.get_integer_property(past_end, MidiIntegerProperty::offline, &offline);
    if (offline == 1)
        console_printf("AAAAA: %s is offline\r\n", jname);
    else
        console_printf("CCCCC: %s is online\r\n", jname);
    return found;
}

}  // namespace dialcraft
