// Runs one scenario of the emulated-controller test bed inside the test VM:
//   usb_link_scenarios <scenario> <controller_emulator path> <work directory>
#include <cstdio>
#include <string>

#include "alsa_link_host.h"
#include "link_scenarios.h"
#include "watchdog.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <scenario 1|3|4|5|6|7> <controller_emulator> <work dir>\n", argv[0]);
        return 2;
    }
    const std::string id = argv[1];
    TestBed bed{argv[2], argv[3]};
    const AlsaLinkHost alsa;
    arm_watchdog(id, 60);
    if (id == "1")
        return one_controller_scenario(bed);
    if (id == "3")
        return two_controllers_scenario(bed);
    if (id == "4")
        return knob_turn_scenario(bed);
    if (id == "5")
        return unplug_scenario(bed);
    if (id == "6")
        return no_controller_scenario(bed);
    if (id == "7")
        return other_family_scenario(bed);
    std::fprintf(stderr, "unknown scenario %s\n", id.c_str());
    return 2;
}
