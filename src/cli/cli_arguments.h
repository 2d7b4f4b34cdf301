#pragma once
// Reading the command line: the command, its operands and options, and the
// checks of each value a user types. Every bad argument becomes one
// UsageError naming the argument and what is accepted.
#include <QString>

#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace dialcraft {

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct CliCommand;

struct CliRequest {
    const CliCommand* command = nullptr;  // nullptr: no command, only --help
    std::vector<std::string> operands;
    std::optional<std::string> serial;      // --serial, checked and in upper case
    std::optional<std::string> controller;  // --controller: whose ledger to show or export, as --serial
    bool changed = false;                   // --changed: apply only what differs from the ledger
    std::optional<uint64_t> count;          // --count: how many messages to wait for, 1 or more
    std::optional<int> timeout_seconds;     // --timeout: how long to wait, 1 or more seconds
    bool json = false;
    bool verbose = false;
    bool help = false;
};

// Splits and checks the arguments against the commands' table; throws
// UsageError. Operand values are checked by the command itself.
CliRequest parse_cli_arguments(const std::vector<std::string>& args);

// The checks of typed values; each returns the value as the set action takes
// it or throws UsageError.
int knob_argument(const std::string& text);            // 0 to 26
QString type_argument(const std::string& text);        // one of the four display names
QString channel_argument(const std::string& text);     // 1 to 16, kept as typed
QString controller_argument(const std::string& text);  // 0 to 127, kept as typed
// 4AC0CC27 to 4ACFCC27, in upper case; `option` names it in the error.
std::string serial_argument(const std::string& option, const std::string& text);

// One line for the error stream: `<argument> "<value>" 无效(invalid); 可用(accepted): <accepted>`.
std::string invalid_value(const std::string& argument, const std::string& value, const std::string& accepted);

}  // namespace dialcraft
