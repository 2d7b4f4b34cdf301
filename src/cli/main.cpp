// dialcraft-cli: the knob table and the set action of dialcraft from the
// command line, on the ALSA sequencer.
#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "midi/host_selection.h"

int main(int argc, char** argv)
{
    const std::vector<std::string> args(argv + 1, argv + argc);
    return run_cli(args, midi_host(), std::cout, std::cerr, isatty(STDERR_FILENO) == 1);
}
