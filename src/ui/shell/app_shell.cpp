#include "ui/shell/app_shell.h"

#include "ui/access/accessible_enabled_state.h"
#include "ui/dialogs/dialog_words.h"
#include "ui/shell/orderly_end.h"

#include <QAccessible>
#include <QFont>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QUrl>

#include <cstdio>
#include <cstdlib>

namespace dialcraft {

Q_LOGGING_CATEGORY(logger, "io.github.dialcraft.ui")

void configure_application(QGuiApplication& app)
{
    // The stored knob table lives in the settings of this organisation and application.
    app.setOrganizationName(QStringLiteral("dialcraft"));
    app.setApplicationName(QStringLiteral("dialcraft"));
    app.setApplicationVersion(QStringLiteral(DIALCRAFT_VERSION));

    // Desktops match the window to io.github.dialcraft.Dialcraft.desktop by
    // this name (the Wayland app id); the icon's sizes are compiled into the
    // program, so the window shows it whatever the icon theme holds.
    app.setDesktopFileName(QStringLiteral("io.github.dialcraft.Dialcraft"));
    QIcon icon;
    for (int size : {48, 128, 256})
        icon.addFile(QStringLiteral(":/icons/%1.png").arg(size), QSize(size, size));
    app.setWindowIcon(icon);

    // The labels are mostly Chinese: keep the system's face for Latin text and
    // fall back to the simplified-Chinese CJK face for the rest, so Han
    // characters never take the Japanese forms of a generic fallback.
    QFont font = app.font();
    font.setFamilies({font.family(), QStringLiteral("Noto Sans CJK SC")});
    app.setFont(font);

    // A desktop look on every platform; the set button draws its own face.
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    // Qt's own file dialog, where it is used, labels itself in the window's words.
    install_dialog_words(app);

    report_disabled_quick_controls();
}

void end_before_teardown_if_read_aloud(int status)
{
    // With a screen reader attached, Qt 6.4 crashed while tearing the window
    // down at exit (exit status 139): a hidden part (a closed dialog, a menu's
    // closed list), freed from its parent as that parent is destroyed, turns
    // visible and signals it to objects already half destroyed. Every
    // ending's work is done by now: the shut-down hook ran at the close, the
    // table is stored and synced, the journal is finished. So the process
    // ends here, its output flushed, and leaves the teardown to the system.
    if (!QAccessible::isActive())
        return;
    std::fflush(nullptr);
    std::_Exit(status);
}

QQuickWindow* load_main_window(QQmlApplicationEngine& engine)
{
    engine.load(QUrl(QStringLiteral("qrc:/Dialcraft/Main.qml")));
    const auto roots = engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
}

int dialcraftApp::run(int& argc, char** argv)
{
    QGuiApplication app(argc, argv);
    configure_application(app);
    scenePhase = app.applicationState();
    QObject::connect(&app, &QGuiApplication::applicationStateChanged,
                     [this](Qt::ApplicationState state) { scenePhase = state; });

    install_orderly_end(app);

    QQmlApplicationEngine engine;
    if (!load_main_window(engine))
        return 1;
    const int status = app.exec();
    end_before_teardown_if_read_aloud(status);
    return status;
}

}  // namespace dialcraft
