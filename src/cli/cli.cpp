#include "cli/cli.h"

#include <QJsonObject>
#include <QString>

#include <ostream>
#include <sstream>

#include "cli/cli_arguments.h"
#include "cli/cli_commands.h"
#include "cli/cli_console.h"
#include "cli/cli_output.h"
#include "model/ledger_store.h"

namespace dialcraft {

namespace {

// --verbose is looked for before the arguments are checked, so that even a
// usage error leaves the console as asked.
bool asks_verbose(const std::vector<std::string>& args)
{
    for (const std::string& word : args)
        if (word == "--verbose")
            return true;
    return false;
}

bool asks_json(const std::vector<std::string>& args)
{
    for (const std::string& word : args)
        if (word == "--json")
            return true;
    return false;
}

// The command named on the line, if any, to name it in error messages even
// when the rest of the line does not parse.
std::string command_named(const std::vector<std::string>& args)
{
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "--serial" || args[i] == "--controller") {
            ++i;
            continue;
        }
        if (args[i].rfind("--", 0) == 0 || args[i] == "-h")
            continue;
        return find_cli_command(args[i]) ? args[i] : std::string();
    }
    return {};
}

int run_request(const std::vector<std::string>& args, MidiHost& host, std::ostream& out, CliConsole& console,
                bool err_is_terminal)
{
    try {
        const CliRequest request = parse_cli_arguments(args);
        if (request.help) {
            out << (request.command ? request.command->help : cli_general_help());
            out.flush();
            return cli_success;
        }
        const CliContext context{request, host, out, console, err_is_terminal};
        return request.command->run(context);
    } catch (const UsageError& error) {
        const std::string command = command_named(args);
        console.error_text((command.empty() ? "dialcraft-cli: " : "dialcraft-cli " + command + ": ") + error.what() +
                           "\n");
        return cli_usage_error;
    }
}

}  // namespace

int run_cli(const std::vector<std::string>& args, MidiHost& host, std::ostream& out, std::ostream& err,
            bool err_is_terminal)
{
    CliConsole console(err, asks_verbose(args));
    // The ledger's lines (an unreadable file moved aside, a failed write)
    // join the tool's own error output.
    const LedgerNoticeSink previous_sink = set_ledger_notice_sink(
        [&console](std::string_view line) { console.error_text(line); });
    const struct SinkBack {
        const LedgerNoticeSink& previous;
        ~SinkBack() { set_ledger_notice_sink(previous); }
    } sink_back{previous_sink};
    // A script reading JSON from a command that writes JSON gets JSON for a
    // failure too: when the command printed nothing, an object with the
    // error line and the exit status.
    const CliCommand* command = find_cli_command(command_named(args));
    if (!asks_json(args) || !command || !command->takes_json)
        return run_request(args, host, out, console, err_is_terminal);
    std::ostringstream results;
    const int status = run_request(args, host, results, console, err_is_terminal);
    if (results.str().empty() && status != cli_success)
        out << json_line(QJsonObject{{QStringLiteral("error"), QString::fromStdString(console.last_error())},
                                     {QStringLiteral("exit"), status},
                                     {QStringLiteral("ok"), false}});
    else
        out << results.str();
    out.flush();
    return status;
}

}  // namespace dialcraft
