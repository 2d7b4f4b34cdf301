#include "cli/cli_arguments.h"

#include <algorithm>
#include <cctype>
#include <initializer_list>

#include "base/integer_text.h"
#include "cli/cli_commands.h"
#include "midi/family_presence.h"
#include "model/slot_mapping.h"
#include "model/vocabulary.h"

namespace dialcraft {

namespace {

std::string lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

std::string upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    return text;
}

std::string command_names()
{
    std::string names;
    for (const CliCommand& command : cli_commands()) {
        if (!names.empty())
            names += ", ";
        names += command.name;
    }
    return names;
}

std::string commands_taking(bool CliCommand::*flag)
{
    std::string names;
    for (const CliCommand& command : cli_commands()) {
        if (!(command.*flag))
            continue;
        if (!names.empty())
            names += ", ";
        names += command.name;
    }
    return names;
}

// Options are words beginning with "--", and -h; a word such as "-3" is an
// operand, so that a negative knob is reported as a knob out of range.
bool is_option(const std::string& word)
{
    return word.rfind("--", 0) == 0 || word == "-h";
}

// Which of `options`, options that take a value, `word` is ("--serial" or
// "--serial=X" for "--serial"), or nullptr.
const char* value_option(const std::string& word, std::initializer_list<const char*> options)
{
    for (const char* option : options) {
        const std::string_view name(option);
        if (word == name || (word.rfind(name, 0) == 0 && word.size() > name.size() && word[name.size()] == '='))
            return option;
    }
    return nullptr;
}

}  // namespace

std::string invalid_value(const std::string& argument, const std::string& value, const std::string& accepted)
{
    return argument + " \"" + value + "\" 无效(invalid); 可用(accepted): " + accepted;
}

CliRequest parse_cli_arguments(const std::vector<std::string>& args)
{
    CliRequest request;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& word = args[i];
        if (!is_option(word)) {
            if (request.command) {
                request.operands.push_back(word);
                continue;
            }
            request.command = find_cli_command(word);
            if (!request.command)
                throw UsageError(invalid_value("命令(command)", word, command_names()));
            continue;
        }
        if (word == "--help" || word == "-h") {
            request.help = true;
        } else if (word == "--json") {
            request.json = true;
        } else if (word == "--verbose") {
            request.verbose = true;
        } else if (word == "--changed") {
            request.changed = true;
        } else if (const char* option = value_option(word, {"--serial", "--controller"})) {
            std::string value;
            if (word == option) {
                if (i + 1 == args.size())
                    throw UsageError(std::string(option) +
                                     " 缺少型号(needs a serial); 可用(accepted): 4AC0CC27-4ACFCC27");
                value = args[++i];
            } else {
                value = word.substr(std::string_view(option).size() + 1);
            }
            std::optional<std::string>& field = std::string_view(option) == "--serial" ? request.serial
                                                                                       : request.controller;
            if (field)
                throw UsageError(std::string(option) + " 只能给一次(may be given once)");
            field = serial_argument(option, value);
        } else if (const char* option = value_option(word, {"--count", "--timeout"})) {
            const bool is_count = std::string_view(option) == "--count";
            std::string value;
            if (word == option) {
                if (i + 1 == args.size())
                    throw UsageError(std::string(option) + " 缺少数字(needs a number)");
                value = args[++i];
            } else {
                value = word.substr(std::string_view(option).size() + 1);
            }
            const std::optional<int64_t> number = parse_int64(value, 10);
            const int64_t high = is_count ? 1'000'000'000 : 86'400;
            if (!number || *number < 1 || *number > high)
                throw UsageError(invalid_value(option, value, is_count ? "1-1000000000" : "1-86400"));
            if (is_count)
                request.count = static_cast<uint64_t>(*number);
            else
                request.timeout_seconds = static_cast<int>(*number);
        } else {
            throw UsageError(invalid_value("选项(option)", word,
                                           "--json, --verbose, --serial SERIAL, --controller SERIAL, --changed, "
                                           "--count N, --timeout SECONDS, --help"));
        }
    }
    if (request.help)
        return request;
    if (!request.command)
        throw UsageError("缺少命令(a command is needed); 可用(accepted): " + command_names());

    const CliCommand& command = *request.command;
    const std::string name(command.name);
    if (request.json && !command.takes_json)
        throw UsageError("--json 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_json));
    if (request.serial && !command.takes_serial)
        throw UsageError("--serial 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_serial));
    if (request.controller && !command.takes_controller)
        throw UsageError("--controller 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_controller));
    if (request.changed && !command.takes_changed)
        throw UsageError("--changed 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_changed));
    if (request.count && !command.takes_count)
        throw UsageError("--count 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_count));
    if (request.timeout_seconds && !command.takes_timeout)
        throw UsageError("--timeout 不适用于(does not apply to) " + name +
                         "; 可用于(accepted by): " + commands_taking(&CliCommand::takes_timeout));
    const int count = static_cast<int>(request.operands.size());
    if (count < command.min_operands || count > command.max_operands) {
        const std::string usage(command.help.substr(0, command.help.find('\n')));
        throw UsageError("参数个数不对(wrong number of arguments); " + usage);
    }
    return request;
}

int knob_argument(const std::string& text)
{
    const std::optional<int64_t> knob = parse_int64(text, 10);
    if (!knob || *knob < 0 || *knob >= mapped_knob_count)
        throw UsageError(invalid_value("KNOB", text, "0-26"));
    return static_cast<int>(*knob);
}

QString type_argument(const std::string& text)
{
    const std::string word = lower(text);
    const struct {
        const char* short_form;
        const QString& name;
    } types[] = {{"note-on", NOTE_ON}, {"note-off", NOTE_OFF}, {"cc", CONTROL_CHANGE}, {"bend", BEND_CHANGE}};
    for (const auto& type : types) {
        if (word == type.short_form || word == lower(type.name.toStdString()))
            return type.name;
    }
    throw UsageError(invalid_value("TYPE", text,
                                   "\"Note On\", \"Note Off\", \"Control Change\", \"Bend Change\", "
                                   "note-on, note-off, cc, bend"));
}

QString channel_argument(const std::string& text)
{
    if (number_in_scope(text, 1, 16) != 1)
        throw UsageError(invalid_value("CHANNEL", text, "1-16"));
    return QString::fromStdString(text);
}

QString controller_argument(const std::string& text)
{
    if (number_in_scope(text, 0, 127) != 1)
        throw UsageError(invalid_value("CONTROLLER", text, "0-127"));
    return QString::fromStdString(text);
}

std::string serial_argument(const std::string& option, const std::string& text)
{
    const std::string serial = upper(text);
    if (serial.size() != 8 || !is_family_serial(serial))
        throw UsageError(invalid_value(option, text, "4AC0CC27-4ACFCC27"));
    return serial;
}

}  // namespace dialcraft
