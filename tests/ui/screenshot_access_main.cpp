// Renders the real main window offscreen for the documentation's keyboard and
// dialog pictures: the focus frame on knob 0's set button after the first
// Tab, and Qt's own save dialog (the fallback where the desktop has no native
// one) with a typed name, opened in a documents folder of its own.
// Usage: ui_screenshot_access <focus.png> <save-dialog.png>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

#include "midi/host_selection.h"
#include "midi/sim/sim_midi_host.h"
#include "window_harness.h"

using namespace dialcraft;

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s <focus.png> <save-dialog.png>\n", argv[0]);
        return 2;
    }
    QTemporaryDir home;
    qputenv("HOME", home.path().toLocal8Bit());
    qunsetenv("XDG_CONFIG_HOME");
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QDir().mkpath(documents);
    QFile sample(QDir(documents).filePath(QStringLiteral("knobs-studio.txt")));
    if (sample.open(QIODevice::WriteOnly))
        sample.write("Control Change\n1\n20\n");
    sample.close();

    SimMidiHost sim;
    set_midi_host(&sim);
    WindowHarness harness;
    if (!harness.open())
        return 1;
    QTest::mouseMove(harness.window(), {1, harness.window()->height() - 2});
    QTest::keyClick(harness.window(), Qt::Key_Tab);
    QTest::qWait(100);
    if (!save_picture(harness.grab(), argv[1]))
        return 1;

    harness.click(harness.item(QStringLiteral("exportButton")));
    QObject* dialog = harness.window()->findChild<QObject*>(QStringLiteral("saveDialog"));
    if (!QTest::qWaitFor([dialog] { return dialog->property("visible").toBool(); }))
        return 1;
    QTest::qWait(200);
    QQuickItem* name = harness.item(QStringLiteral("fileNameTextField"));
    if (name)
        harness.replaceText(name, QStringLiteral("knobs.txt"));
    QTest::qWait(100);
    const bool saved = save_picture(harness.grab(), argv[2]);
    harness.destroy();
    set_midi_host(nullptr);
    return saved ? 0 : 1;
}
