// The window at small sizes: a minimum size at which every panel can still be
// read whole, vertical scrolling below the content's height, each row
// scrolling sideways by Shift+wheel and by a sideways wheel, and the text
// area's last lines reachable by keyboard.
#include <QSettings>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

class WindowFitTest : public QObject {
    Q_OBJECT

private slots:
    void init()
    {
        set_midi_host(&sim);
        QSettings().clear();
        QVERIFY(harness.open());
    }
    void cleanup()
    {
        harness.destroy();
        set_midi_host(nullptr);
    }

    void minimumSizeKeepsOnePanelOfEachRowAndTheDeviceColumnWhole()
    {
        QQuickWindow* window = harness.window();
        QVERIFY(window->minimumWidth() > 300);
        QVERIFY(window->minimumHeight() > 200);
        QVERIFY(window->minimumHeight() <= 500);  // a short laptop screen still fits it
        QVERIFY(window->minimumWidth() < window->width());
        QVERIFY(window->minimumHeight() < window->height());

        window->resize(window->minimumWidth(), window->minimumHeight());
        QTRY_COMPARE(window->width(), window->minimumWidth());
        QCoreApplication::processEvents();
        for (int r = 0; r < 4; ++r) {
            QQuickItem* row = harness.item(QStringLiteral("knobRow%1").arg(r));
            for (QQuickItem* panel : harness.items(QStringLiteral("knobPanel"), row))
                QVERIFY2(panel->width() + 16 <= row->width(), qPrintable(QString::number(r)));
        }
        // The device column fits whole beside them; scrolling brings it into view.
        QQuickItem* column = harness.item(QStringLiteral("deviceColumn"));
        QQuickItem* page = harness.item(QStringLiteral("pageScroller"));
        const QRectF shown = column->mapRectToScene(column->boundingRect());
        QVERIFY(shown.left() >= 0 && shown.right() <= window->width());
        QVERIFY(column->height() <= page->height());
        QVERIFY(harness.item(QStringLiteral("knobRow0"))->height() <= page->height());
        // The text area keeps its size of 200 by 200 at the least.
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        QVERIFY(frame->width() >= 200.0);
        QCOMPARE(frame->height(), 200.0);
    }

    void largeWindowGrowsTheTextAreaBesideTheGrid()
    {
        QQuickWindow* window = harness.window();
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        const QSizeF before(frame->width(), frame->height());
        window->resize(1920, 1080);
        QTRY_COMPARE(window->width(), 1920);
        QTRY_COMPARE(window->height(), 1080);
        QCoreApplication::processEvents();

        // The extra room goes to the messages' frame, in both directions.
        QVERIFY2(frame->width() > before.width() + 200, qPrintable(QString::number(frame->width())));
        QVERIFY2(frame->height() > before.height() + 200, qPrintable(QString::number(frame->height())));
        // The device column starts right after the widest row's panels, not
        // at the far edge, and reaches no further than the window.
        QQuickItem* column = harness.item(QStringLiteral("deviceColumn"));
        const QRectF columnRect = column->mapRectToScene(column->boundingRect());
        qreal gridRight = 0;
        for (QQuickItem* panel : harness.items(QStringLiteral("knobPanel")))
            gridRight = std::max(gridRight, panel->mapRectToScene(panel->boundingRect()).right());
        QVERIFY2(columnRect.left() - gridRight < 40,
                 qPrintable(QStringLiteral("%1 %2").arg(columnRect.left()).arg(gridRight)));
        QVERIFY(columnRect.right() <= window->width());
        // Every panel is whole: no row needs to scroll.
        for (int r = 0; r < 4; ++r)
            QVERIFY(!harness.item(QStringLiteral("scrollIndicator"), harness.item(QStringLiteral("knobRow%1").arg(r)))
                         ->isVisible());
    }

    void scrollsVerticallyAt1366By500()
    {
        QQuickWindow* window = harness.window();
        window->resize(1366, 500);
        QTRY_COMPARE(window->height(), 500);
        QCoreApplication::processEvents();
        QQuickItem* page = harness.item(QStringLiteral("pageScroller"));
        QQuickItem* bar = harness.item(QStringLiteral("pageScrollBar"));
        QVERIFY(page->property("contentHeight").toReal() > page->height());
        QVERIFY(bar->isVisible());
        QQuickItem* lastRow = harness.item(QStringLiteral("knobRow3"));
        QVERIFY(lastRow->mapToItem(page, QPointF(0, lastRow->height())).y() > page->height());  // cut off

        // The ordinary wheel over a row scrolls the window, not the row.
        wheel(harness.item(QStringLiteral("knobRow0")), QPoint(0, -120 * 20), Qt::NoModifier);
        QTRY_COMPARE(page->property("contentY").toReal(), page->property("contentHeight").toReal() - page->height());
        QCOMPARE(harness.item(QStringLiteral("knobRow0"))->property("contentX").toReal(), 0.0);
        QVERIFY(lastRow->mapToItem(page, QPointF(0, lastRow->height())).y() <= page->height());
        // The text area keeps at least its size and grows no taller than
        // the window shows.
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        QVERIFY(frame->height() >= 200.0 && frame->width() >= 200.0);
        QVERIFY(harness.item(QStringLiteral("deviceColumn"))->height() <= page->height());
    }

    void shiftWheelAndSidewaysWheelScrollOneRow()
    {
        QQuickWindow* window = harness.window();
        window->resize(window->minimumWidth() + 100, window->height());
        QTRY_COMPARE(window->width(), window->minimumWidth() + 100);
        QCoreApplication::processEvents();
        QQuickItem* page = harness.item(QStringLiteral("pageScroller"));
        QQuickItem* second = harness.item(QStringLiteral("knobRow1"));
        QQuickItem* third = harness.item(QStringLiteral("knobRow2"));

        wheel(second, QPoint(0, -120), Qt::ShiftModifier);
        QVERIFY(second->property("contentX").toReal() > 0);
        QCOMPARE(page->property("contentY").toReal(), 0.0);
        for (int r : {0, 2, 3})
            QCOMPARE(harness.item(QStringLiteral("knobRow%1").arg(r))->property("contentX").toReal(), 0.0);
        // Far past the end stops at the end; back again stops at the start.
        wheel(second, QPoint(0, -120 * 50), Qt::ShiftModifier);
        QCOMPARE(second->property("contentX").toReal(), second->property("contentWidth").toReal() - second->width());
        wheel(second, QPoint(0, 120 * 50), Qt::ShiftModifier);
        QCOMPARE(second->property("contentX").toReal(), 0.0);

        // A sideways wheel or swipe, without a modifier.
        wheel(third, QPoint(-120, 0), Qt::NoModifier);
        QTRY_VERIFY(third->property("contentX").toReal() > 0);
        QCOMPARE(second->property("contentX").toReal(), 0.0);
    }

    void lastLinesOfTheTextAreaAreReachedByKeyboard()
    {
        QStringList lines;
        for (int i = 1; i <= 40; ++i)
            lines << QStringLiteral("第%1行").arg(i);
        harness.state()->setFullText(lines.join(QLatin1Char('\n')));
        QCoreApplication::processEvents();
        QQuickItem* frame = harness.item(QStringLiteral("textAreaFrame"));
        QObject* bar = frame->property("ScrollBar.vertical").value<QObject*>();
        if (!bar) {
            for (QObject* child : frame->findChildren<QObject*>()) {
                if (child->inherits("QQuickScrollBar"))
                    bar = child;
            }
        }
        QVERIFY(bar);
        QCOMPARE(bar->property("position").toReal(), 0.0);

        for (int i = 0; i < 200 && harness.window()->activeFocusItem() != frame; ++i)
            QTest::keyClick(harness.window(), Qt::Key_Tab);
        QCOMPARE(harness.window()->activeFocusItem(), frame);
        QVERIFY(!harness.item(QStringLiteral("textArea"))->hasActiveFocus());
        QVERIFY(harness.focusFrameOn(frame->property("background").value<QQuickItem*>()));

        const qreal size = bar->property("size").toReal();
        QVERIFY(size > 0 && size < 1);
        QTest::keyClick(harness.window(), Qt::Key_Down);
        const qreal stepped = bar->property("position").toReal();
        QVERIFY(stepped > 0);
        QTest::keyClick(harness.window(), Qt::Key_Up);
        QCOMPARE(bar->property("position").toReal(), 0.0);
        QTest::keyClick(harness.window(), Qt::Key_PageDown);
        QCOMPARE(bar->property("position").toReal(), std::min(size, 1.0 - size));
        QTest::keyClick(harness.window(), Qt::Key_End);
        QCOMPARE(bar->property("position").toReal(), 1.0 - size);
        QCoreApplication::processEvents();
        // The last line now stands inside the frame.
        QQuickItem* text = harness.item(QStringLiteral("textArea"));
        const QRectF last = text->mapRectToItem(frame, QRectF(0, text->height() - 20, 10, 20));
        QVERIFY(last.bottom() <= frame->height() + 1);
        QTest::keyClick(harness.window(), Qt::Key_Home);
        QCOMPARE(bar->property("position").toReal(), 0.0);
        QCOMPARE(harness.state()->fullText(), lines.join(QLatin1Char('\n')));  // scrolling changed nothing
    }

private:
    // A wheel turn of `angle` over the centre of `at`.
    void wheel(QQuickItem* at, QPoint angle, Qt::KeyboardModifiers modifiers)
    {
        const QPointF centre = at->mapToScene(QPointF(at->width() / 2, at->height() / 2));
        QWheelEvent event(centre, harness.window()->mapToGlobal(centre), QPoint(), angle, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QGuiApplication::sendEvent(harness.window(), &event);
        QCoreApplication::processEvents();
    }

    SimMidiHost sim;
    WindowHarness harness;
};

DIALCRAFT_UI_TEST_MAIN(WindowFitTest)
#include "window_fit_test.moc"
