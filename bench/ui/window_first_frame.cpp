// The window as `dialcraft` starts it, for the start-up benchmark: reports
// its first frame drawn after the start-up hook (first_frame_report.h), then
// ends at once.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include "first_frame_report.h"
#include "model/edit_journal.h"
#include "ui/shell/app_shell.h"
#include "ui/shell/content_view.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

int main(int argc, char** argv)
{
    // Never the user's own store, ledger or journals, nor what earlier runs
    // left in them.
    QTemporaryDir settingsFolder;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settingsFolder.path());
    set_state_folder(settingsFolder.path() + QStringLiteral("/state"));
    QGuiApplication app(argc, argv);
    configure_application(app);
    QQmlApplicationEngine engine;
    QQuickWindow* window = load_main_window(engine);
    ContentView* view = window ? window->findChild<ContentView*>() : nullptr;
    if (!view)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, &app, [view, &settingsFolder] {
        if (view->appeared())
            bench::report_first_frame_and_end([&settingsFolder] { settingsFolder.remove(); });
    });
    return app.exec();
}
