#include "cli/cli_commands.h"

#include <array>

namespace dialcraft {

namespace {

constexpr std::string_view general_help =
    "用法(usage): dialcraft-cli COMMAND [ARGUMENTS] [--json] [--verbose]\n"
    "\n"
    "设置 4AC0CC27-4ACFCC27 控制器的旋钮, 管理存储的旋钮表\n"
    "(programs the knobs of the 4AC0CC27-4ACFCC27 controllers and manages the stored knob table,\n"
    "the same table the dialcraft window keeps)\n"
    "\n"
    "命令(commands):\n"
    "  list                          列出连接的控制器(the controllers present)\n"
    "  set KNOB TYPE CHANNEL CONTROLLER [--serial SERIAL]\n"
    "                                设置一个旋钮(programs one knob)\n"
    "  apply FILE [--serial SERIAL] [--changed]\n"
    "                                按导出的文件设置旋钮 0-26(programs knobs 0-26 from an exported file)\n"
    "  show [--controller SERIAL]    显示存储的旋钮表(shows the stored knob table), 及控制器所存\n"
    "                                (and what that controller holds)\n"
    "  export [--controller SERIAL] FILE\n"
    "                                把存储的旋钮表写入文件(writes the stored table to a file), 或控制器所存\n"
    "                                (or what that controller holds)\n"
    "  import FILE                   把文件读入存储的旋钮表(reads a file into the stored table)\n"
    "  monitor [--serial SERIAL] [--count N] [--timeout SECONDS]\n"
    "                                显示控制器发送的消息(shows what the controllers send, decoded)\n"
    "  verify KNOB [--serial SERIAL] [--timeout SECONDS]\n"
    "                                等待旋钮发送它的设置(waits for the knob to send its setting)\n"
    "\n"
    "选项(options):\n"
    "  --json      机器可读的输出(machine-readable output): list, show, set, apply, monitor\n"
    "              (a failure that prints no result: {\"error\":\"<the error line>\",\"exit\":N,\"ok\":false})\n"
    "  --verbose   诊断行写到标准错误(the diagnostic lines go to standard error)\n"
    "  --help      帮助(help); dialcraft-cli COMMAND --help 说明一个命令(describes one command)\n"
    "  --version   版本(the version), alone: dialcraft-cli --version\n"
    "\n"
    "控制器无法读回(a controller cannot be read back): set 和 apply 把每个完全被接受的设置记入\n"
    "控制器记录(set and apply record every fully accepted programming in the ledger), ledger.json\n"
    "beside the settings file (~/.config/dialcraft/ledger.json).\n"
    "\n"
    "标准输出只有结果(standard output carries only results).\n"
    "退出状态(exit status): 0 成功(success), 1 旋钮设置失败或什么也没发送(a knob failed or nothing was sent),\n"
    "2 用法错误(usage error), 3 没有控制器(no controller),\n"
    "4 ALSA 音序器不可用(the ALSA sequencer is not available: /dev/snd/seq missing; sudo modprobe snd-seq)\n";

constexpr std::string_view list_help =
    "用法(usage): dialcraft-cli list [--json] [--verbose]\n"
    "\n"
    "列出 MIDI 服务上的 4AC0CC27-4ACFCC27 控制器(lists the controllers of the family on the MIDI service),\n"
    "每行一个(one a line): 型号(serial), 音序器端口(sequencer port), 端口名(port name), e.g.\n"
    "  4AC3CC27  24:0  4AC3CC27 MIDI 1\n"
    "--json: [{\"address\":\"24:0\",\"port\":\"4AC3CC27 MIDI 1\",\"serial\":\"4AC3CC27\"}]\n"
    "\n"
    "退出状态(exit status): 0 找到控制器(controllers found), 3 没有控制器(none)\n";

constexpr std::string_view set_help =
    "用法(usage): dialcraft-cli set KNOB TYPE CHANNEL CONTROLLER [--serial SERIAL] [--json] [--verbose]\n"
    "\n"
    "用窗口的设置按钮的同一动作设置一个旋钮(programs one knob through the same action as the window's\n"
    "设置 button: the same probes, checks and paced messages). The stored table is not changed.\n"
    "  KNOB        0-26\n"
    "  TYPE        \"Note On\", \"Note Off\", \"Control Change\", \"Bend Change\", or note-on, note-off, cc, bend\n"
    "  CHANNEL     1-16\n"
    "  CONTROLLER  0-127\n"
    "  --serial    型号(serial) 4AC0CC27-4ACFCC27, 代替窗口的型号菜单(in place of the window's model menu);\n"
    "              只连接一个控制器时可省略(may be left out when one controller is present)\n"
    "\n"
    "输出一行(prints one line): 旋钮, 设置, 收到的端口, MIDI 服务接受的消息数(the knob, its setting, the\n"
    "port it went to and how many of the 5 messages the MIDI service accepted), e.g.\n"
    "  旋钮(knob) 5: Control Change, 通道(channel) 2, 控制器号(controller) 74 -> 4AC1CC27 MIDI 1, "
    "已接受(accepted) 5/5, 成功(ok)\n"
    "--json: {\"accepted\":5,\"channel\":\"2\",\"controller\":\"74\",\"destinations\":[\"4AC1CC27 MIDI 1\"],"
    "\"knob\":5,\n"
    "         \"message\":\"旋钮5-设置成功!\",\"ok\":true,\"refused\":0,\"result\":0,\"serial\":\"4AC1CC27\","
    "\"type\":\"Control Change\"}\n"
    "\n"
    "退出状态(exit status): 0 成功(ok), 1 失败或什么也没发送(failed or nothing sent), 2 参数错误(bad argument),\n"
    "3 没有控制器或没有 --serial 的控制器(no controller, or not the one of --serial)\n"
    "\n"
    "MIDI 服务接受全部 5 条消息时, 设置记入控制器记录(when the MIDI service accepted all 5 messages,\n"
    "the setting is recorded in the ledger for that controller; see show --controller).\n";

constexpr std::string_view apply_help =
    "用法(usage): dialcraft-cli apply FILE [--serial SERIAL] [--changed] [--json] [--verbose]\n"
    "\n"
    "按导出的配置文件设置旋钮 0-26(programs knobs 0 to 26 from an exported configuration file), each\n"
    "through the window's set action. The file is read by position: knob i is lines 3i+1 to 3i+3, an\n"
    "empty line is an empty slot and nothing shifts. Knobs whose type is not Note On, Note Off, Control\n"
    "Change or Bend Change, or whose channel line is empty (not configured), are skipped. A warning\n"
    "tells when the file has fewer than 81 lines or a type line names no type. The stored table is not\n"
    "changed; every fully accepted programming is recorded in the ledger.\n"
    "  --serial    型号(serial) 4AC0CC27-4ACFCC27, as for set\n"
    "  --changed   只设置与控制器记录不同的旋钮(programs only the knobs whose setting differs from what\n"
    "              the ledger says the target controller holds, or that it never wrote)\n"
    "\n"
    "每个旋钮一行, 最后一行总结(one line a knob as for set, then a summary), e.g.\n"
    "  已设置(programmed) 5, 失败(failed) 0, 跳过(skipped) 22\n"
    "with --changed also the knobs left alone because the controller already holds them:\n"
    "  已设置(programmed) 1, 失败(failed) 0, 跳过(skipped) 22, 已相同(unchanged) 4\n"
    "进度条写到标准错误, 仅当它是终端时(a progress bar on standard error when it is a terminal,\n"
    "not with --verbose).\n"
    "--json: {\"failed\":0,\"knobs\":[<set's object>, ...],\"programmed\":5,\"skipped\":[1,2,...]}\n"
    "        (with --changed also \"unchanged\":[...])\n"
    "\n"
    "退出状态(exit status): 0 全部成功(all programmed; with --changed also when nothing differed),\n"
    "1 有失败或什么也没发送(a knob failed or nothing sent),\n"
    "2 参数错误或文件不可读(bad argument or unreadable file), 3 没有控制器(no controller)\n";

constexpr std::string_view show_help =
    "用法(usage): dialcraft-cli show [--controller SERIAL] [--json] [--verbose]\n"
    "\n"
    "显示存储的旋钮表(shows the stored knob table), knobs 0-26 as the window shows them after start-up:\n"
    "  旋钮(knob)  类型(type)      通道(channel)  控制器号(controller)\n"
    "  5           Control Change  2              74\n"
    "(- marks an empty field)\n"
    "--json: [{\"channel\":\"2\",\"controller\":\"74\",\"knob\":5,\"type\":\"Control Change\"}, ...]\n"
    "\n"
    "--controller SERIAL: 并列控制器记录里该控制器所存(beside it, what the ledger says that controller\n"
    "holds, when it was written (UTC) and whether the table is the same):\n"
    "  ... 4AC1CC27               写入时间(written)     比较(compare)\n"
    "  ... Control Change, 2, 74  2026-11-23T18:30:00Z  相同(same)\n"
    "比较(compare): 相同(same), 不同(differs), 未写入(never written).\n"
    "--json: each knob also has \"compare\":\"same\"|\"differs\"|\"never written\" and \"held\":\n"
    "  {\"channel\":2,\"controller\":74,\"type\":\"Control Change\",\"written\":\"2026-11-23T18:30:00Z\"} or null\n"
    "\n"
    "退出状态(exit status): 0\n";

constexpr std::string_view export_help =
    "用法(usage): dialcraft-cli export [--controller SERIAL] FILE [--verbose]\n"
    "\n"
    "把存储的旋钮表写入文件, 字节与窗口的导出相同(writes the stored knob table to FILE, byte for byte what\n"
    "the window's 导出配置(Export Config) writes: one slot a line). FILE is replaced.\n"
    "--controller SERIAL: 写入控制器记录里该控制器所存(writes instead what the ledger says that\n"
    "controller holds, in the same format; knobs it never wrote are blank slots), so the controller can\n"
    "be set up again with apply after a factory reset.\n"
    "\n"
    "退出状态(exit status): 0 已写入(written), 1 写入失败或记录里没有该控制器(could not be written, or\n"
    "the ledger holds nothing for that controller), 2 参数错误(bad argument)\n";

constexpr std::string_view import_help =
    "用法(usage): dialcraft-cli import FILE [--verbose]\n"
    "\n"
    "把文件读入存储的旋钮表(reads FILE into the stored knob table) by position, as apply reads it:\n"
    "one slot a line, an empty line is an empty slot and nothing shifts, so what export wrote comes\n"
    "back as the same table. Knobs 0 to 26 whose channel line is empty (never configured) are stored\n"
    "unconfigured. Unlike the window's 导入配置(Import Config), which drops empty lines, no knob moves.\n"
    "A warning tells when the file has fewer than 81 lines or a type line names no type (a file that\n"
    "did not come from an export). The table is written under the lock ~/.config/dialcraft/table.lock;\n"
    "an open window takes it within a second, merged knob by knob with its own edits, and a line on\n"
    "standard error says that a window is open.\n"
    "\n"
    "退出状态(exit status): 0 已导入(imported), 1 无法存储(could not be stored),\n"
    "2 参数错误或文件不可读(bad argument or unreadable file)\n";

constexpr std::string_view monitor_help =
    "用法(usage): dialcraft-cli monitor [--serial SERIAL] [--count N] [--timeout SECONDS] [--json] [--verbose]\n"
    "\n"
    "显示 4AC0CC27-4ACFCC27 控制器发送的每条消息(prints every message the controllers of the family send,\n"
    "decoded, one line each, with the knobs it matches by the ledger), e.g.\n"
    "  21:14:03.512  4AC3CC27  Control Change  ch 2  #74  64  -> 5号旋钮\n"
    "  21:14:04.020  4AC3CC27  Note On  ch 1  #60  100  -> 未匹配(unmatched)\n"
    "(- where the message has no channel, number or value; times are local)\n"
    "--json: "
    "{\"channel\":2,\"knobs\":[5],\"number\":74,\"serial\":\"4AC3CC27\",\"time\":\"2026-11-24T21:14:03.512Z\",\n"
    "         \"type\":\"Control Change\",\"value\":64}  (null where there is none; the time in UTC)\n"
    "  --serial    只显示这个控制器(only this controller)\n"
    "  --count N   收到 N 条后结束(ends after N messages)\n"
    "  --timeout   SECONDS 秒后结束(ends after that many seconds)\n"
    "也在输入结束(标准输入是管道或终端时)或 Ctrl-C 时结束(also ends at the end of standard input, when it\n"
    "is a pipe or a terminal, and on Ctrl-C). The link's connections are not touched: it listens\n"
    "through a port of its own.\n"
    "\n"
    "退出状态(exit status): 0 结束(ended as asked), 2 参数错误(bad argument),\n"
    "4 ALSA 音序器不可用(the ALSA sequencer is not available), 1 监听失败(listening failed)\n";

constexpr std::string_view verify_help =
    "用法(usage): dialcraft-cli verify KNOB [--serial SERIAL] [--timeout SECONDS] [--verbose]\n"
    "\n"
    "等待旋钮发送它的设置(waits until knob KNOB of the controller sends what it was programmed with:\n"
    "the ledger's setting for that controller, else the stored table's), so that turning the knob\n"
    "proves the controller took it. The first channel message of that controller decides:\n"
    "  旋钮(knob) 5: 已验证(verified) Control Change, 通道(channel) 2, 控制器号(controller) 74\n"
    "  旋钮(knob) 5: 收到别的设置(a different setting arrived): Control Change, 通道(channel) 1, #10 -> 3号旋钮\n"
    "A verified knob is marked in the ledger with the time.\n"
    "  --serial    型号(serial) 4AC0CC27-4ACFCC27; 只连接一个控制器时可省略(may be left out when one is present)\n"
    "  --timeout   最多等待的秒数(how long to wait), 60 unless given\n"
    "\n"
    "退出状态(exit status): 0 已验证(verified), 1 收到别的设置(a different setting arrived, named),\n"
    "2 参数错误或旋钮未设置(bad argument, or the knob has no setting), 3 没有控制器(no controller; also\n"
    "when the ALSA sequencer is missing, which the error line names), 4 超时(timed out)\n";

constexpr std::array commands{
    CliCommand{"list", 0, 0, false, true, false, false, list_help, run_list},
    CliCommand{"set", 4, 4, true, true, false, false, set_help, run_set},
    CliCommand{"apply", 1, 1, true, true, false, true, apply_help, run_apply},
    CliCommand{"show", 0, 0, false, true, true, false, show_help, run_show},
    CliCommand{"export", 1, 1, false, false, true, false, export_help, run_export},
    CliCommand{"import", 1, 1, false, false, false, false, import_help, run_import},
    CliCommand{"monitor", 0, 0, true, true, false, false, monitor_help, run_monitor, true, true},
    CliCommand{"verify", 1, 1, true, false, false, false, verify_help, run_verify, false, true},
};

}  // namespace

std::span<const CliCommand> cli_commands()
{
    return commands;
}

const CliCommand* find_cli_command(std::string_view name)
{
    for (const CliCommand& command : commands)
        if (command.name == name)
            return &command;
    return nullptr;
}

std::string_view cli_general_help()
{
    return general_help;
}

}  // namespace dialcraft
