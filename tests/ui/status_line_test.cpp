// The status line under the text area: the controllers present, followed
// live as the simulated service changes, and what a set press really sent.
// None of it is printed, and the MIDI link's state is left alone.
#include <QAccessible>
#include <QColor>
#include <QDir>
#include <QElapsedTimer>
#include <QSettings>
#include <QTest>

#include <cerrno>
#include <memory>

#include "actions/set_action.h"
#include "console_capture.h"
#include "midi/host_selection.h"
#include "model/print_line.h"
#include "sim_scene.h"
#include "ui/access/status_announcer.h"
#include "ui/status/status_texts.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

// A service that cannot report changes, as the ALSA host before it watches
// the System Announce port: the status line must look again on its own.
class UnwatchedSimMidiHost : public SimMidiHost {
public:
    MidiStatus watch_changes(MidiChangeProc, void*, MidiChangeWatch*) override { return -ENOSYS; }
};

const QString none = QStringLiteral("未发现控制器(No controller found)");

}  // namespace

class StatusLineTest : public QObject {
    Q_OBJECT

private slots:
    void init() { QSettings().clear(); }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void presenceFollowsTheServiceItsChangesReport()
    {
        use(std::make_unique<SimMidiHost>());
        QVERIFY(openAndStartPresence());
        QVERIFY(presence()->property("notified").toBool());
        followPlugging();
    }

    void presenceFollowsAServiceThatCannotReportChanges()
    {
        use(std::make_unique<UnwatchedSimMidiHost>());
        QVERIFY(openAndStartPresence());
        QVERIFY(!presence()->property("notified").toBool());
        followPlugging();
    }

    void presenceNamesAMissingSequencer()
    {
        const QByteArray missing = QDir(QDir::tempPath()).filePath(QStringLiteral("dialcraft-no-snd/seq")).toUtf8();
        qputenv("DIALCRAFT_SEQ_DEVICE", missing);
        use(std::make_unique<SimMidiHost>());
        const bool started = openAndStartPresence();
        const QString shown = presenceText();
        qputenv("DIALCRAFT_SEQ_DEVICE", "/dev/null");
        QVERIFY(started);
        QCOMPARE(shown, QStringLiteral("ALSA 音序器不可用(the ALSA sequencer is not available) (") +
                            QString::fromUtf8(missing) +
                            QStringLiteral(": No such file or directory); 加载(load it with) `sudo modprobe snd-seq`"));
    }

    void presenceIsLookedUpOnlyAfterTheFirstFrame()
    {
        use(std::make_unique<SimMidiHost>());
        plug_controller(*sim, "4AC2CC27");
        QQmlApplicationEngine engine;
        QQuickWindow* window = load_main_window(engine);
        QVERIFY(window);
        QQuickItem* item = harness.item(QStringLiteral("controllerPresence"), window->contentItem());
        QVERIFY(item);
        int frames = 0;
        bool startedAtFirstFrame = true;
        connect(
            window, &QQuickWindow::frameSwapped, this,
            [&] {
                if (frames++ == 0)
                    startedAtFirstFrame = item->property("started").toBool();
            },
            Qt::DirectConnection);
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTRY_VERIFY(item->property("started").toBool());
        QVERIFY(frames > 0);
        QVERIFY(!startedAtFirstFrame);
        QCOMPARE(item->property("text").toString(), QStringLiteral("已连接(Connected): 4AC2CC27"));
    }

    void pressWithNothingConnectedSaysNothingWasSent()
    {
        use(std::make_unique<SimMidiHost>());
        QVERIFY(openAndStartPresence());
        configureKnob5();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));
        const std::string printed = capture.finish();

        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        QCOMPARE(statusMessage(),
                 QStringLiteral("旋钮5: 未发送任何消息, 未找到控制器(Nothing was sent, no controller found)"));
        QCOMPARE(presenceText(), none);
        QVERIFY(sim->sent().empty());
        QCOMPARE(printed, replayOfPress(5));
    }

    void pressWithOneControllerNamesItsPortAndTheMessages()
    {
        use(std::make_unique<SimMidiHost>());
        plug_controller(*sim, "4AC1CC27");
        QVERIFY(openAndStartPresence());
        configureKnob5();
        sim->clear_sent();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));
        const std::string printed = capture.finish();

        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        // A programming that went through invites to turn the knob.
        QCOMPARE(statusMessage(), QStringLiteral("旋钮5: 5条消息已送达(5 messages accepted) → 4AC1CC27 MIDI 1\n"
                                                 "请转动 5 号旋钮以验证(turn knob 5 to verify)"));
        QCOMPARE(sim->sent().size(), size_t(5));
        for (const auto& packet : sim->sent())
            QCOMPARE(packet.destination, std::string("4AC1CC27 MIDI 1"));
        // The lines printed are exactly those of the press without the count.
        sim->clear_sent();
        QCOMPARE(printed, replayOfPress(5));
        QCOMPARE(sim->sent().size(), size_t(5));
    }

    void pressThatFailsItsCheckSaysNothingWasSent()
    {
        use(std::make_unique<SimMidiHost>());
        plug_controller(*sim, "4AC1CC27");
        QVERIFY(openAndStartPresence());
        CreateSetupAreaViewData* knob = harness.state()->record(12);
        knob->set_message_type_menu_string(QStringLiteral("Note Off"));
        knob->set_message_channel_menu_string(QStringLiteral("ab"));

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(12)));
        const std::string printed = capture.finish();

        QCOMPARE(harness.state()->fullText(), QStringLiteral("参数错误-MIDI通道\n范围1~16"));
        QCOMPARE(statusMessage(), QStringLiteral("旋钮12: 未发送任何消息(Nothing was sent)"));
        QVERIFY(sim->sent().empty());
        QCOMPARE(printed, replayOfPress(12));
    }

    void pressRefusedByTheServiceSaysSo()
    {
        use(std::make_unique<SimMidiHost>());
        const PluggedController controller = plug_controller(*sim, "4AC1CC27");
        sim->set_send_status(controller.destination, -5);
        QVERIFY(openAndStartPresence());
        configureKnob5();

        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));

        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置失败..\n4AC1CC27"));
        QCOMPARE(statusMessage(), QStringLiteral("旋钮5: 未送达任何消息, 5条被拒绝(Nothing was accepted, 5 refused)"));
    }

    void pressThatSentNothingIsAWarningAndIsAnnounced()
    {
        use(std::make_unique<SimMidiHost>());
        QVERIFY(openAndStartPresence());
        configureKnob5();
        QVERIFY(!warningShown());

        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));

        const QString text = QStringLiteral(
            "旋钮5: 未发送任何消息, 未找到控制器(Nothing was sent, no controller found)");
        QCOMPARE(statusMessage(), text);
        QVERIFY(WindowStatus::of(*harness.state())->warning());
        QVERIFY(warningShown());
        QCOMPARE(harness.item(QStringLiteral("statusWarningSymbol"))->property("text").toString(), QStringLiteral("⚠"));
        // Not by colour alone, but in colour too.
        QCOMPARE(harness.item(QStringLiteral("statusMessage"))->property("color").value<QColor>(), QColor("#8a2a00"));
        // A screen reader is told, with the warning's word in front.
        QTRY_COMPARE(accessibleStatusName(), QStringLiteral("警告(Warning): ") + text);

        // What is said before the next press is shown under the warning,
        // which stays.
        WindowStatus* status = WindowStatus::of(*harness.state());
        status->setMessage(table_taken_text({3}, false));
        QCOMPARE(statusMessage(), text + u'\n' + table_taken_text({3}, false));
        QVERIFY(status->warning());
        QVERIFY(warningShown());
        status->setMessage(table_taken_text({4}, false));
        QCOMPARE(statusMessage(), text + u'\n' + table_taken_text({4}, false));
        QVERIFY(warningShown());

        // The next press that gets everything through ends it.
        plug_controller(*sim, "4AC1CC27");
        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));
        QVERIFY(statusMessage().startsWith(QStringLiteral("旋钮5: 5条消息已送达(5 messages accepted)")));
        QVERIFY(!WindowStatus::of(*harness.state())->warning());
        QVERIFY(!warningShown());
        QTRY_COMPARE_WITH_TIMEOUT(accessibleStatusName(), statusMessage(), 3000);
    }

    void pressWithThreeOfFiveAcceptedIsAWarning()
    {
        use(std::make_unique<SimMidiHost>());
        const PluggedController controller = plug_controller(*sim, "4AC1CC27");
        sim->set_send_status_after(controller.destination, 3, -5);
        QVERIFY(openAndStartPresence());
        configureKnob5();
        sim->clear_sent();

        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(5)));

        QCOMPARE(sim->sent().size(), size_t(3));
        QCOMPARE(statusMessage(),
                 QStringLiteral("旋钮5: 3条消息已送达(3 messages accepted) → 4AC1CC27 MIDI 1; 2条被拒绝(2 refused)"));
        QVERIFY(warningShown());
    }

    void statusChangesAreAnnouncedAtMostOnceASecondLatestWins()
    {
        use(std::make_unique<SimMidiHost>());
        QVERIFY(openAndStartPresence());
        WindowStatus* status = WindowStatus::of(*harness.state());
        auto* announcer = harness.window()->findChild<StatusAnnouncer*>(QStringLiteral("statusAnnouncer"));
        QVERIFY(announcer);

        // Let any earlier announcement's second run out.
        status->setMessage(QStringLiteral("一"));
        QTRY_COMPARE_WITH_TIMEOUT(announcer->announced(), QStringLiteral("一"), 3000);
        QTest::qWait(StatusAnnouncer::min_interval_ms + 50);

        const int before = announcer->announcements();
        QElapsedTimer clock;
        clock.start();
        status->setMessage(QStringLiteral("二"));
        QCOMPARE(announcer->announced(), QStringLiteral("二"));  // at once: the last was over a second ago
        QCOMPARE(accessibleStatusName(), QStringLiteral("二"));
        status->setMessage(QStringLiteral("三"));
        status->setWarningMessage(QStringLiteral("四"));
        QCOMPARE(announcer->announced(), QStringLiteral("二"));
        QTRY_COMPARE_WITH_TIMEOUT(announcer->announced(), QStringLiteral("警告(Warning): 四"), 3000);
        QVERIFY(clock.elapsed() >= StatusAnnouncer::min_interval_ms - 50);
        // 三 was never told: only the latest within the second.
        QCOMPARE(announcer->announcements(), before + 2);
        QCOMPARE(accessibleStatusName(), QStringLiteral("警告(Warning): 四"));
    }

private:
    bool warningShown() const { return harness.item(QStringLiteral("statusWarningSymbol"))->isVisible(); }
    QString accessibleStatusName() const
    {
        QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(
            harness.item(QStringLiteral("statusMessage")));
        return iface ? iface->text(QAccessible::Name) : QString();
    }

    void use(std::unique_ptr<SimMidiHost> host)
    {
        sim = std::move(host);
        set_midi_host(sim.get());
    }

    bool openAndStartPresence()
    {
        if (!harness.open() || !presence())
            return false;
        return QTest::qWaitFor([this] { return presence()->property("started").toBool(); });
    }

    // Plugs and unplugs while the window runs: each change shows within one
    // second, controllers of other families and other endpoints never show,
    // nothing is printed or sent and the link's state stays as it was.
    void followPlugging()
    {
        QCOMPARE(presenceText(), none);
        const LinkSnapshot before = LinkSnapshot::take();
        ConsoleCapture capture;

        const PluggedController third = plug_controller(*sim, "4AC3CC27");
        QVERIFY(showsWithinASecond(QStringLiteral("已连接(Connected): 4AC3CC27")));
        sim->add_source("Synth Out");
        sim->add_destination("Synth In");
        plug_controller(*sim, "16C3C008");
        plug_controller(*sim, "4ac5cc27");  // not a serial of the family: lower case
        QTest::qWait(2 * 500 + 100);        // longer than two polls
        QCOMPARE(presenceText(), QStringLiteral("已连接(Connected): 4AC3CC27"));
        QCOMPARE(presence()->property("serials").toStringList(), QStringList{QStringLiteral("4AC3CC27")});

        const PluggedController first = plug_controller(*sim, "4AC1CC27");
        QVERIFY(showsWithinASecond(QStringLiteral("已连接(Connected): 4AC3CC27, 4AC1CC27")));
        unplug_controller(*sim, third);
        QVERIFY(showsWithinASecond(QStringLiteral("已连接(Connected): 4AC1CC27")));
        sim->remove(first.destination);  // the port goes first, the device after it
        QVERIFY(showsWithinASecond(none));
        sim->remove(first.source);
        sim->remove(first.device);

        QCOMPARE(capture.finish(), std::string());
        QVERIFY(sim->sent().empty());
        QVERIFY(LinkSnapshot::take() == before);
    }

    // Whether the presence line shows `expected` within one second of now.
    bool showsWithinASecond(const QString& expected)
    {
        QElapsedTimer clock;
        clock.start();
        const bool shown = QTest::qWaitFor([&] { return presenceText() == expected; }, 1000);
        if (shown && clock.elapsed() <= 1000)
            return true;
        qWarning("after %lld ms the line shows \"%s\", not \"%s\"", static_cast<long long>(clock.elapsed()),
                 qPrintable(presenceText()), qPrintable(expected));
        return false;
    }

    void configureKnob5()
    {
        QQuickItem* panel = harness.panelShowingRecord(5);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("2"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("74"));
    }

    // What the press prints when made as the panel made it before the status
    // line existed: the knob line, then the set action.
    std::string replayOfPress(int record)
    {
        ConsoleCapture capture;
        CreateSetupAreaViewData* knob = harness.state()->record(record);
        print_line(QString::number(knob->knob_index()) + QStringLiteral("号旋钮"));
        setup_button_action(*knob, *harness.state());
        return capture.finish();
    }

    QQuickItem* presence() const { return harness.item(QStringLiteral("controllerPresence")); }
    QString presenceText() const { return harness.item(QStringLiteral("presenceText"))->property("text").toString(); }
    QString statusMessage() const { return harness.item(QStringLiteral("statusMessage"))->property("text").toString(); }

    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(StatusLineTest)
#include "status_line_test.moc"
