// The top bar's set-all button against the simulated MIDI service: every
// working knob with a chosen type is pressed in display order, one knob per
// turn of the event loop, the rest are skipped, and fullText ends with the
// summary; the button stops the run after the current knob.
#include <QSettings>
#include <QTest>

#include <algorithm>
#include <memory>

#include "actions/set_action.h"
#include "console_capture.h"
#include "midi/host_selection.h"
#include "model/print_line.h"
#include "programming_messages.h"
#include "sim_scene.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

using Bytes = std::vector<uint8_t>;

namespace {

// The five messages that program `knob` with the type of status nibble
// `nibble` (0xB: Control Change).
std::vector<Bytes> programming(uint8_t knob, uint8_t nibble, uint8_t channel, uint8_t controller)
{
    return programming_messages(knob, static_cast<uint8_t>((nibble << 4) | (channel - 1)), controller);
}

QStringList knobLines(const QStringList& lines)
{
    QStringList found;
    for (const QString& line : lines) {
        if (line.endsWith(QStringLiteral("号旋钮")))
            found.append(line);
    }
    return found;
}

}  // namespace

class SetAllTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
        controller = plug_controller(*sim, "4AC1CC27");
        QVERIFY(harness.open());
        sim->clear_sent();
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void buttonStandsThirdInTheTopBar()
    {
        QQuickItem* exportButton = harness.item(QStringLiteral("exportButton"));
        QQuickItem* button = setAllButton();
        QVERIFY(button);
        QCOMPARE(button->property("text").toString(), QStringLiteral("全部设置(Set All)"));
        QVERIFY(button->mapToScene({0, 0}).x() > exportButton->mapToScene({0, 0}).x());
        QCOMPARE(button->parentItem(), exportButton->parentItem());
        QVERIFY(button->property("activeFocusOnTab").toBool());
        QCOMPARE(accessibleName(button), QStringLiteral("全部设置(Set All)"));
    }

    void runOrderIsTheDisplayOrderWithoutThePlaceholder()
    {
        QList<int> expected{0, 1, 2};
        for (int i = 3; i <= 26; ++i)
            expected.append(i);
        QCOMPARE(SetAllRun::runOrder(), expected);
    }

    void setsTheConfiguredKnobsInDisplayOrderAndSkipsTheRest()
    {
        configure(26, "Note On", "1", "60");
        configure(3, "Bend Change", "16", "127");
        configure(2, "Control Change", "2", "74");

        QList<int> progressAtFrames;
        connect(
            harness.window(), &QQuickWindow::frameSwapped, this,
            [&] {
                if (run()->running())
                    progressAtFrames.append(qRound(progressBar()->property("value").toDouble()));
            },
            Qt::DirectConnection);
        bool disabledDuringRun = false;
        connect(run(), &SetAllRun::progressChanged, this, [&] {
            if (run()->done() == 1)
                disabledDuringRun = othersDisabled();
        });

        ConsoleCapture capture;
        harness.click(setAllButton());
        QVERIFY(run()->running());
        QCOMPARE(setAllButton()->property("text").toString(), QStringLiteral("停止(Stop)"));
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);
        const std::string printed = capture.finish();

        std::vector<Bytes> expected;
        for (const auto& part : {programming(2, 0xB, 2, 74), programming(3, 0xE, 16, 127), programming(26, 0x9, 1, 60)})
            expected.insert(expected.end(), part.begin(), part.end());
        QCOMPARE(sentBytes(), expected);
        for (const auto& packet : sim->sent())
            QCOMPARE(packet.destination, std::string("4AC1CC27 MIDI 1"));

        QCOMPARE(harness.state()->fullText(), QStringLiteral("全部设置完成(Set All done)\n"
                                                             "成功(succeeded): 3\n"
                                                             "失败(failed): 0\n"
                                                             "跳过(skipped): 24"));
        QCOMPARE(statusMessage(),
                 QStringLiteral("全部设置(Set All): 15条消息已送达(15 messages accepted) → 4AC1CC27 MIDI 1\n"
                                "转动每个旋钮以验证(turn each knob to verify): 已验证(verified) 0 / 待验证(to go) 3"));
        QCOMPARE(run()->done(), 3);
        QCOMPARE(run()->total(), 3);

        // Exactly the lines of three single presses, in display order.
        const QStringList lines = QString::fromStdString(printed).split(u'\n');
        QCOMPARE(knobLines(lines),
                 QStringList({QStringLiteral("2号旋钮"), QStringLiteral("3号旋钮"), QStringLiteral("26号旋钮")}));
        QCOMPARE(printed, replayOfPresses({2, 3, 26}));

        // The window drew the progress before the first knob, between the
        // knobs and after the last: every value from 0 to 3, in order.
        progressAtFrames.erase(std::unique(progressAtFrames.begin(), progressAtFrames.end()), progressAtFrames.end());
        QCOMPARE(progressAtFrames, QList<int>({0, 1, 2, 3}));
        QVERIFY(disabledDuringRun);
        QVERIFY(othersEnabled());
        QCOMPARE(setAllButton()->property("text").toString(), QStringLiteral("全部设置(Set All)"));
    }

    void knobThatFailsItsCheckIsNamedInTheSummary()
    {
        configure(2, "Control Change", "2", "74");
        configure(4, "Note On", "0", "60");
        configure(6, "Note Off", "3", "7");

        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);

        std::vector<Bytes> expected = programming(2, 0xB, 2, 74);
        const auto six = programming(6, 0x8, 3, 7);
        expected.insert(expected.end(), six.begin(), six.end());
        QCOMPARE(sentBytes(), expected);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("全部设置完成(Set All done)\n"
                                                             "成功(succeeded): 2\n"
                                                             "失败(failed): 1\n"
                                                             "跳过(skipped): 24\n"
                                                             "旋钮4: 参数错误-MIDI通道"));
    }

    void knobsWithoutControllerAreCountedAsNotSent()
    {
        unplug_controller(*sim, controller);
        configure(0, "Note On", "1", "1");
        configure(1, "Note On", "1", "2");

        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);

        QVERIFY(sim->sent().empty());
        QCOMPARE(harness.state()->fullText(),
                 QStringLiteral("全部设置完成(Set All done)\n"
                                "成功(succeeded): 0\n"
                                "未发送(not sent): 2\n"
                                "失败(failed): 0\n"
                                "跳过(skipped): 25\n"
                                "旋钮0: 未发送(not sent), 0/5条消息已送达(0 of 5 messages accepted)\n"
                                "旋钮1: 未发送(not sent), 0/5条消息已送达(0 of 5 messages accepted)"));
        QCOMPARE(statusMessage(),
                 QStringLiteral(
                     "全部设置(Set All): 未发送任何消息, 未找到控制器(Nothing was sent, no controller found)\n"
                     "未发送(not sent): 旋钮 0, 1 的消息未全部送达(knobs 0, 1: not all messages accepted)"));
        QVERIFY(status()->warning());
        QVERIFY(harness.item(QStringLiteral("statusWarningSymbol"))->isVisible());
    }

    void serviceThatAcceptsNothingMakesAWarning()
    {
        sim->set_send_status(controller.destination, -5);
        configure(0, "Note On", "1", "1");
        configure(1, "Note On", "1", "2");

        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);

        QVERIFY(sim->sent().empty());
        QCOMPARE(harness.state()->fullText(),
                 QStringLiteral("全部设置完成(Set All done)\n"
                                "成功(succeeded): 0\n"
                                "未发送(not sent): 2\n"
                                "失败(failed): 0\n"
                                "跳过(skipped): 25\n"
                                "旋钮0: 未发送(not sent), 0/5条消息已送达(0 of 5 messages accepted)\n"
                                "旋钮1: 未发送(not sent), 0/5条消息已送达(0 of 5 messages accepted)"));
        QCOMPARE(statusMessage(),
                 QStringLiteral("全部设置(Set All): 未送达任何消息, 10条被拒绝(Nothing was accepted, 10 refused)\n"
                                "未发送(not sent): 旋钮 0, 1 的消息未全部送达(knobs 0, 1: not all messages accepted)"));
        QVERIFY(status()->warning());
        QVERIFY(harness.item(QStringLiteral("statusWarningSymbol"))->isVisible());
    }

    void serviceThatAcceptsThreeOfFiveMakesAWarning()
    {
        sim->set_send_status_after(controller.destination, 3, -5);
        configure(2, "Control Change", "2", "74");

        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);

        const auto expected = programming(2, 0xB, 2, 74);
        QCOMPARE(sentBytes(), std::vector<Bytes>(expected.begin(), expected.begin() + 3));
        const QString summary = harness.state()->fullText();
        QVERIFY2(summary.contains(QStringLiteral("成功(succeeded): 0\n")), qPrintable(summary));
        QCOMPARE(summary, QStringLiteral("全部设置完成(Set All done)\n"
                                         "成功(succeeded): 0\n"
                                         "未发送(not sent): 1\n"
                                         "失败(failed): 0\n"
                                         "跳过(skipped): 26\n"
                                         "旋钮2: 未发送(not sent), 3/5条消息已送达(3 of 5 messages accepted)"));
        QCOMPARE(statusMessage(),
                 QStringLiteral("全部设置(Set All): 3条消息已送达(3 messages accepted) → 4AC1CC27 MIDI 1; 2条被拒绝(2 "
                                "refused)\n"
                                "未发送(not sent): 旋钮 2 的消息未全部送达(knob 2: not all messages accepted)"));
        QVERIFY(status()->warning());
    }

    void fullyAcceptedRunIsNoWarning()
    {
        configure(2, "Control Change", "2", "74");
        status()->setWarningMessage(QStringLiteral("x"));
        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);
        QVERIFY(!status()->warning());
        QVERIFY(!harness.item(QStringLiteral("statusWarningSymbol"))->isVisible());
    }

    void stopAfterTheFirstKnobLeavesTheRestUnsent()
    {
        configure(2, "Control Change", "2", "74");
        configure(3, "Bend Change", "16", "127");
        configure(26, "Note On", "1", "60");
        // The user presses Stop while the first knob is being set; the click
        // is handled once that knob is done.
        connect(run(), &SetAllRun::progressChanged, this, [&] {
            if (run()->done() == 1)
                QTest::mouseClick(harness.window(), Qt::LeftButton, Qt::NoModifier, centre(setAllButton()));
        });

        ConsoleCapture capture;
        harness.click(setAllButton());
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);
        const QStringList lines = capture.finishLines();

        QCOMPARE(sentBytes(), programming(2, 0xB, 2, 74));
        QCOMPARE(knobLines(lines), QStringList{QStringLiteral("2号旋钮")});
        QCOMPARE(harness.state()->fullText(), QStringLiteral("全部设置已停止(Set All stopped)\n"
                                                             "成功(succeeded): 1\n"
                                                             "失败(failed): 0\n"
                                                             "跳过(skipped): 24\n"
                                                             "未设置(not run): 2"));
        QVERIFY(othersEnabled());
    }

    void keyboardStartsTheRun()
    {
        configure(7, "Note On", "1", "1");
        for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
            sim->clear_sent();
            setAllButton()->forceActiveFocus(Qt::TabFocusReason);
            QVERIFY(setAllButton()->hasActiveFocus());
            QTest::keyClick(harness.window(), key);
            QTRY_VERIFY_WITH_TIMEOUT(!run()->running() && sim->sent().size() == 5, 5000);
            QCOMPARE(sentBytes(), programming(7, 0x9, 1, 1));
        }
    }

private:
    void configure(int record, const char* type, const char* channel, const char* controller)
    {
        configure_knob(*harness.state(), record, type, channel, controller);
    }

    std::vector<Bytes> sentBytes() const
    {
        std::vector<Bytes> bytes;
        for (const auto& packet : sim->sent())
            bytes.push_back(packet.bytes);
        return bytes;
    }

    // What the presses print when made one by one as the panels make them.
    std::string replayOfPresses(const QList<int>& records)
    {
        ConsoleCapture capture;
        for (int record : records) {
            CreateSetupAreaViewData* knob = harness.state()->record(record);
            print_line(QString::number(knob->knob_index()) + QStringLiteral("号旋钮"));
            setup_button_action(*knob, *harness.state());
        }
        return capture.finish();
    }

    // Every knob panel's controls, the menus and the other buttons.
    QList<QQuickItem*> otherControls() const
    {
        QList<QQuickItem*> controls{harness.item(QStringLiteral("importButton")),
                                    harness.item(QStringLiteral("exportButton")),
                                    harness.item(QStringLiteral("modelMenu"))};
        for (QQuickItem* panel : harness.panels()) {
            if (panel->property("placeholder").toBool())
                continue;
            for (const char* name : {"setButton", "typeMenu", "channelField", "controllerField"})
                controls.append(harness.item(QString::fromLatin1(name), panel));
        }
        return controls;
    }
    // What the window draws itself rather than the style, and fades while it
    // is off: the menus' arrows and the knobs' set buttons.
    QList<QQuickItem*> fadingParts() const
    {
        QList<QQuickItem*> parts;
        for (QQuickItem* control : otherControls()) {
            if (control->objectName() == QStringLiteral("typeMenu") ||
                control->objectName() == QStringLiteral("modelMenu"))
                parts.append(harness.item(QStringLiteral("menuArrow"), control));
            else if (control->objectName() == QStringLiteral("setButton"))
                parts.append(control);
        }
        return parts;
    }
    bool othersDisabled() const
    {
        const auto controls = otherControls();
        const auto parts = fadingParts();
        return std::none_of(controls.begin(), controls.end(), [](QQuickItem* c) { return c->isEnabled(); }) &&
               std::all_of(parts.begin(), parts.end(), [](QQuickItem* part) { return part->opacity() < 1; }) &&
               setAllButton()->isEnabled() &&
               setAllButton()->property("text").toString() == QStringLiteral("停止(Stop)");
    }
    bool othersEnabled() const
    {
        const auto controls = otherControls();
        const auto parts = fadingParts();
        return std::all_of(controls.begin(), controls.end(), [](QQuickItem* c) { return c->isEnabled(); }) &&
               std::all_of(parts.begin(), parts.end(), [](QQuickItem* part) { return part->opacity() == 1; });
    }

    static QString accessibleName(QQuickItem* item) { return accessible_attached(item, "name"); }
    static QPoint centre(QQuickItem* item)
    {
        return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    }

    WindowStatus* status() const { return WindowStatus::of(*harness.state()); }
    SetAllRun* run() const { return WindowStatus::of(*harness.state())->setAll(); }
    QQuickItem* setAllButton() const { return harness.item(QStringLiteral("setAllButton")); }
    QQuickItem* progressBar() const { return harness.item(QStringLiteral("setAllProgress")); }
    QString statusMessage() const { return harness.item(QStringLiteral("statusMessage"))->property("text").toString(); }

    std::unique_ptr<SimMidiHost> sim;
    PluggedController controller{};
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(SetAllTest)
#include "set_all_test.moc"
