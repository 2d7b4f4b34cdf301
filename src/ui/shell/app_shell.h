#pragma once
// The program's entry: the application type with its one window, and the
// set-up that the program and the window tests share.
#include <QGuiApplication>
#include <QLoggingCategory>

class QQmlApplicationEngine;
class QQuickWindow;

namespace dialcraft {

// Declared for the window's diagnostics; every diagnostic of the tool goes to
// standard output instead, so nothing writes to it.
Q_DECLARE_LOGGING_CATEGORY(logger)

// Settings names, fonts and controls style. Call before anything is loaded.
void configure_application(QGuiApplication& app);

// Once the event loop is over: while a screen reader is attached, ends the
// process with `status` at once, without tearing the window down.
void end_before_teardown_if_read_aloud(int status);

// Loads the main window into `engine`; nullptr when it could not be loaded.
QQuickWindow* load_main_window(QQmlApplicationEngine& engine);

class dialcraftApp {
public:
    // Builds the application and its one window and runs the event loop until
    // the last window is closed.
    int run(int& argc, char** argv);

private:
    // Followed, never read: no save or reconnect is tied to the activity state.
    Qt::ApplicationState scenePhase = Qt::ApplicationInactive;
};

}  // namespace dialcraft
