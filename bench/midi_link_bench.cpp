// One knob programming through the MIDI link against a busy simulated service.
#include <benchmark/benchmark.h>

#include "family_scene.h"
#include "midi/midi_link.h"
#include "overhead.h"
#include "quiet_stdout.h"

using namespace dialcraft;

static void BM_usb_midi_main(benchmark::State& state)
{
    SimMidiHost sim;
    set_midi_host(&sim);
    populate_family_scene(sim, 1);
    QuietStdout quiet;
    midi_init();
    set_device_name(0x4AC1CC27);
    measure_overhead(state, [&] {
        benchmark::DoNotOptimize(usb_midi_main(5, static_cast<int8_t>(0xB1), 74, 74));
        sim.clear_sent();
    });
    midi_exit();
    set_midi_host(nullptr);
}
BENCHMARK(BM_usb_midi_main)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(50);

BENCHMARK_MAIN();
