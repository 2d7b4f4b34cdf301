// The window's life: the start-up hook when it is first shown, the shut-down
// hook when it is closed or destroyed, the stored table in between runs, and
// the text area that never takes focus.
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cstring>
#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/midi_link.h"
#include "midi/sim/sim_midi_host.h"
#include "model/global_state.h"
#include "model/handover.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {
const QString blank = QString(20, QLatin1Char(' '));
const QString placeholder = QStringLiteral("选择消息类型");

QSettings store()
{
    return QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft"));
}

// The compact JSON the store keeps; the test's strings need no escaping.
QByteArray storedJson(const QStringList& slots_)
{
    QByteArray json = "{\"settings\":[";
    for (qsizetype i = 0; i < slots_.size(); ++i) {
        if (i > 0)
            json += ',';
        json += '"' + slots_[i].toUtf8() + '"';
    }
    return json + "]}";
}

QStringList accessLines()
{
    QStringList lines;
    for (int i = 0; i <= 26; ++i)
        lines << QStringLiteral("Accessing configuration.settings at index: %1").arg(i);
    return lines;
}

QStringList shown(QQuickItem* panel, WindowHarness& harness)
{
    return {harness.item(QStringLiteral("typeMenu"), panel)->property("displayText").toString(),
            harness.item(QStringLiteral("channelField"), panel)->property("text").toString(),
            harness.item(QStringLiteral("controllerField"), panel)->property("text").toString()};
}
}  // namespace

class LifecycleTest : public WindowTest {
    Q_OBJECT

public:
    LifecycleTest() : WindowTest(Open::byTest) {}

private slots:

    void firstStartWithAnEmptyStore()
    {
        std::memset(device_name, 0, sizeof device_name);
        device_connect_state_retval[10] = 1;
        device_connect_state_retval[11] = 1;
        device_connect_state_retval[12] = 1;

        ConsoleCapture capture;
        const bool opened = harness.open() != nullptr;
        const QStringList lines = capture.finishLines();

        QVERIFY(opened);
        QStringList expected{QStringLiteral("set_device_name 4acbcc27 \r"), QStringLiteral("middle_value b \r"),
                             QStringLiteral("Generated device_name: 4ACBCC27"),
                             QStringLiteral("MIDIGetNumberOfSources 0 \r"), QStringLiteral("midi init failed \r")};
        expected << accessLines();
        QCOMPARE(lines, expected);
        QCOMPARE(QByteArray(device_name), QByteArray("4ACBCC27"));
        QCOMPARE(device_connect_state_retval[10], uint8_t(0));
        QCOMPARE(device_connect_state_retval[11], uint8_t(0));
        QCOMPARE(device_connect_state_retval[12], uint8_t(1));
        QVERIFY(harness.contentView()->appeared());

        // Blank slots: no type, the channel emptied, the controller left as created.
        for (int knob = 0; knob <= 26; ++knob)
            QCOMPARE(shown(harness.panelShowingRecord(knob), harness), QStringList({placeholder, QString(), "127"}));
        QCOMPARE(shown(harness.panelShowingRecord(27), harness), QStringList({placeholder, "16", "127"}));
        QCOMPARE(harness.item(QStringLiteral("modelMenu"))->property("displayText").toString(),
                 QStringLiteral("4AC0CC27"));
        QCOMPARE(harness.item(QStringLiteral("textArea"))->property("text").toString(), initial_full_text);
        QVERIFY(!store().contains(QStringLiteral("configurationKey")));
    }

    void closingStoresKnobsZeroToTwentySix()
    {
        QVERIFY(harness.open());
        QQuickItem* panel3 = harness.panelShowingRecord(3);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel3), QStringLiteral("Note On")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel3), QStringLiteral("4"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel3), QStringLiteral("10"));
        QQuickItem* panel26 = harness.panelShowingRecord(26);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel26), QStringLiteral("Bend Change")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel26), QStringLiteral("x"));
        // Record 27 has no working panel; whatever it holds is never stored.
        CreateSetupAreaViewData* record27 = harness.state()->record(27);
        record27->set_message_type_menu_string(QStringLiteral("Note On"));
        record27->set_message_channel_menu_string(QStringLiteral("1"));
        record27->set_message_controller_number_code_string(QStringLiteral("1"));
        QVERIFY(!store().contains(QStringLiteral("configurationKey")));  // nothing saves before closing

        ConsoleCapture capture;
        harness.close();
        harness.destroy();  // a close followed by destruction shuts down once
        const QStringList lines = capture.finishLines();

        QStringList expected{QStringLiteral("midi_exit\r")};
        expected << accessLines();
        QCOMPARE(lines, expected);

        QStringList table;
        for (int knob = 0; knob <= 26; ++knob) {
            if (knob == 3)
                table << QStringLiteral("Note On") << QStringLiteral("4") << QStringLiteral("10");
            else if (knob == 26)
                table << QStringLiteral("Bend Change") << QStringLiteral("x") << QStringLiteral("127");
            else
                table << placeholder << QString() << QStringLiteral("127");
        }
        for (int slot = 81; slot < 90; ++slot)
            table << blank;
        QCOMPARE(store().value(QStringLiteral("configurationKey")).toByteArray(), storedJson(table));
    }

    void restartRestoresTheStoredKnobs()
    {
        QVERIFY(harness.open());
        QQuickItem* panel = harness.panelShowingRecord(9);
        QVERIFY(harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Note Off")));
        harness.replaceText(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("16"));
        harness.replaceText(harness.item(QStringLiteral("controllerField"), panel), QStringLiteral("05"));
        harness.state()->record(27)->set_message_channel_menu_string(QStringLiteral("9"));
        harness.close();
        harness.destroy();

        ConsoleCapture capture;
        const bool opened = harness.open() != nullptr;
        const QStringList lines = capture.finishLines();

        QVERIFY(opened);
        QVERIFY(lines.contains(QStringLiteral("Expanded configuration.settings to 300 elements")));
        QCOMPARE(shown(harness.panelShowingRecord(9), harness),
                 QStringList({QStringLiteral("Note Off"), QStringLiteral("16"), QStringLiteral("05")}));
        QCOMPARE(shown(harness.panelShowingRecord(8), harness), QStringList({placeholder, QString(), "127"}));
        QCOMPARE(shown(harness.panelShowingRecord(27), harness), QStringList({placeholder, "16", "127"}));
    }

    void storedValuesAreCheckedAndRecord27IsLeftAlone()
    {
        QStringList table(300, blank);
        table[0] = QStringLiteral("System Change");
        table[1] = QStringLiteral("3");
        table[2] = QStringLiteral("10");
        table[3] = QStringLiteral("Control Change");
        table[4] = QStringLiteral("0");
        table[5] = QStringLiteral("64");
        table[81] = QStringLiteral("Note On");
        table[82] = QStringLiteral("1");
        table[83] = QStringLiteral("1");
        store().setValue(QStringLiteral("configurationKey"), storedJson(table));
        store().sync();

        QVERIFY(harness.open());
        QCOMPARE(shown(harness.panelShowingRecord(0), harness),
                 QStringList({placeholder, QStringLiteral("3"), QStringLiteral("10")}));
        QCOMPARE(shown(harness.panelShowingRecord(1), harness),
                 QStringList({QStringLiteral("Control Change"), QString(), QStringLiteral("64")}));
        QCOMPARE(shown(harness.panelShowingRecord(27), harness), QStringList({placeholder, "16", "127"}));

        // The stored "System Change" cannot be programmed: the set action says so.
        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(0)));
        capture.finish();
        QCOMPARE(harness.state()->fullText(),
                 QStringLiteral("参数错误-消息类型\n请下拉选择正确参数如Control Change\nNote On\n..."));

        ConsoleCapture closing;
        harness.close();
        closing.finish();
        const QByteArray saved = store().value(QStringLiteral("configurationKey")).toByteArray();
        QVERIFY(saved.contains("\"Note On\",\"1\",\"1\""));  // slots 81 to 83 kept as loaded
    }

    void destructionWithoutCloseStillStores()
    {
        QVERIFY(harness.open());
        harness.replaceText(harness.item(QStringLiteral("channelField"), harness.panelShowingRecord(0)),
                            QStringLiteral("7"));

        ConsoleCapture capture;
        harness.destroy();
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.value(0), QStringLiteral("midi_exit\r"));
        QCOMPARE(lines.size(), 28);
        QVERIFY(
            store()
                .value(QStringLiteral("configurationKey"))
                .toByteArray()
                .startsWith(storedJson({placeholder, QStringLiteral("7"), QStringLiteral("127")}).chopped(2) + ','));
    }

    void showingAgainRunsNoHook()
    {
        QVERIFY(harness.open());
        ConsoleCapture capture;
        harness.window()->hide();
        QCoreApplication::processEvents();
        harness.window()->show();
        QVERIFY(QTest::qWaitForWindowExposed(harness.window()));
        const QByteArray printed = QByteArray::fromStdString(capture.finish());

        QCOMPARE(printed, QByteArray());
        QVERIFY(!store().contains(QStringLiteral("configurationKey")));
    }

    void textAreaNeverTakesFocusOrInput()
    {
        QVERIFY(harness.open());
        QQuickItem* area = harness.item(QStringLiteral("textArea"));
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        QVERIFY(area && frame);
        QVERIFY(!area->isEnabled());
        QVERIFY(area->property("readOnly").toBool());
        // At least 200 by 200; it fills the device column's width.
        QVERIFY(frame->width() >= 200.0);
        QVERIFY(frame->height() >= 200.0);
        QCOMPARE(area->property("font").value<QFont>().pixelSize(), 16);
        auto* border = frame->property("background").value<QQuickItem*>();
        QObject* line = border->property("border").value<QObject*>();
        QCOMPARE(line->property("width").toReal(), 1.0);
        QCOMPARE(line->property("color").value<QColor>(), QColor(Qt::black));

        harness.click(area);
        QVERIFY(!area->hasActiveFocus());
        area->forceActiveFocus();
        QVERIFY(!area->hasActiveFocus());
        for (int i = 0; i < 200; ++i) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            QVERIFY(!area->hasActiveFocus());
        }
        QTest::keyClick(harness.window(), Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(harness.window(), Qt::Key_Z);
        QCOMPARE(area->property("text").toString(), initial_full_text);
        QCOMPARE(harness.state()->fullText(), initial_full_text);

        // It shows every later text with its line breaks.
        harness.state()->setFullText(QStringLiteral("旋钮5-设置失败..\n4AC1CC27"));
        QCOMPARE(area->property("text").toString(), QStringLiteral("旋钮5-设置失败..\n4AC1CC27"));
        QCOMPARE(area->property("lineCount").toInt(), 2);
    }

    // Last: it ends the application's event loop.
    void closingTheLastWindowEndsTheProgram()
    {
        QVERIFY(harness.open());
        QSignalSpy lastClosed(qGuiApp, &QGuiApplication::lastWindowClosed);
        QTimer::singleShot(0, qGuiApp, [this] { harness.window()->close(); });
        QTimer::singleShot(10000, qGuiApp, [] { QCoreApplication::exit(99); });  // never ended

        ConsoleCapture capture;
        const int result = QCoreApplication::exec();
        capture.finish();

        QCOMPARE(result, 0);
        QCOMPARE(lastClosed.count(), 1);
        QVERIFY(store().contains(QStringLiteral("configurationKey")));
    }

private:
};

DIALCRAFT_UI_TEST_MAIN(LifecycleTest)
#include "lifecycle_test.moc"
