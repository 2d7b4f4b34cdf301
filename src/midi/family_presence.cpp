#include "midi/family_presence.h"

namespace dialcraft {

namespace {

bool is_upper_hex_digit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

std::string read_string(MidiHost& host, MidiObjectRef obj, MidiStringProperty prop)
{
    char buffer[64] = {};
    if (host.get_string_property(obj, prop, buffer, sizeof buffer) != 0)
        return {};
    return buffer;
}

}  // namespace

bool is_family_serial(std::string_view name)
{
    // "4AC%XCC27": one upper-case hexadecimal digit in the middle.
    return name.size() >= 8 && name.substr(0, 3) == "4AC" && is_upper_hex_digit(name[3]) && name.substr(4, 4) == "CC27";
}

std::vector<PresentController> present_family_controllers(MidiHost& host)
{
    std::vector<PresentController> found;
    const size_t count = host.number_of_destinations();
    for (size_t i = 0; i < count; ++i) {
        const MidiObjectRef destination = host.get_destination(i);
        if (destination == 0)
            continue;
        std::string port_name = read_string(host, destination, MidiStringProperty::name);
        if (!is_family_serial(port_name))
            continue;
        found.push_back(PresentController{port_name.substr(0, 8),
                                          read_string(host, destination, MidiStringProperty::address),
                                          std::move(port_name)});
    }
    return found;
}

}  // namespace dialcraft
