// The live monitor in the window: messages from the simulated controllers
// light the matched panels with their values, fill the monitor's list with
// exact lines, verify knobs just programmed, and a burst is counted exactly
// with a bounded number of frames. Times print in UTC here (TZ=UTC).
#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTest>

#include <chrono>
#include <memory>

#include "midi/host_selection.h"
#include "model/ledger_marker_list.h"
#include "model/ledger_store.h"
#include "sim_scene.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {

// 2026-11-24 21:14:03.512 UTC
const auto fixed_time = std::chrono::system_clock::time_point(std::chrono::milliseconds(1'795'554'843'512));

}  // namespace

class MonitorTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        QFile::remove(ledger_file_path());
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
        first = plug_controller(*sim, "4AC1CC27");
        second = plug_controller(*sim, "4AC3CC27");
        QVERIFY(harness.open());
        harness.state()->set_machine_type_menu_string(QStringLiteral("4AC1CC27"));
        QTRY_VERIFY(monitor()->listening());
        monitor()->inbox().set_clock([] { return fixed_time; });
        sim->clear_sent();
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void aMatchedKnobLightsWithItsValue()
    {
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        QVERIFY(!activity(5)->isVisible());
        sim->inject(first.source, {0xB1, 0x4A, 0x40});
        QTRY_COMPARE(activityText(5), QStringLiteral("◉ 值(value) 64"));
        QCOMPARE(monitor()->lastValues().at(5), 64);
        QCOMPARE(accessible_attached(panel(5), "description"), QStringLiteral("○ 未写入(never written), 值(value) 64"));
        // The light goes out; the value stays.
        QTRY_COMPARE(activityText(5), QStringLiteral("值(value) 64"));
        QCOMPARE(activityText(4), QString());
        QCOMPARE(monitor()->log()->lineAt(0),
                 QStringLiteral("21:14:03.512  4AC1CC27  Control Change  ch 2  #74  64  -> 5号旋钮"));
    }

    void linesForUnmatchedSharedAndSystemMessages()
    {
        configure_knob(*harness.state(), 3, "Note On", "1", "60");
        configure_knob(*harness.state(), 9, "Note On", "1", "60");
        configure_knob(*harness.state(), 12, "Bend Change", "16", "0");
        harness.click(toggle());
        QVERIFY(list()->isVisible());
        // Running status carries the second Note On; F8 inside a message is
        // a clock of its own; the other controller's bend matches by its
        // serial's table, which is the same table here.
        sim->inject(first.source, {0x90, 0x3C, 0xF8, 0x7F, 0x3D, 0x00});
        sim->inject(second.source, {0xEF, 0x00, 0x40});
        QTRY_COMPARE(monitor()->log()->rowCount(), 4);
        QCOMPARE(monitor()->log()->lineAt(0),
                 QStringLiteral("21:14:03.512  4AC1CC27  Clock  -  -  -  -> 未匹配(unmatched)"));
        QCOMPARE(monitor()->log()->lineAt(1),
                 QStringLiteral("21:14:03.512  4AC1CC27  Note On  ch 1  #60  127  -> 3号旋钮, 9号旋钮"));
        QCOMPARE(monitor()->log()->lineAt(2),
                 QStringLiteral("21:14:03.512  4AC1CC27  Note On  ch 1  #61  0  -> 未匹配(unmatched)"));
        QCOMPARE(monitor()->log()->lineAt(3),
                 QStringLiteral("21:14:03.512  4AC3CC27  Pitch Bend  ch 16  -  8192  -> 12号旋钮"));
        QCOMPARE(monitor()->countsText(), QStringLiteral("收到(received) 4, 未匹配(unmatched) 2"));
        QCOMPARE(harness.item(QStringLiteral("monitorCounts"))->property("text").toString(), monitor()->countsText());
        QCOMPARE(monitor()->lastValues().at(3), 127);
        QCOMPARE(monitor()->lastValues().at(9), 127);
        QCOMPARE(monitor()->lastValues().at(12), 8192);
        // A screen reader is told the newest line.
        QTRY_COMPARE(monitor()->latest(), monitor()->log()->lineAt(3));
    }

    void aProgrammedKnobIsVerifiedByTurningIt()
    {
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        harness.click(setButton(5));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        QVERIFY(status()->message().endsWith(QStringLiteral("\n请转动 5 号旋钮以验证(turn knob 5 to verify)")));
        sim->inject(first.source, {0xB1, 0x4A, 0x41});
        QTRY_COMPARE(status()->message(), QStringLiteral("5 号旋钮 已验证(verified)"));
        QTRY_COMPARE(activityText(5), QStringLiteral("✓ 已验证(verified) · 值(value) 65"));
        const HeldSetting* held = read_ledger().held(QStringLiteral("4AC1CC27"), 5);
        QVERIFY(held);
        QVERIFY(held->verified.isValid());
        // Programming it again asks again.
        harness.click(setButton(5));
        QCOMPARE(monitor()->verified().at(5), 0);
    }

    void theOldSettingIsNamed()
    {
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 5, QStringLiteral("Control Change"), 1, 10));
        QTRY_COMPARE(status()->ledgerMarkers()->written() + status()->ledgerMarkers()->differs(), 1);
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        harness.click(setButton(5));
        sim->inject(first.source, {0xB0, 0x0A, 0x10});
        QTRY_COMPARE(status()->message(), QStringLiteral("5 号旋钮 仍发送旧设置(still sends the old setting)"));
        // The other controller's messages settle nothing.
        sim->inject(second.source, {0xB1, 0x4A, 0x10});
        sim->inject(first.source, {0xB1, 0x4A, 0x10});
        QTRY_COMPARE(status()->message(), QStringLiteral("5 号旋钮 已验证(verified)"));
    }

    void anUnturnedKnobTimesOut()
    {
        monitor()->set_verify_window(std::chrono::milliseconds(200));
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        harness.click(setButton(5));
        QTRY_COMPARE(status()->message(),
                     QStringLiteral("5 号旋钮 60 秒内没有收到, 未验证(not verified: nothing within 60 s)"));
        QCOMPARE(monitor()->verified().at(5), 0);
    }

    void setAllInvitesToTurnEveryKnob()
    {
        configure_knob(*harness.state(), 0, "Control Change", "1", "10");
        configure_knob(*harness.state(), 1, "Note On", "1", "11");
        harness.click(harness.item(QStringLiteral("setAllButton")));
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);
        QVERIFY(status()->message().endsWith(
            QStringLiteral("\n转动每个旋钮以验证(turn each knob to verify): 已验证(verified) 0 / 待验证(to go) 2")));
        sim->inject(first.source, {0x90, 0x0B, 0x20});
        QTRY_COMPARE(status()->message(),
                     QStringLiteral(
                         "转动每个旋钮以验证(turn each knob to verify): 已验证(verified) 1 / 待验证(to go) 1"));
        sim->inject(first.source, {0xB0, 0x0A, 0x20});
        QTRY_COMPARE(status()->message(),
                     QStringLiteral(
                         "转动每个旋钮以验证(turn each knob to verify): 已验证(verified) 2 / 待验证(to go) 0"));
    }

    void aBurstIsCountedWithAtMostSixtyFramesASecond()
    {
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        const int framesBefore = monitor()->frames();
        QElapsedTimer clock;
        clock.start();
        constexpr int burst = 3000;
        for (int i = 0; i < burst; ++i)
            sim->inject(first.source, {0xB1, 0x4A, static_cast<uint8_t>(i & 0x7F)});
        QTRY_COMPARE(monitor()->received(), double(burst));
        // The last frame takes the last messages.
        QTRY_COMPARE(monitor()->lastValues().at(5), (burst - 1) & 0x7F);
        QTRY_COMPARE(monitor()->log()->rowCount(), 200);
        const qint64 elapsed = clock.elapsed();
        const int frames = monitor()->frames() - framesBefore;
        QVERIFY2(frames <= 1 + elapsed / 16, qPrintable(QStringLiteral("%1 frames in %2 ms").arg(frames).arg(elapsed)));
        QVERIFY(monitor()->log()->lineAt(199).endsWith(QStringLiteral("#74  %1  -> 5号旋钮").arg((burst - 1) & 0x7F)));
        QCOMPARE(monitor()->countsText(), QStringLiteral("收到(received) 3000, 未匹配(unmatched) 0"));
    }

    void pauseKeepsCountingAndClearEmpties()
    {
        harness.click(toggle());
        QCOMPARE(accessible_attached(toggle(), "name"), QStringLiteral("监视器(Monitor) 已展开(expanded)"));
        QTRY_VERIFY(button("monitorPause")->isVisible() && button("monitorPause")->width() > 0);
        QCOMPARE(accessible_attached(button("monitorPause"), "name"), QStringLiteral("暂停(Pause)"));
        QCOMPARE(accessible_attached(button("monitorClear"), "name"), QStringLiteral("清除(Clear)"));
        QCOMPARE(accessible_attached(list(), "name"), QStringLiteral("监视器消息(Monitor messages)"));
        QVERIFY(button("monitorPause")->property("activeFocusOnTab").toBool() ||
                button("monitorPause")->property("focusPolicy").toInt() == Qt::StrongFocus);
        sim->inject(first.source, {0xB0, 0x01, 0x02});
        QTRY_COMPARE(monitor()->log()->rowCount(), 1);
        pressByKeyboard(button("monitorPause"));
        QVERIFY(monitor()->paused());
        QCOMPARE(accessible_attached(button("monitorPause"), "name"), QStringLiteral("继续(Resume)"));
        sim->inject(first.source, {0xB0, 0x01, 0x03});
        QTRY_COMPARE(monitor()->received(), 2.0);
        QCOMPARE(monitor()->log()->rowCount(), 1);
        pressByKeyboard(button("monitorClear"));
        QCOMPARE(monitor()->log()->rowCount(), 0);
        QCOMPARE(monitor()->received(), 2.0);
        pressByKeyboard(button("monitorPause"));
        QVERIFY(!monitor()->paused());
        sim->inject(first.source, {0xB0, 0x01, 0x04});
        QTRY_COMPARE(monitor()->log()->rowCount(), 1);
    }

    void theMonitorOpensAndClosesByKeyboard()
    {
        toggle()->forceActiveFocus();
        QTest::keyClick(harness.window(), Qt::Key_Space);
        QTRY_VERIFY(list()->isVisible());
        QTest::keyClick(harness.window(), Qt::Key_Space);
        QTRY_VERIFY(!list()->isVisible());
    }

private:
    void pressByKeyboard(QQuickItem* button)
    {
        button->forceActiveFocus(Qt::TabFocusReason);
        QTRY_VERIFY(button->hasActiveFocus());
        QTest::keyClick(harness.window(), Qt::Key_Space);
    }
    KnobMonitor* monitor() const { return status()->monitor(); }
    WindowStatus* status() const { return WindowStatus::of(*harness.state()); }
    SetAllRun* run() const { return status()->setAll(); }
    QQuickItem* panel(int knob) const { return harness.panelShowingRecord(knob); }
    QQuickItem* setButton(int knob) const { return harness.item(QStringLiteral("setButton"), panel(knob)); }
    QQuickItem* activity(int knob) const { return harness.item(QStringLiteral("knobActivity"), panel(knob)); }
    QString activityText(int knob) const
    {
        QQuickItem* item = activity(knob);
        return item->isVisible() ? item->property("text").toString() : QString();
    }
    QQuickItem* toggle() const { return harness.item(QStringLiteral("monitorToggle")); }
    QQuickItem* list() const { return harness.item(QStringLiteral("monitorList")); }
    QQuickItem* button(const char* name) const { return harness.item(QString::fromLatin1(name)); }

    std::unique_ptr<SimMidiHost> sim;
    PluggedController first{};
    PluggedController second{};
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(MonitorTest)
#include "monitor_test.moc"
