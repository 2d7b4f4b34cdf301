#pragma once
// The MIDI link's printed lines for the common steps, to build expected output.
#include <string>

namespace dialcraft {

// One scan-only device pass over `devices` devices that finds the target.
inline std::string scan_lines(int devices)
{
    return "send_midi_out_data\r\n MIDIGetNumberOfDevices  " + std::to_string(devices) + "\r\nno macthing name B \r\n";
}

// One message that reaches destination 0, the only one, of a single device;
// `what` is the line that names the message.
inline std::string sent_lines(const std::string& what, const std::string& dest_prefix = "4AC1CC27")
{
    const std::string lookup = "MIDIGetNumberOfDestinations 1 \r\nCCCCC: " + dest_prefix + " is online\r\n";
    return "send_midi_out_data\r\n MIDIGetNumberOfDevices  1\r\nmidiOutShortMsg\r\n" + lookup + lookup + lookup +
           "midi_get_destination 0 \r\n" + what;
}

}  // namespace dialcraft
