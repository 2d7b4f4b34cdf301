// The ledger in the window: each knob panel's marker (written, differs, never
// written) for the controller chosen in the model menu, in the panel's
// accessible description, the status line's sum, presses that record, and
// set all with "only changed".
#include <QFile>
#include <QSettings>
#include <QTest>

#include <memory>

#include "midi/host_selection.h"
#include "model/ledger_store.h"
#include "programming_messages.h"
#include "sim_scene.h"
#include "ui/press/set_all_run.h"
#include "ui/status/window_status.h"
#include "window_harness.h"

using namespace dialcraft;

using Bytes = std::vector<uint8_t>;

namespace {

const QString written = QStringLiteral("✓ 已写入(written)");
const QString differs = QStringLiteral("≠ 与控制器不同(differs)");
const QString neverWritten = QStringLiteral("○ 未写入(never written)");

// The five messages that program `knob` as Control Change on `channel`.
std::vector<Bytes> controlChange(uint8_t knob, uint8_t channel, uint8_t controller)
{
    return programming_messages(knob, static_cast<uint8_t>(0xB0 | (channel - 1)), controller);
}

}  // namespace

class LedgerMarkersTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        QFile::remove(ledger_file_path());
        sim = std::make_unique<SimMidiHost>();
        set_midi_host(sim.get());
        first = plug_controller(*sim, "4AC1CC27");
        plug_controller(*sim, "4AC3CC27");
        QVERIFY(harness.open());
        harness.state()->set_machine_type_menu_string(QStringLiteral("4AC1CC27"));
        sim->clear_sent();
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void everyKnobStartsNeverWritten()
    {
        for (int knob : {0, 5, 26}) {
            QCOMPARE(markText(knob), neverWritten);
            QCOMPARE(accessible_attached(panel(knob), "description"), neverWritten);
            QCOMPARE(accessible_attached(setButton(knob), "description"), neverWritten);
            QCOMPARE(accessible_attached(mark(knob), "name"), neverWritten);
        }
        QVERIFY(!harness.item(QStringLiteral("knobMark"), harness.panelShowingRecord(27))->isVisible());
        QCOMPARE(summary(), QStringLiteral("4AC1CC27: 已写入 0, 不同 0, 未写入 27"));
        QVERIFY(!onlyChangedBox()->isVisible());
    }

    void aPressRecordsAndTheMarkerFollowsTheFields()
    {
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        harness.click(setButton(5));
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        QTRY_COMPARE(markText(5), written);
        QCOMPARE(accessible_attached(setButton(5), "description"), written);
        QCOMPARE(summary(), QStringLiteral("4AC1CC27: 已写入 1, 不同 0, 未写入 26"));
        QCOMPARE(markText(4), neverWritten);

        // Editing a field: the panel no longer shows what the controller holds.
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel(5)), QStringLiteral("75"));
        QTRY_COMPARE(markText(5), differs);
        QCOMPARE(accessible_attached(panel(5), "description"), differs);
        QCOMPARE(summary(), QStringLiteral("4AC1CC27: 已写入 0, 不同 1, 未写入 26"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel(5)), QStringLiteral("74"));
        QTRY_COMPARE(markText(5), written);

        // The other controller holds nothing of it.
        harness.state()->set_machine_type_menu_string(QStringLiteral("4AC3CC27"));
        QTRY_COMPARE(markText(5), neverWritten);
        QCOMPARE(summary(), QStringLiteral("4AC3CC27: 已写入 0, 不同 0, 未写入 27"));
        harness.state()->set_machine_type_menu_string(QStringLiteral("4AC1CC27"));
        QTRY_COMPARE(markText(5), written);
    }

    void aPressTheServiceRefusedRecordsNothing()
    {
        configure_knob(*harness.state(), 5, "Control Change", "2", "74");
        sim->set_send_status(first.destination, -5);  // every send fails (-EIO)
        harness.click(setButton(5));
        QVERIFY(!QFile::exists(ledger_file_path()));
        QCOMPARE(markText(5), neverWritten);
        QCOMPARE(summary(), QStringLiteral("4AC1CC27: 已写入 0, 不同 0, 未写入 27"));
    }

    void anotherProgramsEntryShowsAtOnce()
    {
        configure_knob(*harness.state(), 7, "Control Change", "3", "20");
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 7, QStringLiteral("Control Change"), 3, 20));
        QTRY_COMPARE(markText(7), written);
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 7, QStringLiteral("Control Change"), 3, 21));
        QTRY_COMPARE(markText(7), differs);
    }

    void setAllOnlyChangedSendsTheDifferingKnobs()
    {
        configure_knob(*harness.state(), 0, "Control Change", "1", "10");
        configure_knob(*harness.state(), 1, "Control Change", "1", "11");
        configure_knob(*harness.state(), 2, "Control Change", "1", "12");
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 0, QStringLiteral("Control Change"), 1, 10));
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 1, QStringLiteral("Control Change"), 1, 99));
        QTRY_VERIFY(onlyChangedBox()->isVisible());
        QCOMPARE(onlyChangedBox()->property("text").toString(), QStringLiteral("只设置不同的(Only changed)"));
        QCOMPARE(accessible_attached(onlyChangedBox(), "name"), QStringLiteral("只设置不同的(Only changed)"));
        QVERIFY(onlyChangedBox()->property("activeFocusOnTab").toBool());

        harness.click(onlyChangedBox());
        QVERIFY(run()->onlyChanged());
        harness.click(harness.item(QStringLiteral("setAllButton")));
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);

        std::vector<Bytes> expected = controlChange(1, 1, 11);
        const std::vector<Bytes> knob2 = controlChange(2, 1, 12);
        expected.insert(expected.end(), knob2.begin(), knob2.end());
        std::vector<Bytes> sent;
        for (const auto& packet : sim->sent())
            sent.push_back(packet.bytes);
        QCOMPARE(sent, expected);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("全部设置完成(Set All done)\n"
                                                             "成功(succeeded): 2\n"
                                                             "失败(failed): 0\n"
                                                             "跳过(skipped): 24\n"
                                                             "已跳过(skipped, already held): 1"));
        QTRY_COMPARE(summary(), QStringLiteral("4AC1CC27: 已写入 3, 不同 0, 未写入 24"));
    }

    void setAllWithoutOnlyChangedSendsEveryConfiguredKnob()
    {
        configure_knob(*harness.state(), 0, "Control Change", "1", "10");
        QVERIFY(record_in_ledger(QStringLiteral("4AC1CC27"), 0, QStringLiteral("Control Change"), 1, 10));
        QTRY_VERIFY(onlyChangedBox()->isVisible());
        QVERIFY(!run()->onlyChanged());
        harness.click(harness.item(QStringLiteral("setAllButton")));
        QTRY_VERIFY_WITH_TIMEOUT(!run()->running(), 5000);
        std::vector<Bytes> sent;
        for (const auto& packet : sim->sent())
            sent.push_back(packet.bytes);
        QCOMPARE(sent, controlChange(0, 1, 10));
        QVERIFY(!harness.state()->fullText().contains(QStringLiteral("already held")));
    }

private:
    QQuickItem* panel(int record) const { return harness.panelShowingRecord(record); }
    QQuickItem* mark(int record) const { return harness.item(QStringLiteral("knobMark"), panel(record)); }
    QQuickItem* setButton(int record) const { return harness.item(QStringLiteral("setButton"), panel(record)); }
    QString markText(int record) const { return mark(record)->property("text").toString(); }
    QString summary() const { return harness.item(QStringLiteral("ledgerSummary"))->property("text").toString(); }
    QQuickItem* onlyChangedBox() const { return harness.item(QStringLiteral("onlyChangedBox")); }
    SetAllRun* run() const { return WindowStatus::of(*harness.state())->setAll(); }

    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
    PluggedController first{};
};

DIALCRAFT_UI_TEST_MAIN(LedgerMarkersTest)
#include "ledger_markers_test.moc"
