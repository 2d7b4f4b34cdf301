// Renders the real main window offscreen and saves pictures of it: one right
// after start-up and, when a second path is given, one after knob 5 has been
// set to Control Change, channel 2, controller 74 through its panel.
// Usage: ui_screenshot <start-up.png> [<after-set.png>]
#include <QImage>
#include <QSettings>
#include <QTest>

#include <cstdio>

#include "window_harness.h"

static bool save(QImage image, const char* path)
{
    if (!image.save(QString::fromLocal8Bit(path))) {
        std::fprintf(stderr, "cannot write %s\n", path);
        return false;
    }
    return true;
}

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s <start-up.png> [<after-set.png>]\n", argv[0]);
        return 2;
    }
    prepare_ui_test_environment();
    QGuiApplication app(argc, argv);
    configure_application(app);
    QSettings().clear();

    WindowHarness harness;
    if (!harness.open())
        return 1;
    QTest::qWait(100);
    if (!save(harness.grab(), argv[1]))
        return 1;
    if (argc < 3)
        return 0;

    QQuickItem* panel = harness.panelShowingRecord(5);
    harness.choose(harness.item(QStringLiteral("typeMenu"), panel), QStringLiteral("Control Change"));
    QQuickItem* channel = harness.item(QStringLiteral("channelField"), panel);
    QQuickItem* controller = harness.item(QStringLiteral("controllerField"), panel);
    channel->setProperty("text", QString());
    controller->setProperty("text", QString());
    harness.typeInto(channel, QStringLiteral("2"));
    harness.typeInto(controller, QStringLiteral("74"));
    harness.click(harness.item(QStringLiteral("setButton"), panel));
    QTest::qWait(100);
    return save(harness.grab(), argv[2]) ? 0 : 1;
}
