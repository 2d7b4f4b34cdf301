// The main window's layout: 28 knob panels in their fixed order, four rows of
// seven that scroll sideways on their own, the dimmed placeholder fourth in
// the first row, labels and range hints.
#include <QSettings>
#include <QTest>

#include "console_capture.h"
#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

class LayoutTest : public WindowTest {
    Q_OBJECT

public:
    LayoutTest() : WindowTest(Open::inInit) {}

private slots:

    void showsExactlyTwentyEightPanelsInDisplayOrder()
    {
        const QList<QQuickItem*> panels = harness.panels();
        QCOMPARE(panels.size(), 28);
        const QList<int> expected{0,  1,  2,  27, 3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                  13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26};
        QList<int> shown;
        for (int p = 0; p < panels.size(); ++p) {
            QCOMPARE(panels[p]->property("displayPosition").toInt(), p);
            auto* record = panels[p]->property("record").value<CreateSetupAreaViewData*>();
            QVERIFY(record);
            QCOMPARE(record, harness.state()->record(record->knob_index()));
            shown.append(record->knob_index());
        }
        QCOMPARE(shown, expected);
        QCOMPARE(harness.contentView()->customOrderIndices(), expected);
    }

    void rowsHoldSevenPanelsEachLeftToRight()
    {
        const QList<QList<int>> rows{{0, 1, 2, 27, 3, 4, 5},
                                     {6, 7, 8, 9, 10, 11, 12},
                                     {13, 14, 15, 16, 17, 18, 19},
                                     {20, 21, 22, 23, 24, 25, 26}};
        qreal previousRowY = -1;
        for (int r = 0; r < 4; ++r) {
            QQuickItem* row = harness.item(QStringLiteral("knobRow%1").arg(r));
            QVERIFY(row);
            QList<QQuickItem*> panels = harness.items(QStringLiteral("knobPanel"), row);
            std::sort(panels.begin(), panels.end(), [](QQuickItem* a, QQuickItem* b) { return a->x() < b->x(); });
            QList<int> shown;
            for (QQuickItem* panel : panels) {
                shown.append(panel->property("record").value<CreateSetupAreaViewData*>()->knob_index());
                QCOMPARE(panel->y(), panels.first()->y());  // one line, no wrapping
            }
            QCOMPARE(shown, rows[r]);
            const qreal rowY = row->mapToScene(QPointF(0, 0)).y();
            QVERIFY(rowY > previousRowY);  // rows stacked top to bottom
            previousRowY = rowY;
        }
    }

    void labelsNameTheKnobs()
    {
        for (QQuickItem* panel : harness.panels()) {
            const int knob = panel->property("record").value<CreateSetupAreaViewData*>()->knob_index();
            QQuickItem* label = harness.item(QStringLiteral("knobLabel"), panel);
            QVERIFY(label);
            QCOMPARE(label->property("caption").toString(), QStringLiteral("%1号旋钮").arg(knob));
            // The snow symbol, then the caption.
            QCOMPARE(label->property("text").toString(), QStringLiteral("\u273D %1号旋钮").arg(knob));
        }
    }

    void rangeHintsUnderTheFields()
    {
        for (QQuickItem* panel : harness.panels()) {
            QQuickItem* channel = harness.item(QStringLiteral("channelRange"), panel);
            QQuickItem* controller = harness.item(QStringLiteral("controllerRange"), panel);
            QCOMPARE(channel->property("text").toString(), QStringLiteral("\u2601 1-16"));
            QCOMPARE(controller->property("text").toString(), QStringLiteral("\u2601 0-127"));
            QVERIFY(channel->isEnabled());
            QVERIFY(controller->isEnabled());
            QCOMPARE(harness.item(QStringLiteral("channelField"), panel)->property("placeholderText").toString(),
                     QStringLiteral("MIDI通道"));
            QCOMPARE(harness.item(QStringLiteral("controllerField"), panel)->property("placeholderText").toString(),
                     QStringLiteral("控制器号"));
        }
    }

    void onlyThePlaceholderIsDisabledAndDimmed()
    {
        for (QQuickItem* panel : harness.panels()) {
            const bool placeholder = panel->property("record").value<CreateSetupAreaViewData*>()->knob_index() == 27;
            QCOMPARE(panel->opacity(), placeholder ? 0.5 : 1.0);
            for (const char* name : {"setButton", "typeMenu", "channelField", "controllerField"})
                QCOMPARE(harness.item(QString::fromLatin1(name), panel)->isEnabled(), !placeholder);
        }
        QCOMPARE(harness.panels().at(3)->property("record").value<CreateSetupAreaViewData*>()->knob_index(), 27);
    }

    void placeholderIgnoresClicksAndKeys()
    {
        QQuickItem* panel = harness.panelShowingRecord(27);
        CreateSetupAreaViewData* record = harness.state()->record(27);
        const QString fullText = harness.state()->fullText();

        ConsoleCapture capture;
        harness.click(harness.item(QStringLiteral("setButton"), panel));
        harness.typeInto(harness.item(QStringLiteral("channelField"), panel), QStringLiteral("5"));
        harness.click(harness.item(QStringLiteral("typeMenu"), panel));
        const QByteArray printed = QByteArray::fromStdString(capture.finish());

        QCOMPARE(printed, QByteArray());
        QCOMPARE(harness.state()->fullText(), fullText);
        QCOMPARE(record->message_channel_menu_string(), QStringLiteral("16"));
        QCOMPARE(record->message_type_menu_string(), QStringLiteral("选择消息类型"));
        QObject* popup = harness.item(QStringLiteral("typeMenu"), panel)->property("popup").value<QObject*>();
        QVERIFY(!popup->property("visible").toBool());
    }

    void narrowWindowScrollsEachRowSideways()
    {
        QQuickWindow* window = harness.window();
        const int fullWidth = window->width();
        for (int r = 0; r < 4; ++r) {
            QQuickItem* row = harness.item(QStringLiteral("knobRow%1").arg(r));
            QVERIFY(row->property("contentWidth").toReal() <= row->width());
            QQuickItem* indicator = harness.item(QStringLiteral("scrollIndicator"), row);
            QVERIFY(indicator);
            QVERIFY(!indicator->isVisible());  // nothing to scroll, nothing shown
        }

        window->resize(fullWidth / 2, window->height());
        QTRY_VERIFY(harness.item(QStringLiteral("knobRow0"))->width() < fullWidth / 2);

        for (int r = 0; r < 4; ++r) {
            QQuickItem* row = harness.item(QStringLiteral("knobRow%1").arg(r));
            QVERIFY(row->property("contentWidth").toReal() > row->width());
            QQuickItem* indicator = harness.item(QStringLiteral("scrollIndicator"), row);
            QVERIFY(indicator);
            QVERIFY(indicator->isVisible());
            QVERIFY(handleOpacity(indicator) > 0);
        }

        // Scrolling one row leaves the others where they are; panels keep one line.
        QQuickItem* second = harness.item(QStringLiteral("knobRow1"));
        QVERIFY(second->setProperty("contentX", 200));
        QCOMPARE(second->property("contentX").toReal(), 200.0);
        for (int r : {0, 2, 3})
            QCOMPARE(harness.item(QStringLiteral("knobRow%1").arg(r))->property("contentX").toReal(), 0.0);
        QCOMPARE(harness.panels().size(), 28);
    }

private:
    static qreal handleOpacity(QQuickItem* scrollBar)
    {
        return scrollBar->property("contentItem").value<QQuickItem*>()->opacity();
    }
};

DIALCRAFT_UI_TEST_MAIN(LayoutTest)
#include "layout_test.moc"
