// dialcraft-cli monitor and verify against the simulated service: a second
// thread plays the controller once the command listens, and the printed
// lines, JSON and exit statuses are checked exactly (times by their form).
#include <QJsonDocument>
#include <QJsonObject>

#include <chrono>
#include <regex>
#include <thread>

#include "cli/monitor_input.h"
#include "cli_fixture.h"
#include "model/ledger_store.h"

using namespace dialcraft;

namespace {

class MonitorCliTest : public CliTest {
protected:
    void SetUp() override
    {
        CliTest::SetUp();
        set_monitor_watches_input(false);
    }
    void TearDown() override
    {
        if (player_.joinable())
            player_.join();
        set_monitor_watches_input(true);
    }

    // Plugs a controller and returns its source.
    int plug_source(const std::string& serial) { return plug(serial) - 1; }

    // Once the command listens, the controller sends each packet in turn.
    void play(int source, std::vector<std::vector<uint8_t>> packets)
    {
        player_ = std::thread([this, source, packets = std::move(packets)] {
            const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            while (sim.listener_count() == 0 && std::chrono::steady_clock::now() < limit)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            for (const auto& packet : packets)
                sim.inject(source, packet);
        });
    }

    std::thread player_;
};

// "21:14:03.512" and the rest of the line.
void expect_line(const std::string& line, const std::string& rest)
{
    static const std::regex time("[0-2][0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9]{3}");
    ASSERT_GE(line.size(), 12u) << line;
    EXPECT_TRUE(std::regex_match(line.substr(0, 12), time)) << line;
    EXPECT_EQ(line.substr(12), rest + "\n");
}

}  // namespace

TEST_F(MonitorCliTest, MonitorPrintsOneDecodedLineAMessageAndEndsAfterCount)
{
    const int source = plug_source("4AC1CC27");
    ASSERT_TRUE(record_in_ledger(QStringLiteral("4AC1CC27"), 5, QStringLiteral("Control Change"), 2, 74));
    play(source, {{0xB1, 0x4A, 0x40}, {0x4A, 0x41}, {0x90, 0x3C, 0x64}, {0xB1, 0x4A, 0x00}});
    const CliRun result = run({"monitor", "--count", "3"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.err, "");
    const std::vector<std::string> lines = printed_lines(result.out);
    ASSERT_EQ(lines.size(), 3u) << result.out;
    expect_line(lines[0], "  4AC1CC27  Control Change  ch 2  #74  64  -> 5号旋钮");
    // Running status: the second message came as two data bytes.
    expect_line(lines[1], "  4AC1CC27  Control Change  ch 2  #74  65  -> 5号旋钮");
    expect_line(lines[2], "  4AC1CC27  Note On  ch 1  #60  100  -> 未匹配(unmatched)");
    // The link was never opened: the monitor listens on its own.
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(MonitorCliTest, MonitorJsonLinesAndSerialFilter)
{
    const int first = plug_source("4AC1CC27");
    const int second = plug_source("4AC3CC27");
    player_ = std::thread([&] {
        while (sim.listener_count() == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        sim.inject(first, {0xB0, 0x01, 0x02});
        sim.inject(second, {0xE0, 0x00, 0x40});
    });
    const CliRun result = run({"monitor", "--serial", "4AC3CC27", "--json", "--count", "1"});
    EXPECT_EQ(result.status, cli_success);
    const std::vector<std::string> lines = printed_lines(result.out);
    ASSERT_EQ(lines.size(), 1u) << result.out;
    QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(lines[0])).object();
    const std::string time = object.take(QStringLiteral("time")).toString().toStdString();
    EXPECT_TRUE(std::regex_match(time, std::regex("20[0-9]{2}-[01][0-9]-[0-3][0-9]T[0-9:]{8}\\.[0-9]{3}Z"))) << time;
    EXPECT_EQ(QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString(),
              R"({"channel":1,"knobs":[],"number":null,"serial":"4AC3CC27","type":"Pitch Bend","value":8192})");
}

TEST_F(MonitorCliTest, MonitorEndsAtItsTimeoutWithNothingHeard)
{
    plug_source("4AC1CC27");
    const auto started = std::chrono::steady_clock::now();
    const CliRun result = run({"monitor", "--timeout", "1"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "");
    EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::seconds(1));
}

TEST_F(MonitorCliTest, MonitorWithoutServiceSaysSo)
{
    sim.set_available(false);
    const CliRun result = run({"monitor", "--count", "1"});
    EXPECT_NE(result.status, cli_success);
    EXPECT_NE(result.err, "");
}

TEST_F(MonitorCliTest, VerifyExitsZeroWhenTheKnobSendsItsSetting)
{
    const int source = plug_source("4AC1CC27");
    ASSERT_TRUE(record_in_ledger(QStringLiteral("4AC1CC27"), 5, QStringLiteral("Control Change"), 2, 74));
    // A clock in between decides nothing.
    play(source, {{0xF8}, {0xB1, 0x4A, 0x10}});
    const CliRun result = run({"verify", "5"});
    EXPECT_EQ(result.status, cli_success) << result.err;
    EXPECT_EQ(result.out, "旋钮(knob) 5: 已验证(verified) Control Change, 通道(channel) 2, 控制器号(controller) 74\n");
    const HeldSetting* held = read_ledger().held(QStringLiteral("4AC1CC27"), 5);
    ASSERT_NE(held, nullptr);
    EXPECT_TRUE(held->verified.isValid());
}

TEST_F(MonitorCliTest, VerifyExitsOneNamingADifferentSetting)
{
    const int source = plug_source("4AC1CC27");
    ASSERT_TRUE(record_in_ledger(QStringLiteral("4AC1CC27"), 5, QStringLiteral("Control Change"), 2, 74));
    ASSERT_TRUE(record_in_ledger(QStringLiteral("4AC1CC27"), 3, QStringLiteral("Control Change"), 1, 10));
    play(source, {{0xB0, 0x0A, 0x10}});
    const CliRun result = run({"verify", "5", "--serial", "4AC1CC27"});
    EXPECT_EQ(result.status, cli_failed);
    EXPECT_EQ(result.out,
              "旋钮(knob) 5: 收到别的设置(a different setting arrived): Control Change  ch 1  #10  16  -> 3号旋钮\n");
    EXPECT_FALSE(read_ledger().held(QStringLiteral("4AC1CC27"), 5)->verified.isValid());
}

TEST_F(MonitorCliTest, VerifyTimesOutWithFour)
{
    plug_source("4AC1CC27");
    ASSERT_TRUE(record_in_ledger(QStringLiteral("4AC1CC27"), 5, QStringLiteral("Bend Change"), 3, 0));
    const CliRun result = run({"verify", "5", "--timeout", "1"});
    EXPECT_EQ(result.status, cli_verify_timed_out);
    EXPECT_EQ(result.out, "旋钮(knob) 5: 超时(timed out): 4AC1CC27 在 1 秒内没有发送(sent nothing within 1 s)\n");
}

TEST_F(MonitorCliTest, VerifyWithoutControllerExitsThree)
{
    const CliRun result = run({"verify", "5", "--timeout", "1"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.err, "dialcraft-cli verify: 没有控制器(no controller is present)\n");
}

TEST_F(MonitorCliTest, VerifyOfAKnobWithNoSettingIsAUsageError)
{
    plug_source("4AC1CC27");
    const CliRun result = run({"verify", "7", "--timeout", "1"});
    EXPECT_EQ(result.status, cli_usage_error);
    EXPECT_EQ(result.err, "dialcraft-cli verify: 旋钮 7 没有可验证的设置(knob 7 has no setting to verify)\n");
}

TEST_F(MonitorCliTest, CountAndTimeoutAreCheckedAndOnlyWhereTheyApply)
{
    EXPECT_EQ(run({"monitor", "--count", "0"}).err,
              "dialcraft-cli monitor: --count \"0\" 无效(invalid); 可用(accepted): 1-1000000000\n");
    EXPECT_EQ(run({"monitor", "--timeout=abc"}).err,
              "dialcraft-cli monitor: --timeout \"abc\" 无效(invalid); 可用(accepted): 1-86400\n");
    const CliRun result = run({"verify", "5", "--count", "3"});
    EXPECT_EQ(result.status, cli_usage_error);
    EXPECT_EQ(result.err,
              "dialcraft-cli verify: --count 不适用于(does not apply to) verify; 可用于(accepted by): monitor\n");
}
