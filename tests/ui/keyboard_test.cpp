// The window driven by the keyboard alone: Tab order through the panels, the
// device column and the top bar; Space and Enter on a set button, Enter in a
// knob's fields; the focus frame; a focused control scrolled into view.
#include <QSettings>
#include <QTest>

#include <memory>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "sim_scene.h"
#include "window_harness.h"

using namespace dialcraft;

namespace {
// Types `text` (ASCII) key by key into the window's focused item.
void typeKeys(QQuickWindow* window, const QString& text)
{
    for (const QChar c : text)
        QTest::keyClick(window, c.toLatin1());
}
}  // namespace

using Bytes = std::vector<uint8_t>;

class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        QSettings().clear();
        sim = std::make_unique<SimMidiHost>();
        plug_controller(*sim, "4AC1CC27");
        set_midi_host(sim.get());
        QVERIFY(harness.open());
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
        sim.reset();
    }

    void tabVisitsEachPanelInOrderThenTheMonitorThenDeviceColumnThenTopBar()
    {
        QList<QQuickItem*> expected;
        for (QQuickItem* panel : harness.panels()) {
            if (panel->property("record").value<CreateSetupAreaViewData*>()->knob_index() == 27)
                continue;  // the inert placeholder takes no focus
            for (const char* name : {"setButton", "typeMenu", "channelField", "controllerField"})
                expected << harness.item(QString::fromLatin1(name), panel);
        }
        // The monitor under the rows, collapsed: only its toggle.
        expected << harness.item(QStringLiteral("monitorToggle"));
        expected << harness.item(QStringLiteral("modelMenu")) << harness.item(QStringLiteral("textAreaFrame"));

        QList<QQuickItem*> visited;
        for (int i = 0; i < expected.size(); ++i) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            visited << harness.window()->activeFocusItem();
        }
        QCOMPARE(visited.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i)
            QVERIFY2(visited[i] == expected[i], qPrintable(QStringLiteral("stop %1: %2").arg(i).arg(name(visited[i]))));

        // Then the top bar, import before export, and around again to knob
        // 0's set button; Shift+Tab goes back.
        QStringList bar;
        for (int i = 0; i < 8 && harness.window()->activeFocusItem() != expected.first(); ++i) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            bar << name(harness.window()->activeFocusItem());
        }
        QCOMPARE(harness.window()->activeFocusItem(), expected.first());
        QVERIFY2(bar.indexOf(QStringLiteral("importButton")) >= 0, qPrintable(bar.join(u' ')));
        QVERIFY2(bar.indexOf(QStringLiteral("importButton")) < bar.indexOf(QStringLiteral("exportButton")),
                 qPrintable(bar.join(u' ')));
        QTest::keyClick(harness.window(), Qt::Key_Backtab);
        QVERIFY(harness.window()->activeFocusItem() != expected.first());
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), expected.first());
    }

    void firstTabReachesKnobZeroAndSpaceSetsIt()
    {
        CreateSetupAreaViewData* knob = harness.state()->record(0);
        QQuickItem* panel = harness.panelShowingRecord(0);
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("setButton"), panel));

        // Type menu by keyboard: Up moves the choice from the placeholder,
        // last in the menu, to Bend Change, then Control Change.
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("typeMenu"), panel));
        QTest::keyClick(harness.window(), Qt::Key_Up);
        QTest::keyClick(harness.window(), Qt::Key_Up);
        QCOMPARE(knob->message_type_menu_string(), QStringLiteral("Control Change"));
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("channelField"), panel));
        QTest::keyClick(harness.window(), Qt::Key_3);
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("controllerField"), panel));
        QTest::keyClick(harness.window(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(harness.window(), Qt::Key_2);
        QTest::keyClick(harness.window(), Qt::Key_0);
        QCOMPARE(knob->message_channel_menu_string(), QStringLiteral("3"));
        QCOMPARE(knob->message_controller_number_code_string(), QStringLiteral("20"));

        QTest::keyClick(harness.window(), Qt::Key_Backtab);
        QTest::keyClick(harness.window(), Qt::Key_Backtab);
        QTest::keyClick(harness.window(), Qt::Key_Backtab);
        QCOMPARE(harness.window()->activeFocusItem(), harness.item(QStringLiteral("setButton"), panel));
        sim->clear_sent();
        ConsoleCapture capture;
        QTest::keyClick(harness.window(), Qt::Key_Space);
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.value(0), QStringLiteral("0号旋钮"));
        QCOMPARE(lines.count(QStringLiteral("0号旋钮")), 1);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮0-设置成功!"));
        expectSequence({{0xF8}, {0x92, 0x14, 0x00}, {0x82, 0x14, 0x00}, {0xB2, 0x14, 0x00}, {0xF8}});

        // Enter on the focused button presses it too.
        sim->clear_sent();
        ConsoleCapture again;
        QTest::keyClick(harness.window(), Qt::Key_Return);
        QCOMPARE(again.finishLines().count(QStringLiteral("0号旋钮")), 1);
        expectSequence({{0xF8}, {0x92, 0x14, 0x00}, {0x82, 0x14, 0x00}, {0xB2, 0x14, 0x00}, {0xF8}});
    }

    void enterInAFieldPressesThatKnobsSetButton()
    {
        CreateSetupAreaViewData* knob = harness.state()->record(5);
        knob->set_message_type_menu_string(QStringLiteral("Control Change"));
        knob->set_message_channel_menu_string(QStringLiteral("2"));
        QQuickItem* panel = harness.panelShowingRecord(5);
        QQuickItem* controller = harness.item(QStringLiteral("controllerField"), panel);
        controller->forceActiveFocus(Qt::TabFocusReason);
        QTest::keyClick(harness.window(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(harness.window(), Qt::Key_7);
        QTest::keyClick(harness.window(), Qt::Key_4);
        sim->clear_sent();

        ConsoleCapture capture;
        QTest::keyClick(harness.window(), Qt::Key_Return);
        const QStringList lines = capture.finishLines();

        QCOMPARE(lines.value(0), QStringLiteral("5号旋钮"));
        QCOMPARE(lines.count(QStringLiteral("5号旋钮")), 1);
        QCOMPARE(harness.state()->fullText(), QStringLiteral("旋钮5-设置成功!"));
        expectSequence({{0xF8}, {0x91, 0x4A, 0x05}, {0x81, 0x4A, 0x05}, {0xB1, 0x4A, 0x05}, {0xF8}});

        // The keypad's Enter in the channel field does the same.
        harness.item(QStringLiteral("channelField"), panel)->forceActiveFocus(Qt::TabFocusReason);
        sim->clear_sent();
        ConsoleCapture keypad;
        QTest::keyClick(harness.window(), Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(keypad.finishLines().value(0), QStringLiteral("5号旋钮"));
        QCOMPARE(sim->sent().size(), size_t(5));
    }

    void focusFrameIsThickAndShownOnlyWithTheFocus()
    {
        QQuickItem* panel = harness.panelShowingRecord(0);
        QQuickItem* button = harness.item(QStringLiteral("setButton"), panel);
        // One frame in the window, drawn around whichever control has the focus.
        QCOMPARE(harness.items(QStringLiteral("focusRing")).size(), 1);
        QQuickItem* ring = harness.focusRing();
        QVERIFY(ring);
        QVERIFY(!ring->isVisible());
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QVERIFY(harness.focusFrameOn(button));  // drawn outside the button
        QObject* border = ring->property("border").value<QObject*>();
        QVERIFY(border->property("width").toReal() >= 2);
        // Dark blue against the light window and the yellow face alike.
        const QColor colour = border->property("color").value<QColor>();
        QVERIFY(colour.lightnessF() < 0.45);
        // Round like the button's face.
        QCOMPARE(ring->property("radius").toReal(), 12.0);

        // Each control of the panel shows the frame while focused.
        for (const char* name : {"typeMenu", "channelField", "controllerField"}) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            QQuickItem* control = harness.item(QString::fromLatin1(name), panel);
            QVERIFY2(harness.focusFrameOn(control), name);
            QCOMPARE(ring->property("radius").toReal(), 5.0);
        }
        // The frame grabbed for the documentation shows the focused set button.
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QQuickItem* next = harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(1));
        QCOMPARE(harness.window()->activeFocusItem(), next);
        QVERIFY(harness.focusFrameOn(next));

        // A text field shows it while it has the focus, also from the pointer.
        harness.click(harness.item(QStringLiteral("channelField"), panel));
        QVERIFY(!harness.focusFrameOn(next));
        QVERIFY(harness.focusFrameOn(harness.item(QStringLiteral("channelField"), panel)));
    }

    void focusFrameFollowsItsControlAndIsCutByTheRow()
    {
        QQuickWindow* window = harness.window();
        window->resize(window->minimumWidth(), 500);
        QTRY_COMPARE(window->height(), 500);
        QCoreApplication::processEvents();
        QQuickItem* row = harness.item(QStringLiteral("knobRow0"));
        QQuickItem* field = harness.item(QStringLiteral("channelField"), harness.panelShowingRecord(0));
        tabUntilItem(field);
        QVERIFY(harness.focusFrameOn(field));
        // The row scrolls sideways under the focused field: the frame goes
        // with it, cut where the row ends, as the field is.
        row->setProperty("contentX", 40);
        QVERIFY(harness.focusFrameOn(field));
        QQuickItem* frame = harness.item(QStringLiteral("focusFrame"));
        const QRectF room = frame->mapRectToScene(frame->boundingRect());
        const QRectF rowShown = row->mapRectToScene(row->boundingRect());
        QVERIFY(rowShown.contains(room));
        QVERIFY(room.left() == rowShown.left());
        // And the page, scrolled down, moves it too.
        QQuickItem* page = harness.item(QStringLiteral("pageScroller"));
        page->setProperty("contentY", 30);
        QVERIFY(harness.focusFrameOn(field));
    }

    void topBarButtonsShowHoverPressedAndFocus()
    {
        for (const char* name : {"importButton", "exportButton"}) {
            QQuickItem* button = harness.item(QString::fromLatin1(name));
            QQuickItem* face = button->property("background").value<QQuickItem*>();
            QTest::mouseMove(harness.window(), {1, harness.window()->height() - 2});
            QTRY_VERIFY2(!face->isVisible(), name);  // flat at rest
            QVERIFY(button->property("hoverEnabled").toBool());
            const QPoint centre = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
            QTest::mouseMove(harness.window(), centre);
            QTRY_VERIFY2(face->isVisible(), name);
            QTest::mouseMove(harness.window(), {1, harness.window()->height() - 2});
            QTRY_VERIFY2(!face->isVisible(), name);
            QTest::mousePress(harness.window(), Qt::LeftButton, Qt::NoModifier, centre);
            QVERIFY2(face->isVisible() && button->property("down").toBool(), name);
            harness.state()->setFullText(QString());
            QTest::mouseRelease(harness.window(), Qt::LeftButton, Qt::NoModifier, centre);
            // The click made the dialogs, the first time.
            QObject* dialog = harness.window()->findChild<QObject*>(
                QString::fromLatin1(name) == QLatin1String("importButton") ? "openDialog" : "saveDialog");
            QVERIFY2(harness.cancelFileDialog(dialog), name);
            QTest::keyClick(harness.window(), Qt::Key_Tab);  // the click focused it, by mouse
            tabUntilItem(button);
            QCOMPARE(harness.window()->activeFocusItem(), button);
            QVERIFY2(harness.focusFrameOn(button), name);
        }
    }

    void setButtonShowsHoverAndPressedStates()
    {
        QQuickItem* button = harness.item(QStringLiteral("setButton"), harness.panelShowingRecord(3));
        auto face = [button] {
            return button->property("background").value<QQuickItem*>()->property("color").value<QColor>();
        };
        const QColor rest = face();
        QCOMPARE(rest, QColor(Qt::yellow));
        const QPoint centre = button->mapToScene({button->width() / 2, button->height() / 2}).toPoint();
        QTest::mouseMove(harness.window(), centre);
        QTRY_VERIFY(button->property("hovered").toBool());
        const QColor hovered = face();
        QVERIFY(hovered != rest);
        QTest::mousePress(harness.window(), Qt::LeftButton, Qt::NoModifier, centre);
        QVERIFY(face() != hovered && face() != rest);
        ConsoleCapture quiet;
        QTest::mouseRelease(harness.window(), Qt::LeftButton, Qt::NoModifier, centre);
        quiet.finish();
        QCOMPARE(face(), hovered);
    }

    void tabScrollsTheFocusedPanelIntoView()
    {
        QQuickWindow* window = harness.window();
        window->resize(window->minimumWidth(), 500);
        QTRY_COMPARE(window->height(), 500);
        QCoreApplication::processEvents();
        QQuickItem* page = harness.item(QStringLiteral("pageScroller"));
        // Knob 26 stands last in the fourth row, far right and below the fold.
        QQuickItem* target = harness.item(QStringLiteral("controllerField"), harness.panelShowingRecord(26));
        QQuickItem* row = harness.item(QStringLiteral("knobRow3"));
        QVERIFY(!shownIn(target, page));
        tabUntilItem(target);
        QCOMPARE(window->activeFocusItem(), target);
        QVERIFY(row->property("contentX").toReal() > 0);
        QVERIFY(page->property("contentY").toReal() > 0);
        QVERIFY(shownIn(target, row));
        QVERIFY(shownIn(target, page));
    }

    void tabIntoANumberFieldSelectsItsNumber()
    {
        QQuickItem* panel = harness.panelShowingRecord(5);
        QQuickItem* channel = harness.item(QStringLiteral("channelField"), panel);
        QQuickItem* controller = harness.item(QStringLiteral("controllerField"), panel);
        harness.state()->record(5)->set_message_channel_menu_string(QStringLiteral("16"));
        QCOMPARE(controller->property("text").toString(), QStringLiteral("127"));
        tabUntilItem(channel);
        QCOMPARE(harness.window()->activeFocusItem(), channel);
        QCOMPARE(channel->property("selectedText").toString(), QStringLiteral("16"));
        QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), controller);
        QCOMPARE(controller->property("selectedText").toString(), QStringLiteral("127"));
        // Typing replaces the preset instead of adding to it.
        typeKeys(harness.window(), QStringLiteral("74"));
        QCOMPARE(harness.state()->record(5)->message_controller_number_code_string(), QStringLiteral("74"));
        // Shift+Tab back selects too.
        QTest::keyClick(harness.window(), Qt::Key_Backtab);
        QCOMPARE(harness.window()->activeFocusItem(), channel);
        QCOMPARE(channel->property("selectedText").toString(), QStringLiteral("16"));
    }

    void downOnAFreshTypeMenuChoosesTheFirstType()
    {
        QQuickItem* menu = harness.item(QStringLiteral("typeMenu"), harness.panelShowingRecord(4));
        QCOMPARE(harness.state()->record(4)->message_type_menu_string(), QStringLiteral("选择消息类型"));
        tabUntilItem(menu);
        QCOMPARE(harness.window()->activeFocusItem(), menu);
        ConsoleCapture capture;
        QTest::keyClick(harness.window(), Qt::Key_Down);
        QCOMPARE(harness.state()->record(4)->message_type_menu_string(), QStringLiteral("Note On"));
        QCOMPARE(menu->property("displayText").toString(), QStringLiteral("Note On"));
        // From there Down goes on through the types as before.
        QTest::keyClick(harness.window(), Qt::Key_Down);
        QCOMPARE(harness.state()->record(4)->message_type_menu_string(), QStringLiteral("Note Off"));
        QTest::keyClick(harness.window(), Qt::Key_Up);
        QCOMPARE(harness.state()->record(4)->message_type_menu_string(), QStringLiteral("Note On"));
        QCOMPARE(capture.finish(), std::string());
    }

    void everyTabStopShowsTheSameFocusFrame()
    {
        // Around the whole window once: each stop draws the panels' frame.
        QStringList missing;
        QQuickItem* first = nullptr;
        for (int i = 0; i < 200; ++i) {
            QTest::keyClick(harness.window(), Qt::Key_Tab);
            QQuickItem* focused = harness.window()->activeFocusItem();
            if (focused == first)
                break;
            if (!first)
                first = focused;
            // The text area's frame draws it around its white background.
            QQuickItem* framed = focused->objectName() == QLatin1String("textAreaFrame")
                                     ? focused->property("background").value<QQuickItem*>()
                                     : focused;
            QQuickItem* ring = harness.focusRing();
            if (!harness.focusFrameOn(framed) ||
                ring->property("border").value<QObject*>()->property("width").toInt() != 3)
                missing << name(focused);
        }
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(u' ')));
    }

private:
    static QString name(QQuickItem* item) { return item ? item->objectName() : QStringLiteral("<none>"); }
    void tabUntilItem(QQuickItem* item)
    {
        for (int i = 0; i < 200 && harness.window()->activeFocusItem() != item; ++i)
            QTest::keyClick(harness.window(), Qt::Key_Tab);
    }
    // Whether `item` lies whole inside the visible part of the scrolling `area`.
    static bool shownIn(QQuickItem* item, QQuickItem* area)
    {
        const QRectF r = item->mapRectToItem(area, item->boundingRect());
        return r.left() >= 0 && r.top() >= 0 && r.right() <= area->width() && r.bottom() <= area->height();
    }
    void expectSequence(const std::vector<Bytes>& expected)
    {
        const auto sent = sim->sent();
        QCOMPARE(sent.size(), expected.size());
        for (size_t i = 0; i < sent.size(); ++i) {
            QCOMPARE(sent[i].destination, std::string("4AC1CC27 MIDI 1"));
            QVERIFY(sent[i].bytes == expected[i]);
        }
    }

    std::unique_ptr<SimMidiHost> sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(KeyboardTest)
#include "keyboard_test.moc"
