// One full press of a set button: sixteen probes, checks, programming.
#include <benchmark/benchmark.h>

#include "actions/set_action.h"
#include "family_scene.h"
#include "midi/midi_link.h"
#include "model/global_state.h"
#include "overhead.h"
#include "quiet_stdout.h"

using namespace dialcraft;

static void BM_setup_button_action(benchmark::State& state)
{
    SimMidiHost sim;
    set_midi_host(&sim);
    populate_family_scene(sim, 1);
    GlobalState global;
    CreateSetupAreaViewData* knob = global.record(5);
    knob->set_message_type_menu_string("Control Change");
    knob->set_message_channel_menu_string("2");
    knob->set_message_controller_number_code_string("74");
    QuietStdout quiet;
    midi_init();
    measure_overhead(state, [&] {
        setup_button_action(*knob, global);
        sim.clear_sent();
    });
    midi_exit();
    set_midi_host(nullptr);
}
BENCHMARK(BM_setup_button_action)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(50);

BENCHMARK_MAIN();
