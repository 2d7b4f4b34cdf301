#pragma once
// Which controllers of the family (4AC0CC27 to 4ACFCC27) the MIDI service
// shows right now. Only reads the service: the link's target, flags and
// buffers are left as they are, and nothing is sent or printed.
#include <string>
#include <string_view>
#include <vector>

#include "midi/midi_host.h"

namespace dialcraft {

struct PresentController {
    std::string serial;     // "4AC3CC27"
    std::string address;    // where the service puts the port, "24:0" on ALSA
    std::string port_name;  // "4AC3CC27 MIDI 1"
};

// Whether the first eight characters of `name` are a serial of the family.
bool is_family_serial(std::string_view name);

// Every destination whose name begins with a family serial, in the
// service's order.
std::vector<PresentController> present_family_controllers(MidiHost& host);

}  // namespace dialcraft
