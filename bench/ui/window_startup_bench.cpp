// Start-up of the window against its floor. Each run starts a program anew
// and takes the time from its start to its first frame, offscreen, and its
// peak resident memory at that moment (first_frame_report.h):
// window_first_frame starts up as `dialcraft` does (application set-up, QML
// load, start-up hook) and reports its first frame after the hook;
// bare_window shows the same panels in plain Qt Quick Controls. The two run
// in turn, pair after pair, so that whatever else the machine does weighs on
// both alike; the first pairs only warm the file cache and are not counted.
// The steady clock is the system's monotonic clock, shared by all processes.
#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

#include "first_frame_runs.h"

namespace {

using dialcraft::bench::program_beside_this_one;

struct Startup {
    double seconds;
    long peak_kib;
};

constexpr int warm_up_pairs = 2;

std::optional<Startup> start_once(const QString& program)
{
    const auto run = dialcraft::bench::run_to_first_frame(program);
    if (!run)
        return std::nullopt;
    for (const QByteArray& line : run->errors.split('\n')) {
        long long at = 0;
        long kib = 0;
        if (std::sscanf(line.constData(), "first-frame %lld %ld", &at, &kib) == 2)
            return Startup{static_cast<double>(at - run->started_ns) / 1e9, kib};
    }
    return std::nullopt;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

// state.range(0) pairs, counted after the warm-up pairs.
void BM_window_against_bare(benchmark::State& state)
{
    static int argc = 1;
    static char name[] = "window_startup_bench";
    static char* argv[] = {name, nullptr};
    static QCoreApplication app(argc, argv);  // QProcess wants one

    const QString window = program_beside_this_one("window_first_frame");
    const QString bare = program_beside_this_one("bare_window");
    const int pairs = static_cast<int>(state.range(0));
    for (auto _ : state) {
        std::vector<double> windowMs, bareMs, windowMiB, bareMiB;
        for (int i = 0; i < warm_up_pairs + pairs; ++i) {
            const std::optional<Startup> w = start_once(window);
            const std::optional<Startup> b = start_once(bare);
            if (!w || !b) {
                state.SkipWithError(w ? "the bare window did not start" : "the window did not start");
                return;
            }
            if (i < warm_up_pairs)
                continue;
            windowMs.push_back(w->seconds * 1e3);
            bareMs.push_back(b->seconds * 1e3);
            windowMiB.push_back(static_cast<double>(w->peak_kib) / 1024.0);
            bareMiB.push_back(static_cast<double>(b->peak_kib) / 1024.0);
        }
        const double wallWindow = median(windowMs);
        const double wallBare = median(bareMs);
        const double rssWindow = median(windowMiB);
        const double rssBare = median(bareMiB);
        state.SetIterationTime(wallWindow / 1e3);
        state.counters["window_ms"] = wallWindow;
        state.counters["bare_ms"] = wallBare;
        state.counters["wall_ratio"] = wallWindow / wallBare;
        state.counters["window_MiB"] = rssWindow;
        state.counters["bare_MiB"] = rssBare;
        state.counters["rss_ratio"] = rssWindow / rssBare;
    }
}
BENCHMARK(BM_window_against_bare)->Arg(15)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

BENCHMARK_MAIN();
