// The floor of the start-up benchmark: a window of plain Qt Quick Controls
// with the panels the tool's window shows (a label, a button, a menu and two
// fields each, the model menu and a text area), in the same style, fonts and
// size, and nothing of the tool. Reports its first frame like
// window_first_frame (first_frame_report.h), then ends at once.
#include <QFont>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QUrl>

#include "first_frame_report.h"

int main(int argc, char** argv)
{
    QGuiApplication app(argc, argv);
    // The fonts and style the tool's window is given.
    QFont font = app.font();
    font.setFamilies({font.family(), QStringLiteral("Noto Sans CJK SC")});
    app.setFont(font);
    QQuickStyle::setStyle(QStringLiteral("Fusion"));

    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/BareWindow/Main.qml")));
    const auto roots = engine.rootObjects();
    auto* window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.first());
    if (!window)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, &app, [] { dialcraft::bench::report_first_frame_and_end(); });
    return app.exec();
}
