// The window as `dialcraft` starts it, for the start-up benchmark: prints
// "first-frame <steady-clock ns> <peak resident KiB>" on standard error once a
// frame has been drawn after the start-up hook, then ends at once.
#include <QFile>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "ui/shell/app_shell.h"
#include "ui/shell/content_view.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

namespace {

// Peak resident set size so far, in KiB.
long peak_resident_kib()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toLong();
    }
    return -1;
}

}  // namespace

int main(int argc, char** argv)
{
    QTemporaryDir settingsFolder;  // never the user's own store
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    QGuiApplication app(argc, argv);
    configure_application(app);
    QQmlApplicationEngine engine;
    QQuickWindow* window = load_main_window(engine);
    ContentView* view = window ? window->findChild<ContentView*>() : nullptr;
    if (!view)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, &app, [view] {
        if (!view->appeared())
            return;
        const auto now = std::chrono::steady_clock::now().time_since_epoch();
        std::fprintf(stderr, "first-frame %lld %ld\n", static_cast<long long>(std::chrono::nanoseconds(now).count()),
                     peak_resident_kib());
        std::fflush(stderr);
        std::_Exit(0);
    });
    return app.exec();
}
