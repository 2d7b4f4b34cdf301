// Time from process start to the window's first frame with the start-up hook
// done, offscreen, and the peak resident memory at that moment. Each run
// starts window_first_frame anew: the same start-up as `dialcraft`
// (application set-up, QML load, start-up hook), which reports when its first
// frame after the hook has been drawn. The steady clock is the system's
// monotonic clock, shared by both processes.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace {

struct Startup {
    double seconds;
    long peak_kib;
};

QString first_frame_program()
{
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    return QString::fromStdString((self.parent_path() / "window_first_frame").string());
}

std::optional<Startup> start_window_once()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
    child.setProcessEnvironment(environment);
    child.setStandardOutputFile(QProcess::nullDevice());
    const long long started = std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
    child.start(first_frame_program(), {});
    if (!child.waitForFinished(30000) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
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
    static int argc = 1;
    static char name[] = "window_startup_bench";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);  // QProcess wants one

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

BENCHMARK_MAIN();
