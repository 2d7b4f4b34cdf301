#pragma once
// The commands of dialcraft-cli: what each accepts, its help text and the
// function that runs it.
#include <iosfwd>
#include <span>
#include <string_view>

namespace dialcraft {

class CliConsole;
class MidiHost;
struct CliRequest;

struct CliContext {
    const CliRequest& request;
    MidiHost& host;
    std::ostream& out;
    CliConsole& console;
    bool err_is_terminal;
};

struct CliCommand {
    std::string_view name;
    int min_operands;
    int max_operands;
    bool takes_serial;
    bool takes_json;
    bool takes_controller;  // --controller SERIAL
    bool takes_changed;     // --changed
    std::string_view help;  // the whole text of `dialcraft-cli <name> --help`
    int (*run)(const CliContext& context);
    bool takes_count = false;    // --count N
    bool takes_timeout = false;  // --timeout SECONDS
};

std::span<const CliCommand> cli_commands();
const CliCommand* find_cli_command(std::string_view name);
// The text of `dialcraft-cli --help`.
std::string_view cli_general_help();

int run_list(const CliContext& context);
int run_set(const CliContext& context);
int run_apply(const CliContext& context);
int run_show(const CliContext& context);
int run_export(const CliContext& context);
int run_import(const CliContext& context);
int run_monitor(const CliContext& context);
int run_verify(const CliContext& context);

}  // namespace dialcraft
