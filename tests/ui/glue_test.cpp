// The small C++ pieces behind the window, without a window.
#include <QTest>

#include "console_capture.h"
#include "ui/dialogs/dialog_files.h"
#include "ui/press/set_button_action.h"
#include "window_harness.h"

using namespace dialcraft;

class GlueTest : public QObject {
    Q_OBJECT

private slots:
    void bareDialogPathsBecomeFileUrls()
    {
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("/tmp/a b/knobs.txt"))),
                 QUrl::fromLocalFile(QStringLiteral("/tmp/a b/knobs.txt")));
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("/tmp/a b/knobs.txt"))).toString(QUrl::FullyEncoded),
                 QStringLiteral("file:///tmp/a%20b/knobs.txt"));
        // A name that is not valid UTF-8 keeps its bytes, as escapes.
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("/tmp/%FF%FE.txt"))).toString(QUrl::FullyEncoded),
                 QStringLiteral("file:///tmp/%FF%FE.txt"));
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("file:///tmp/%FF%FE.txt"))).toString(QUrl::FullyEncoded),
                 QStringLiteral("file:///tmp/%FF%FE.txt"));
        const QUrl file = QUrl::fromLocalFile(QStringLiteral("/home/u/x.txt"));
        QCOMPARE(chosen_file_url(file), file);
        // Anything else is handed on as it came, for the transfer to judge.
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("knobs.txt"))), QUrl(QStringLiteral("knobs.txt")));
        QCOMPARE(chosen_file_url(QUrl()), QUrl());
        QCOMPARE(chosen_file_url(QUrl(QStringLiteral("https://example.org/k.txt"))),
                 QUrl(QStringLiteral("https://example.org/k.txt")));
    }

    void displayOrderPutsThePlaceholderFourth()
    {
        const QList<int>& order = ContentView::customOrderIndices();
        QCOMPARE(order.size(), 28);
        QCOMPARE(order.mid(0, 5), QList<int>({0, 1, 2, 27, 3}));
        for (int p = 4; p < 28; ++p)
            QCOMPARE(order[p], p - 1);
    }

    void setButtonPrintsTheKnobLineOnlyWithARecord()
    {
        SetButtonAction action;
        ConsoleCapture capture;
        action.press();  // no record, no state: nothing happens
        QCOMPARE(QByteArray::fromStdString(capture.finish()), QByteArray());
    }
};

DIALCRAFT_UI_TEST_MAIN(GlueTest)
#include "glue_test.moc"
