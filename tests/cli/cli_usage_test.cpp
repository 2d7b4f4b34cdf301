// Bad arguments: one line naming the argument and what is accepted, exit
// status 2, nothing sent, the store untouched. And --help.
#include "cli_fixture.h"

#include <cctype>

#include "cli/cli_commands.h"

using namespace dialcraft;

struct UsageCase {
    std::vector<std::string> args;
    std::string err;
};

// The arguments as a test name: letters and digits kept, everything else "_".
std::string usage_case_name(const ::testing::TestParamInfo<UsageCase>& info)
{
    std::string name = std::to_string(info.index);
    for (const std::string& arg : info.param.args) {
        name += '_';
        for (char c : arg)
            name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    }
    return name;
}

class UsageTest : public CliTest, public ::testing::WithParamInterface<UsageCase> {};

TEST_P(UsageTest, OneLineExitTwoNothingSentStoreUntouched)
{
    plug("4AC1CC27");
    store({"Note On", "1", "60"});
    const QByteArray before = stored();
    std::vector<std::string> args = GetParam().args;
    for (std::string& arg : args)
        if (arg == "%DIR%")
            arg = file("missing.txt");

    const CliRun result = run(args);
    EXPECT_EQ(result.status, cli_usage_error);
    std::string expected = GetParam().err;
    if (const size_t at = expected.find("%DIR%"); at != std::string::npos)
        expected.replace(at, 5, file("missing.txt"));
    EXPECT_EQ(result.err, expected);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.console, "");
    EXPECT_TRUE(sim.sent().empty());
    EXPECT_EQ(stored(), before);
}

namespace {
const std::string set_usage =
    "用法(usage): dialcraft-cli set KNOB TYPE CHANNEL CONTROLLER [--serial SERIAL] [--json] [--verbose]";
const std::string types_accepted =
    "\"Note On\", \"Note Off\", \"Control Change\", \"Bend Change\", note-on, note-off, cc, bend";
}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Arguments, UsageTest,
    ::testing::Values(
        UsageCase{{},
                  "dialcraft-cli: 缺少命令(a command is needed); 可用(accepted): list, set, apply, show, export, "
                  "import, monitor, verify\n"},
        UsageCase{{"frob"},
                  "dialcraft-cli: 命令(command) \"frob\" 无效(invalid); 可用(accepted): list, set, apply, show, "
                  "export, import, monitor, verify\n"},
        UsageCase{{"list", "--all"},
                  "dialcraft-cli list: 选项(option) \"--all\" 无效(invalid); 可用(accepted): --json, --verbose, "
                  "--serial SERIAL, --controller SERIAL, --changed, --count N, --timeout SECONDS, --help\n"},
        UsageCase{{"set", "27", "cc", "2", "74"},
                  "dialcraft-cli set: KNOB \"27\" 无效(invalid); 可用(accepted): 0-26\n"},
        UsageCase{{"set", "-1", "cc", "2", "74"},
                  "dialcraft-cli set: KNOB \"-1\" 无效(invalid); 可用(accepted): 0-26\n"},
        UsageCase{{"set", "five", "cc", "2", "74"},
                  "dialcraft-cli set: KNOB \"five\" 无效(invalid); 可用(accepted): 0-26\n"},
        UsageCase{{"set", "5", "sysex", "2", "74"},
                  "dialcraft-cli set: TYPE \"sysex\" 无效(invalid); 可用(accepted): " + types_accepted + "\n"},
        UsageCase{{"set", "5", "System Change", "2", "74"},
                  "dialcraft-cli set: TYPE \"System Change\" 无效(invalid); 可用(accepted): " + types_accepted + "\n"},
        UsageCase{{"set", "5", "cc", "0", "74"},
                  "dialcraft-cli set: CHANNEL \"0\" 无效(invalid); 可用(accepted): 1-16\n"},
        UsageCase{{"set", "5", "cc", "17", "74"},
                  "dialcraft-cli set: CHANNEL \"17\" 无效(invalid); 可用(accepted): 1-16\n"},
        UsageCase{{"set", "5", "cc", " 2", "74"},
                  "dialcraft-cli set: CHANNEL \" 2\" 无效(invalid); 可用(accepted): 1-16\n"},
        UsageCase{{"set", "5", "cc", "", "74"},
                  "dialcraft-cli set: CHANNEL \"\" 无效(invalid); 可用(accepted): 1-16\n"},
        UsageCase{{"set", "5", "cc", "2", "128"},
                  "dialcraft-cli set: CONTROLLER \"128\" 无效(invalid); 可用(accepted): 0-127\n"},
        UsageCase{{"set", "5", "cc", "2", "0x10"},
                  "dialcraft-cli set: CONTROLLER \"0x10\" 无效(invalid); 可用(accepted): 0-127\n"},
        UsageCase{{"set", "5", "cc", "2"},
                  "dialcraft-cli set: 参数个数不对(wrong number of arguments); " + set_usage + "\n"},
        UsageCase{{"set", "5", "cc", "2", "74", "1"},
                  "dialcraft-cli set: 参数个数不对(wrong number of arguments); " + set_usage + "\n"},
        UsageCase{{"set", "5", "cc", "2", "74", "--serial", "4AC1CC28"},
                  "dialcraft-cli set: --serial \"4AC1CC28\" 无效(invalid); 可用(accepted): 4AC0CC27-4ACFCC27\n"},
        UsageCase{{"set", "5", "cc", "2", "74", "--serial"},
                  "dialcraft-cli set: --serial 缺少型号(needs a serial); 可用(accepted): 4AC0CC27-4ACFCC27\n"},
        UsageCase{{"set", "5", "cc", "2", "74", "--serial", "4AC1CC27", "--serial=4AC1CC27"},
                  "dialcraft-cli set: --serial 只能给一次(may be given once)\n"},
        UsageCase{{"list", "--serial", "4AC1CC27"},
                  "dialcraft-cli list: --serial 不适用于(does not apply to) list; 可用于(accepted by): set, apply, "
                  "monitor, verify\n"},
        UsageCase{
            {"export", "x.txt", "--json"},
            "dialcraft-cli export: --json 不适用于(does not apply to) export; 可用于(accepted by): list, set, apply, "
            "show, monitor\n"},
        UsageCase{{"show", "extra"},
                  "dialcraft-cli show: 参数个数不对(wrong number of arguments); 用法(usage): dialcraft-cli show "
                  "[--controller SERIAL] [--json] "
                  "[--verbose]\n"},
        UsageCase{{"set", "5", "cc", "2", "74", "--controller", "4AC1CC27"},
                  "dialcraft-cli set: --controller 不适用于(does not apply to) set; 可用于(accepted by): show, "
                  "export\n"},
        UsageCase{{"show", "--changed"},
                  "dialcraft-cli show: --changed 不适用于(does not apply to) show; 可用于(accepted by): apply\n"},
        UsageCase{{"show", "--controller=4AC1CC2"},
                  "dialcraft-cli show: --controller \"4AC1CC2\" 无效(invalid); 可用(accepted): 4AC0CC27-4ACFCC27\n"},
        UsageCase{{"show", "--controller"},
                  "dialcraft-cli show: --controller 缺少型号(needs a serial); 可用(accepted): 4AC0CC27-4ACFCC27\n"},
        UsageCase{{"apply", "%DIR%"},
                  "dialcraft-cli apply: FILE \"%DIR%\" 无法读取(cannot be read): No such file or directory\n"},
        UsageCase{{"import", "%DIR%"},
                  "dialcraft-cli import: FILE \"%DIR%\" 无法读取(cannot be read): No such file or directory\n"}),
    usage_case_name);

TEST_F(CliTest, HelpOfEveryCommandStartsWithItsUsage)
{
    const CliRun general = run({"--help"});
    EXPECT_EQ(general.status, cli_success);
    EXPECT_EQ(general.out, std::string(cli_general_help()));
    EXPECT_EQ(general.err, "");
    for (const CliCommand& command : cli_commands()) {
        const std::string name(command.name);
        for (const auto& args : {std::vector<std::string>{name, "--help"}, std::vector<std::string>{"-h", name}}) {
            const CliRun result = run(args);
            EXPECT_EQ(result.status, cli_success) << name;
            EXPECT_EQ(result.out.rfind("用法(usage): dialcraft-cli " + name + " ", 0), 0u) << result.out;
            EXPECT_EQ(result.out, std::string(command.help));
            EXPECT_NE(general.out.find("\n  " + name + " "), std::string::npos) << name;
        }
    }
    EXPECT_TRUE(sim.sent().empty());
}
