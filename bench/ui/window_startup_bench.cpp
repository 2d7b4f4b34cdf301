// Time from process start to the window's first frame with the start-up hook
// done, offscreen, and the peak resident memory at that moment. Each run
// starts this program anew in its window mode: the same start-up as
// `dialcraft` (application set-up, QML load, start-up hook), which reports
// when the first frame after the hook has been drawn and then ends at once.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSettings>
#include <QTemporaryDir>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <optional>

#include "app_shell.h"
#include "content_view.h"

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

namespace {

const char window_mode_flag[] = "--window-mode";

long long monotonic_ns()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

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

// The window as `dialcraft` starts it; prints "first-frame <ns> <KiB>" on
// standard error once a frame has been drawn after the start-up hook.
int run_window(int argc, char** argv)
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
        std::fprintf(stderr, "first-frame %lld %ld\n", monotonic_ns(), peak_resident_kib());
        std::fflush(stderr);
        std::_Exit(0);
    });
    return app.exec();
}

struct Startup {
    double seconds;
    long peak_kib;
};

std::optional<Startup> start_window_once()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    child.setProcessEnvironment(environment);
    child.setStandardOutputFile(QProcess::nullDevice());
    const long long started = monotonic_ns();
    child.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(window_mode_flag)});
    if (!child.waitForFinished(30000) || child.exitCode() != 0)
        return std::nullopt;
    for (const QByteArray& line : child.readAllStandardError().split('\n')) {
        long long at = 0;
        long kib = 0;
        if (std::sscanf(line.constData(), "first-frame %lld %ld", &at, &kib) == 2)
            return Startup{static_cast<double>(at - started) / 1e9, kib};
    }
    return std::nullopt;
}

void BM_window_first_frame(benchmark::State& state)
{
    long peak = 0;
    for (auto _ : state) {
        const std::optional<Startup> run = start_window_once();
        if (!run) {
            state.SkipWithError("the window did not start");
            break;
        }
        state.SetIterationTime(run->seconds);
        peak = std::max(peak, run->peak_kib);
    }
    state.counters["peak_rss_MiB"] = static_cast<double>(peak) / 1024.0;
}
BENCHMARK(BM_window_first_frame)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1)
    ->Repetitions(9)
    ->ReportAggregatesOnly(true);

}  // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::string_view(argv[1]) == window_mode_flag)
        return run_window(argc, argv);
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
