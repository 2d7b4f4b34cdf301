// Set all against a busy simulated MIDI service (the sixteen family serials,
// one of them online, and 64 other endpoints), in the real window offscreen:
// the wall time of a run over all 27 knobs against 27 times the median of the
// single press measured in the same process. Each round makes 27 single
// presses and then one run, so both see the same load of the machine.
//
// The run's own cost (the turns of the event loop, the frame between knobs,
// the progress, the start and the summary) is also given apart from the
// presses: the wall time minus the time spent inside the presses of the run,
// each press timed from its knob line to the progress that follows it; and
// the time from the start to the first knob line, which is the frame that
// draws every other control disabled.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include "base/console.h"
#include "family_scene.h"
#include "midi/host_selection.h"
#include "offscreen_benchmarks.h"
#include "quiet_stdout.h"
#include "ui/press/set_all_run.h"
#include "ui/press/set_button_action.h"
#include "ui/shell/app_shell.h"
#include "ui/shell/content_view.h"
#include "ui/status/window_status.h"

using namespace dialcraft;

Q_IMPORT_QML_PLUGIN(DialcraftPlugin)

namespace {

using Clock = std::chrono::steady_clock;

double ms_between(Clock::time_point start, Clock::time_point end)
{
    return std::chrono::duration<double, std::milli>(end - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Writes every line to standard output as the default console does, and
// notes when the first and the last knob line ("<n>号旋钮") were printed.
class TimingConsole final : public ConsoleSink {
public:
    void write(std::string_view text) override
    {
        if (text.ends_with("号旋钮\n")) {
            knobLineAt = Clock::now();
            if (!firstKnobLineAt)
                firstKnobLineAt = knobLineAt;
        }
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
    }
    Clock::time_point knobLineAt;
    std::optional<Clock::time_point> firstKnobLineAt;
};

void BM_set_all_27_knobs(benchmark::State& state)
{
    SimMidiHost sim;
    set_midi_host(&sim);
    populate_family_scene(sim, 1);
    QuietStdout quiet;
    TimingConsole console;
    ConsoleSink* previousConsole = set_console_sink(&console);

    QQmlApplicationEngine engine;
    QQuickWindow* window = load_main_window(engine);
    ContentView* view = window ? window->findChild<ContentView*>() : nullptr;
    if (!view) {
        state.SkipWithError("the window did not open");
        return;
    }
    bool drawn = false;
    QObject::connect(window, &QQuickWindow::frameSwapped, window, [&drawn] { drawn = true; });
    while (!drawn)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    GlobalState& global = *view->globalState();
    for (int knob = 0; knob < 27; ++knob) {
        CreateSetupAreaViewData* record = global.record(knob);
        record->set_message_type_menu_string(QStringLiteral("Control Change"));
        record->set_message_channel_menu_string(QString::number(knob % 16 + 1));
        record->set_message_controller_number_code_string(QString::number(knob + 40));
    }

    SetButtonAction press;  // the single press as a panel's button makes it
    press.setGlobalState(&global);
    SetAllRun* run = WindowStatus::of(global)->setAll();
    std::vector<double> pressesInRun;
    QObject::connect(run, &SetAllRun::progressChanged, window, [&] {
        if (run->done() > 0)
            pressesInRun.push_back(ms_between(console.knobLineAt, Clock::now()));
    });

    std::vector<double> singles, runs, ownCosts, toFirstKnob, runPresses;
    for (auto _ : state) {
        for (int knob = 0; knob < 27; ++knob) {
            press.setData(global.record(knob));
            const auto start = Clock::now();
            press.press();
            singles.push_back(ms_between(start, Clock::now()));
            QCoreApplication::processEvents();  // the frame that shows it
            sim.clear_sent();
        }
        pressesInRun.clear();
        console.firstKnobLineAt.reset();
        const auto start = Clock::now();
        run->start(window);
        while (run->running())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        const double wall = ms_between(start, Clock::now());
        runs.push_back(wall);
        double inPresses = 0;
        for (double ms : pressesInRun)
            inPresses += ms;
        ownCosts.push_back(wall - inPresses);
        runPresses.insert(runPresses.end(), pressesInRun.begin(), pressesInRun.end());
        if (console.firstKnobLineAt)
            toFirstKnob.push_back(ms_between(start, *console.firstKnobLineAt));
        state.SetIterationTime(wall / 1000.0);
        sim.clear_sent();
    }
    const double single = median(singles);
    const double whole = median(runs);
    state.counters["single_press_median_ms"] = single;
    state.counters["set_all_median_ms"] = whole;
    state.counters["ratio_to_27_presses"] = whole / (27 * single);
    state.counters["run_own_ms_per_knob"] = median(ownCosts) / 27;
    state.counters["press_in_run_median_ms"] = median(runPresses);
    state.counters["start_to_first_knob_ms"] = median(toFirstKnob);

    delete window;
    set_console_sink(previousConsole);
    set_midi_host(nullptr);
}
BENCHMARK(BM_set_all_27_knobs)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(7);

}  // namespace

int main(int argc, char** argv)
{
    return run_offscreen_benchmarks(argc, argv);
}
