// dialcraft-cli: the knob table and the set action of dialcraft from the
// command line, on the ALSA sequencer.
#include <unistd.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "base/program_version.h"
#include "cli/cli.h"
#include "midi/alsa/alsa_midi_host.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (asks_version(argc, argv)) {
        std::cout << version_line("dialcraft-cli");
        return std::cout.flush() ? 0 : 1;
    }
    const std::vector<std::string> args(argv + 1, argv + argc);
    const std::unique_ptr<MidiHost> alsa = make_alsa_midi_host();
    return run_cli(args, *alsa, std::cout, std::cerr, isatty(STDERR_FILENO) == 1);
}
