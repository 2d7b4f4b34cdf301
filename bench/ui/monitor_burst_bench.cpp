// A burst of 10,000 Control Change messages from one controller into the real
// window (offscreen, software rendering) through the simulated service, with
// the monitor open: every message must be counted; reported are the frames
// the window drew during the burst and how long each took on the user-interface
// thread (median, 99th percentile, longest), the monitor's own updates and
// how many there were a second, the longest the user-interface thread was
// away from its event loop (a 1 ms heartbeat), and the resident memory before,
// at the end of the burst and once it is over.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtQml/qqmlextensionplugin.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

#include "base/console.h"
#include "family_scene.h"
#include "midi/host_selection.h"
#include "offscreen_benchmarks.h"
#include "quiet_stdout.h"
#include "ui/monitor/knob_monitor.h"
#include "ui/shell/app_shell.h"
#include "ui/shell/content_view.h"
#include "ui/status/window_status.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

namespace {

using Clock = std::chrono::steady_clock;

constexpr int burst = 10'000;

double ms_between(Clock::time_point start, Clock::time_point end)
{
    return std::chrono::duration<double, std::milli>(end - start).count();
}

double percentile(std::vector<double> values, double p)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[std::min(values.size() - 1, static_cast<size_t>(p * static_cast<double>(values.size())))];
}

double resident_mib()
{
    long pages = 0, resident = 0;
    if (FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}

void settle(int ms)
{
    const auto until = Clock::now() + std::chrono::milliseconds(ms);
    while (Clock::now() < until)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
}

void BM_monitor_burst(benchmark::State& state)
{
    SimMidiHost sim;
    set_midi_host(&sim);
    populate_family_scene(sim, 1);
    const int source = 2 + 3 * 1;  // the online controller 4AC1CC27's source (see populate_family_scene)
    QuietStdout quiet;

    QQmlApplicationEngine engine;
    QQuickWindow* window = load_main_window(engine);
    ContentView* view = window ? window->findChild<ContentView*>() : nullptr;
    if (!view) {
        state.SkipWithError("the window did not open");
        return;
    }
    GlobalState& global = *view->globalState();
    KnobMonitor* monitor = WindowStatus::of(global)->monitor();
    CreateSetupAreaViewData* record = global.record(5);
    record->set_message_type_menu_string(QStringLiteral("Control Change"));
    record->set_message_channel_menu_string(QStringLiteral("2"));
    record->set_message_controller_number_code_string(QStringLiteral("74"));
    if (QQuickItem* pane = window->contentItem()->findChild<QQuickItem*>(QStringLiteral("monitorPane")))
        pane->setProperty("open", true);
    while (!monitor->listening())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);

    std::vector<double> frames, updates, updateRates, heartbeatGaps, before, during, after;
    Clock::time_point frameStart;
    bool measuring = false;
    QObject::connect(
        window, &QQuickWindow::beforeSynchronizing, window, [&] { frameStart = Clock::now(); }, Qt::DirectConnection);
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&] {
        if (measuring)
            frames.push_back(ms_between(frameStart, Clock::now()));
    });
    Clock::time_point lastBeat = Clock::now();
    QTimer heartbeat;
    heartbeat.setTimerType(Qt::PreciseTimer);
    QObject::connect(&heartbeat, &QTimer::timeout, [&] {
        const auto now = Clock::now();
        if (measuring)
            heartbeatGaps.push_back(ms_between(lastBeat, now));
        lastBeat = now;
    });
    heartbeat.start(1);
    settle(300);

    for (auto _ : state) {
        const double received = monitor->received();
        const int framesBefore = monitor->frames();
        before.push_back(resident_mib());
        std::atomic<bool> sent{false};
        measuring = true;
        const auto start = Clock::now();
        std::thread sender([&] {
            for (int i = 0; i < burst; ++i)
                sim.inject(source, {0xB1, 0x4A, static_cast<uint8_t>(i & 0x7F)});
            sent = true;
        });
        while (!sent || monitor->received() < received + burst || monitor->lastValues().at(5) != (burst - 1) % 128)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        sender.join();
        const double wall = ms_between(start, Clock::now());
        measuring = false;
        during.push_back(resident_mib());
        if (monitor->received() != received + burst)
            state.SkipWithError("a message was not counted");
        const int updatesInBurst = monitor->frames() - framesBefore;
        updates.push_back(updatesInBurst);
        updateRates.push_back(updatesInBurst / (wall / 1000.0));
        state.SetIterationTime(wall / 1000.0);
        settle(1000);
        after.push_back(resident_mib());
    }
    state.counters["frames_drawn"] = static_cast<double>(frames.size());
    state.counters["frame_median_ms"] = percentile(frames, 0.5);
    state.counters["frame_p99_ms"] = percentile(frames, 0.99);
    state.counters["frame_max_ms"] = percentile(frames, 1.0);
    state.counters["monitor_updates_per_burst"] = percentile(updates, 0.5);
    state.counters["monitor_updates_per_s_max"] = percentile(updateRates, 1.0);
    state.counters["ui_thread_away_p99_ms"] = percentile(heartbeatGaps, 0.99);
    state.counters["ui_thread_away_max_ms"] = percentile(heartbeatGaps, 1.0);
    state.counters["rss_before_mib"] = percentile(before, 0.5);
    state.counters["rss_end_of_burst_mib"] = percentile(during, 0.5);
    state.counters["rss_after_mib"] = percentile(after, 0.5);
    state.counters["rss_after_minus_before_mib"] = percentile(after, 0.5) - percentile(before, 0.5);

    delete window;
    set_midi_host(nullptr);
}
BENCHMARK(BM_monitor_burst)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(3);

}  // namespace

int main(int argc, char** argv)
{
    return run_offscreen_benchmarks(argc, argv);
}
