// The two pull-down menus: a knob's message-type menu with its five entries,
// and the model menu with the sixteen serials, chosen through their lists.
#include <QSettings>
#include <QTest>

#include <cstring>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/midi_link.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {
const QStringList typeEntries{QStringLiteral("Note On"), QStringLiteral("Note Off"), QStringLiteral("Control Change"),
                              QStringLiteral("Bend Change"), QStringLiteral("选择消息类型")};

QStringList recordTexts(GlobalState* state)
{
    QStringList texts;
    for (int i = 0; i < 36; ++i) {
        CreateSetupAreaViewData* r = state->record(i);
        texts << r->message_type_menu_string() << r->message_channel_menu_string()
              << r->message_controller_number_code_string();
    }
    return texts;
}
}  // namespace

class MenusTest : public WindowTest {
    Q_OBJECT

public:
    MenusTest() : WindowTest(Open::inInit) {}

private slots:

    void typeMenuOffersExactlyFiveEntries()
    {
        for (QQuickItem* panel : harness.panels()) {
            QQuickItem* menu = harness.item(QStringLiteral("typeMenu"), panel);
            QCOMPARE(harness.entries(menu), typeEntries);
            QCOMPARE(menu->property("displayText").toString(), QStringLiteral("选择消息类型"));
            QCOMPARE(menu->width(), 130.0);
        }
    }

    void choosingATypeWritesTheRecordAndTheTitle()
    {
        QQuickItem* panel = harness.panelShowingRecord(5);
        QQuickItem* menu = harness.item(QStringLiteral("typeMenu"), panel);
        CreateSetupAreaViewData* record = harness.state()->record(5);

        for (const QString& entry : typeEntries) {
            QVERIFY(harness.choose(menu, entry));
            QCOMPARE(record->message_type_menu_string(), entry);
            QCOMPARE(menu->property("displayText").toString(), entry);
        }
        QVERIFY(harness.choose(menu, QStringLiteral("Bend Change")));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("Bend Change"));
        // The last entry puts the placeholder back.
        QVERIFY(harness.choose(menu, QStringLiteral("选择消息类型")));
        QCOMPARE(record->message_type_menu_string(), QStringLiteral("选择消息类型"));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("选择消息类型"));
        QVERIFY(!harness.choose(menu, QStringLiteral("System Change")));
    }

    void titleFollowsTheRecord()
    {
        QQuickItem* menu = harness.item(QStringLiteral("typeMenu"), harness.panelShowingRecord(9));
        harness.state()->record(9)->set_message_type_menu_string(QStringLiteral("Note Off"));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("Note Off"));
    }

    void modelMenuListsTheSixteenSerials()
    {
        QQuickItem* menu = harness.item(QStringLiteral("modelMenu"));
        QVERIFY(menu);
        QStringList expected;
        for (const char* middle : {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "A", "B", "C", "D", "E", "F"})
            expected << QStringLiteral("4AC%1CC27").arg(QLatin1String(middle));
        QCOMPARE(harness.entries(menu), expected);
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("4AC0CC27"));
        QCOMPARE(menu->width(), 130.0);
    }

    void choosingAModelChangesOnlyTheTitle()
    {
        QQuickItem* menu = harness.item(QStringLiteral("modelMenu"));
        GlobalState* state = harness.state();
        const QString fullText = state->fullText();
        const QStringList records = recordTexts(state);
        char nameBefore[sizeof device_name];
        std::memcpy(nameBefore, device_name, sizeof device_name);

        ConsoleCapture capture;
        const bool chosen = harness.choose(menu, QStringLiteral("4ACECC27"));
        const QByteArray printed = QByteArray::fromStdString(capture.finish());

        QVERIFY(chosen);
        QCOMPARE(state->machine_type_menu_string(), QStringLiteral("4ACECC27"));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("4ACECC27"));
        QCOMPARE(printed, QByteArray());
        QCOMPARE(state->fullText(), fullText);
        QCOMPARE(recordTexts(state), records);
        QVERIFY(std::memcmp(nameBefore, device_name, sizeof device_name) == 0);

        // A serial written elsewhere (the set action's detection) shows at once.
        state->set_machine_type_menu_string(QStringLiteral("4AC3CC27"));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("4AC3CC27"));
    }

private:
};

DIALCRAFT_UI_TEST_MAIN(MenusTest)
#include "menus_test.moc"
