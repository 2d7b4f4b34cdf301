#include "virtual_controller/controller_commands.h"

#include <algorithm>
#include <sstream>

#include "base/integer_text.h"
#include "virtual_controller/virtual_knobs.h"

namespace dialcraft {

namespace {

constexpr std::string_view commands_help =
    "标准输入的命令(commands on standard input):\n"
    "  turn KNOB VALUE [SERIAL]  转动旋钮(turns a knob): sends the knob's programmed message with VALUE\n"
    "                            (KNOB 0-127, VALUE 0-127) to whoever is connected, as a real knob does\n"
    "  sweep KNOB COUNT [SERIAL] 快速转动旋钮(sweeps a knob): COUNT messages of the knob's programmed kind,\n"
    "                            values 0, 1, ... 127, 0, ... as fast as the sequencer takes them\n"
    "                            (COUNT 1-1000000), then one line with how many were sent\n"
    "  table [SERIAL]            显示已设置的旋钮(prints the knobs programmed so far)\n"
    "  help                      这段说明(this text)\n"
    "  quit                      退出(ends the program; so does the end of input)\n"
    "SERIAL 选择控制器, 默认第一个(chooses the controller; the first one by default).\n";

constexpr std::string_view full_help =
    "用法(usage): dialcraft-virtual-controller [SERIAL ...]\n"
    "\n"
    "没有硬件时试用 dialcraft 的虚拟控制器(virtual controllers for trying dialcraft without hardware).\n"
    "Each SERIAL (eight hexadecimal digits, default 4AC1CC27) becomes an ALSA sequencer client named\n"
    "SERIAL with one duplex port \"SERIAL MIDI 1\", so dialcraft and dialcraft-cli find, probe and\n"
    "program it as a plugged-in controller. Each programmed knob is printed with the gaps between\n"
    "the five messages that programmed it:\n"
    "  4AC1CC27 knob 5 = Control Change, channel 2, controller 74; 间隔(gaps) 8.1, 8.0, 8.0, 8.1 ms\n"
    "\n"
    "%COMMANDS%"
    "\n"
    "--version 版本(the version), alone: dialcraft-virtual-controller --version\n"
    "\n"
    "退出状态(exit status): 0 正常结束(normal end), 1 无法使用 ALSA 音序器(the ALSA sequencer cannot be used),\n"
    "2 参数错误(bad argument)\n";

std::string invalid(const std::string& argument, const std::string& value, const std::string& accepted)
{
    return argument + " \"" + value + "\" 无效(invalid); 可用(accepted): " + accepted;
}

std::optional<int> number_in(const std::string& text, int low, int high)
{
    const std::optional<int64_t> value = parse_int64(text, 10);
    if (!value || *value < low || *value > high)
        return std::nullopt;
    return static_cast<int>(*value);
}

}  // namespace

std::string_view controller_commands_help()
{
    return commands_help;
}

std::string_view controller_help()
{
    static const std::string text = [] {
        std::string help(full_help);
        const std::string marker = "%COMMANDS%";
        help.replace(help.find(marker), marker.size(), commands_help);
        return help;
    }();
    return text;
}

std::variant<ControllerArguments, std::string> parse_controller_arguments(const std::vector<std::string>& args)
{
    ControllerArguments result;
    for (const std::string& word : args) {
        if (word == "--help" || word == "-h") {
            result.help = true;
            continue;
        }
        if (word.rfind('-', 0) == 0)
            return invalid("选项(option)", word, "--help");
        const std::optional<std::string> serial = controller_serial(word);
        if (!serial)
            return invalid("SERIAL", word, "8 个十六进制数字(eight hexadecimal digits), e.g. 4AC1CC27");
        if (std::find(result.serials.begin(), result.serials.end(), *serial) != result.serials.end())
            return "SERIAL \"" + word + "\" 重复(given twice)";
        result.serials.push_back(*serial);
    }
    if (result.serials.empty())
        result.serials.emplace_back(default_controller_serial);
    return result;
}

std::variant<ControllerCommand, std::string> parse_controller_command(const std::string& line)
{
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);
    ControllerCommand command;
    if (words.empty())
        return command;

    const std::string& name = words[0];
    size_t serial_at = 0;
    if (name == "turn") {
        if (words.size() < 3 || words.size() > 4)
            return std::string("用法(usage): turn KNOB VALUE [SERIAL]");
        const std::optional<int> knob = number_in(words[1], 0, 127);
        if (!knob)
            return invalid("KNOB", words[1], "0-127");
        const std::optional<int> value = number_in(words[2], 0, 127);
        if (!value)
            return invalid("VALUE", words[2], "0-127");
        command.kind = ControllerCommand::Kind::turn;
        command.knob = *knob;
        command.value = *value;
        serial_at = 3;
    } else if (name == "sweep") {
        if (words.size() < 3 || words.size() > 4)
            return std::string("用法(usage): sweep KNOB COUNT [SERIAL]");
        const std::optional<int> knob = number_in(words[1], 0, 127);
        if (!knob)
            return invalid("KNOB", words[1], "0-127");
        const std::optional<int> count = number_in(words[2], 1, 1'000'000);
        if (!count)
            return invalid("COUNT", words[2], "1-1000000");
        command.kind = ControllerCommand::Kind::sweep;
        command.knob = *knob;
        command.count = *count;
        serial_at = 3;
    } else if (name == "table") {
        if (words.size() > 2)
            return std::string("用法(usage): table [SERIAL]");
        command.kind = ControllerCommand::Kind::table;
        serial_at = 1;
    } else if (name == "help" || name == "quit") {
        if (words.size() > 1)
            return "用法(usage): " + name;
        command.kind = name == "help" ? ControllerCommand::Kind::help : ControllerCommand::Kind::quit;
        return command;
    } else {
        return invalid("命令(command)", name, "turn, sweep, table, help, quit");
    }
    if (words.size() > serial_at) {
        command.serial = controller_serial(words[serial_at]);
        if (!command.serial)
            return invalid("SERIAL", words[serial_at], "8 个十六进制数字(eight hexadecimal digits)");
    }
    return command;
}

}  // namespace dialcraft
