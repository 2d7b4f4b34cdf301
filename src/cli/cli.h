#pragma once
// dialcraft-cli: lists the controllers, programs knobs through the window's
// set action, and shows, exports and imports the stored knob table, from the
// command line. The whole tool is this one function, so tests run it in the
// test process against a simulated MIDI service.
#include <iosfwd>
#include <string>
#include <vector>

namespace dialcraft {

class MidiHost;

// Exit statuses.
inline constexpr int cli_success = 0;
inline constexpr int cli_failed = 1;            // a knob failed, nothing was sent, a file was not written
inline constexpr int cli_usage_error = 2;       // bad arguments: nothing sent, the store untouched
inline constexpr int cli_no_controller = 3;     // no controller to list or program
inline constexpr int cli_no_sequencer = 4;      // the ALSA sequencer itself is missing
inline constexpr int cli_verify_timed_out = 4;  // verify: nothing from the knob in time

// Runs one command. `args` are the arguments after the program's name.
// Results go to `out`; warnings, errors and the progress bar to `err`. The
// link's and the model's diagnostic lines are swallowed, or written to `err`
// with --verbose. The MIDI link talks to `host` during the call and to the
// platform's own service afterwards. The progress bar of `apply` is drawn only
// when `err_is_terminal`.
int run_cli(const std::vector<std::string>& args, MidiHost& host, std::ostream& out, std::ostream& err,
            bool err_is_terminal = false);

}  // namespace dialcraft
