#include "ui/shell/orderly_end.h"

#include <QGuiApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QWindow>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace dialcraft {

namespace {

int end_pipe[2] = {-1, -1};
volatile std::sig_atomic_t end_asked = 0;

// Async-signal-safe calls only: the first signal is handed to the event
// loop, a later one ends the process as that signal would have.
extern "C" void on_end_signal(int signal_number)
{
    if (end_asked) {
        ::signal(signal_number, SIG_DFL);
        ::raise(signal_number);
        return;
    }
    end_asked = 1;
    const int saved = errno;
    const char byte = static_cast<char>(signal_number);
    [[maybe_unused]] const ssize_t written = ::write(end_pipe[1], &byte, 1);
    errno = saved;
}

void close_every_window()
{
    for (QWindow* window : QGuiApplication::topLevelWindows())
        window->close();
    QCoreApplication::exit(0);
}

}  // namespace

void install_orderly_end(QGuiApplication& app)
{
    if (end_pipe[0] < 0 && ::pipe2(end_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* notifier = new QSocketNotifier(end_pipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [notifier] {
        char byte = 0;
        [[maybe_unused]] const ssize_t read = ::read(end_pipe[0], &byte, 1);
        notifier->setEnabled(false);
        close_every_window();
    });
    struct sigaction action = {};
    action.sa_handler = on_end_signal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int signal_number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal_number, &action, nullptr);
    // The session manager asks before it ends the session; the windows close
    // as at a signal, once the request has been answered.
    QObject::connect(&app, &QGuiApplication::commitDataRequest, &app, [](QSessionManager&) {
        end_asked = 1;
        QMetaObject::invokeMethod(qApp, close_every_window, Qt::QueuedConnection);
    });
}

}  // namespace dialcraft
