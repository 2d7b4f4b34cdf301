// dialcraft-cli list.
#include "cli_fixture.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

using namespace dialcraft;

using ListTest = CliTest;

TEST_F(ListTest, PrintsEveryFamilyControllerWithItsPortInServiceOrder)
{
    const int first = plug("4AC3CC27");
    sim.add_device("16C3C008", "Other", "16C3C008");
    sim.add_destination("16C3C008 MIDI 1");
    sim.add_destination("Midi Through Port-0");
    sim.add_device("x", "", "x");  // ids up to two digits, so the addresses differ in width
    const int second = plug("4AC1CC27");
    ASSERT_LT(first, 10);
    ASSERT_GE(second, 10);

    const CliRun result = run({"list"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "4AC3CC27  sim:" + std::to_string(first) + "   4AC3CC27 MIDI 1\n" +
                              "4AC1CC27  sim:" + std::to_string(second) + "  4AC1CC27 MIDI 1\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.console, "");
    EXPECT_TRUE(sim.sent().empty());
}

TEST_F(ListTest, JsonGivesSerialAddressAndPort)
{
    const int destination = plug("4AC3CC27");
    const CliRun result = run({"list", "--json"});
    EXPECT_EQ(result.status, cli_success);
    EXPECT_EQ(result.out, "[{\"address\":\"sim:" + std::to_string(destination) +
                              "\",\"port\":\"4AC3CC27 MIDI 1\",\"serial\":\"4AC3CC27\"}]\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(ListTest, NoControllerExitsThreeWithNothingOnStandardOutput)
{
    sim.add_destination("16C3C008 MIDI 1");
    const CliRun result = run({"list"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dialcraft-cli list: 没有控制器(no controller is present)\n");
    EXPECT_EQ(result.console, "");
}

TEST_F(ListTest, NoControllerInJsonIsAnEmptyArray)
{
    const CliRun result = run({"--json", "list"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "[]\n");
}

TEST_F(ListTest, ServiceThatCannotBeOpenedExitsThree)
{
    plug("4AC3CC27");
    sim.set_available(false);
    const CliRun result = run({"list"});
    EXPECT_EQ(result.status, cli_no_controller);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "dialcraft-cli list: 无法打开 MIDI 服务(cannot open the MIDI service)\n");
}

TEST_F(ListTest, AMissingSequencerIsNamedAndExitsFour)
{
    const QByteArray missing = QDir(QString::fromStdString(file("no-snd"))).filePath("seq").toUtf8();
    qputenv("DIALCRAFT_SEQ_DEVICE", missing);
    sim.set_available(false);
    const CliRun list = run({"list"});
    const CliRun set = run({"set", "5", "cc", "2", "74", "--json"});
    qputenv("DIALCRAFT_SEQ_DEVICE", "/dev/null");

    const std::string why = "ALSA 音序器不可用(the ALSA sequencer is not available) (" + missing.toStdString() +
                            ": No such file or directory); 加载(load it with) `sudo modprobe snd-seq`";
    EXPECT_EQ(list.status, cli_no_sequencer);
    EXPECT_EQ(list.out, "");
    EXPECT_EQ(list.err, "dialcraft-cli list: " + why + "\n");
    EXPECT_EQ(set.status, cli_no_sequencer);
    EXPECT_EQ(set.err, "dialcraft-cli set: " + why + "\n");
    EXPECT_EQ(set.out, QJsonDocument(QJsonObject{{"error", QString::fromStdString("dialcraft-cli set: " + why)},
                                                 {"exit", cli_no_sequencer},
                                                 {"ok", false}})
                               .toJson(QJsonDocument::Compact)
                               .toStdString() +
                           "\n");
}

TEST_F(ListTest, VerboseSendsTheLinkLinesToStandardError)
{
    plug("4AC3CC27");
    const CliRun quiet = run({"list"});
    const CliRun verbose = run({"list", "--verbose"});
    EXPECT_EQ(verbose.out, quiet.out);
    EXPECT_EQ(quiet.err, "");
    EXPECT_EQ(verbose.err, "midi_exit\r\n");
    EXPECT_EQ(verbose.console, "");
}
