// A knob panel's set button against the simulated MIDI service: the knob line
// comes first, the set action's lines follow, the outcome stands in the text
// area, and the programming bytes reach the controller.
#include <QSettings>
#include <QTest>

#include <chrono>
#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

using Bytes = std::vector<uint8_t>;

class SetButtonTest : public WindowTest {
    Q_OBJECT

public:
    SetButtonTest() : WindowTest(Open::byTest) {}

private slots:

    void pressProgramsTheOneConnectedController()
    {
        plug("4AC1CC27");
        QVERIFY(harness.open());
        QQuickItem* panel = harness.panelShowingRecord(5);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("2"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("74"));
        sim->clear_sent();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), panel));
        const QStringList lines = capture.finishLines();

        QVERIFY(lines.size() > 2);
        QCOMPARE(lines.at(0), QStringLiteral("5号旋钮"));
        QCOMPARE(lines.at(1), QStringLiteral("set_device_name 4ac0cc27 \r"));
        QVERIFY(lines.contains(QStringLiteral("i = 0x00, device_connect_id_arg = 0x4AC0CC27")));
        QVERIFY(lines.contains(QStringLiteral("i = 0x0F, device_connect_id_arg = 0x4ACFCC27")));
        QVERIFY(lines.contains(QStringLiteral("-1--set_device_name(0x4AC1CC27);")));
        const qsizetype summary = lines.indexOf(QStringLiteral("硬件索引 : 5"));
        QVERIFY(summary > 0);
        QCOMPARE(lines.mid(summary - 1, 6),
                 QStringList({QStringLiteral("--------------------------"), QStringLiteral("硬件索引 : 5"),
                              QStringLiteral("消息类型 : Control Change"), QStringLiteral("MIDI通道 : 2"),
                              QStringLiteral("控制器号 : 74"), QStringLiteral("--------------------------")}));
        QVERIFY(lines.contains(QStringLiteral("参数正确")));
        QVERIFY(lines.contains(QStringLiteral("CONTROL_CHANGE")));
        QCOMPARE(lines.last(), QStringLiteral("0"));

        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        QCOMPARE(textArea(), QStringLiteral("旋钮5-设置成功!"));
        QCOMPARE(harness.item(QStringLiteral("modelMenu"))->property("displayText").toString(),
                 QStringLiteral("4AC1CC27"));

        const auto sent = sim->sent();
        QCOMPARE(sent.size(), size_t(5));
        const std::vector<Bytes> expected{{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}};
        for (size_t i = 0; i < sent.size(); ++i) {
            QCOMPARE(sent[i].destination, std::string("4AC1CC27 MIDI 1"));
            QVERIFY(sent[i].bytes == expected[i]);
            if (i > 0)
                QVERIFY(sent[i].at - sent[i - 1].at >= std::chrono::milliseconds(8));
        }
    }

    void failureNamesTheSerialChosenInTheModelMenu()
    {
        // Devices are present but none is a controller: every send fails.
        sim->add_device("Midi Through", "Linux", "Midi Through");
        QVERIFY(harness.open());
        QVERIFY(harness.choose(harness.item(QStringLiteral("modelMenu")), QStringLiteral("4AC2CC27")));
        QQuickItem* panel = harness.panelShowingRecord(7);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Note On")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("1"));

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), panel));
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.at(0), QStringLiteral("7号旋钮"));
        QVERIFY(lines.contains(QStringLiteral("User selected: 4AC2CC27")));
        QVERIFY(lines.contains(QStringLiteral("set_device_name(0x4AC2CC27);")));
        QCOMPARE(lines.last(), QStringLiteral("5"));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮7-设置失败..\n4AC2CC27"));
        QCOMPARE(textArea(), QStringLiteral("旋钮7-设置失败..\n4AC2CC27"));
        QVERIFY(sim->sent().empty());
    }

    void lettersAreTakenByTheFieldAndRejectedByTheAction()
    {
        plug("4AC1CC27");
        QVERIFY(harness.open());
        QQuickItem* panel = harness.panelShowingRecord(12);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Note Off")));
        QQuickItem* channel = harness.item(QStringLiteral("channelField"), panel);
        harness.replaceText(channel, QStringLiteral("ab"));
        QCOMPARE(channel->property("text").toString(), QStringLiteral("ab"));
        QCOMPARE(harness.state()->record(12)->message_channel_menu_string(), QStringLiteral("ab"));
        sim->clear_sent();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), panel));
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.at(0), QStringLiteral("12号旋钮"));
        QVERIFY(lines.contains(QStringLiteral("MIDI通道 : ab")));
        QVERIFY(!lines.contains(QStringLiteral("MIDI通道 ok")));
        QVERIFY(lines.contains(QStringLiteral("控制器号 ok")));
        QVERIFY(!lines.contains(QStringLiteral("参数正确")));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("参数错误-MIDI通道\n范围1~16"));
        QCOMPARE(textArea(), QStringLiteral("参数错误-MIDI通道\n范围1~16"));
        QVERIFY(sim->sent().empty());
    }

    void placeholderTypeIsRejectedByTheAction()
    {
        plug("4AC1CC27");
        QVERIFY(harness.open());
        QQuickItem* panel = harness.panelShowingRecord(0);
        QQuickItem* menu = harness.item(QStringLiteral("typeMenu"), panel);
        QVERIFY(harness.choose(menu, QStringLiteral("Bend Change")));
        QVERIFY(harness.choose(menu, QStringLiteral("选择消息类型")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("3"));
        sim->clear_sent();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), panel));
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.at(0), QStringLiteral("0号旋钮"));
        QVERIFY(lines.contains(QStringLiteral("MIDI通道 ok")));
        QVERIFY(!lines.contains(QStringLiteral("消息类型 ok")));
        const QString message = QStringLiteral("参数错误-消息类型\n请下拉选择正确参数如Control Change\nNote On\n...");
        QCOMPARE(harness.state()->fullText(), message);
        QCOMPARE(textArea(), message);
        QVERIFY(sim->sent().empty());
    }

private:
    void plug(const std::string& serial)
    {
        sim->add_device(serial, "Maker", serial);
        sim->add_source(serial + " MIDI 1");
        sim->add_destination(serial + " MIDI 1");
    }
    QString textArea() const { return harness.item(QStringLiteral("textArea"))->property("text").toString(); }
};

DIALCRAFT_UI_TEST_MAIN(SetButtonTest)
#include "set_button_test.moc"
