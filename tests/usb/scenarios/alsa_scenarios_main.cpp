// Runs one ALSA host scenario of the emulated-controller test bed inside the
// test VM:
//   usb_alsa_scenarios <scenario> <controller_emulator path> <work directory>
#include <cstdio>
#include <string>

#include "alsa_link_host.h"
#include "alsa_scenarios.h"
#include "watchdog.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: %s <scenario 21|22|23|24|25> <controller_emulator> <work dir>\n", argv[0]);
        return 2;
    }
    const std::string id = argv[1];
    TestBed bed{argv[2], argv[3]};
    const AlsaLinkHost alsa;
    arm_watchdog(id, 60);
    if (id == "21")
        return crowd_scenario(bed);
    if (id == "22")
        return replug_other_serial_scenario(bed);
    if (id == "23")
        return renamed_client_scenario(bed);
    if (id == "24")
        return client_count_benchmark(bed);
    if (id == "25")
        return watch_changes_scenario(bed);
    std::fprintf(stderr, "unknown scenario %s\n", id.c_str());
    return 2;
}
