#pragma once
// The command line of dialcraft-virtual-controller and the commands it reads
// on standard input, with the help text that describes both.
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dialcraft {

inline constexpr std::string_view default_controller_serial = "4AC1CC27";

struct ControllerArguments {
    std::vector<std::string> serials;  // upper case, no repeats; the default when none is given
    bool help = false;
};

// Text saying which argument is wrong and what is accepted, on failure.
std::variant<ControllerArguments, std::string> parse_controller_arguments(const std::vector<std::string>& args);

struct ControllerCommand {
    enum class Kind { nothing, turn, sweep, table, help, quit };
    Kind kind = Kind::nothing;
    int knob = 0;
    int value = 0;
    int count = 0;                      // sweep: how many messages
    std::optional<std::string> serial;  // the controller meant; the first one when absent
};

// One line of standard input. Text saying what is wrong, on failure.
std::variant<ControllerCommand, std::string> parse_controller_command(const std::string& line);

// The text of --help (the commands part is also the answer to `help`).
std::string_view controller_help();
std::string_view controller_commands_help();

}  // namespace dialcraft
