// The live monitor's cost per received message: byte decoding plus matching
// with the 27 knob settings of one controller (target: at most 1 us per
// message). A knob-turning stream: Control Change under running status with
// clocks in between, notes, bends, and messages no knob sends. Building the
// matcher from the ledger and the table, done once per change, is measured
// apart.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "midi/decode/midi_byte_decoder.h"
#include "model/global_state.h"
#include "model/knob_attribution.h"
#include "model/knob_record.h"
#include "model/slot_mapping.h"

using namespace dialcraft;

namespace {

const QString serial = QStringLiteral("4AC3CC27");

// Knobs 0 to 26: Control Change 1/20.., then Note On, then Bend Change.
void fill_table(GlobalState& state)
{
    for (int knob = 0; knob < mapped_knob_count; ++knob) {
        CreateSetupAreaViewData& record = *state.record(knob);
        const QString type = knob < 18   ? QStringLiteral("Control Change")
                             : knob < 24 ? QStringLiteral("Note On")
                                         : QStringLiteral("Bend Change");
        record.set_message_type_menu_string(type);
        record.set_message_channel_menu_string(QString::number(knob % 4 + 1));
        record.set_message_controller_number_code_string(QString::number(20 + knob));
    }
}

ControllerLedger some_knobs_written()
{
    ControllerLedger ledger;
    for (int knob = 0; knob < 9; ++knob)
        ledger.controllers[serial][knob] = {QStringLiteral("Control Change"), knob % 4 + 1, 20 + knob,
                                            QDateTime::fromSecsSinceEpoch(0, Qt::UTC)};
    return ledger;
}

struct Stream {
    std::vector<uint8_t> bytes;
    int64_t messages = 0;
};

Stream knob_turns()
{
    Stream s;
    for (int turn = 0; turn < 64; ++turn) {
        // Knob `knob` (0 to 17) sends Control Change 20 + knob on channel knob % 4 + 1.
        const int knob = turn % 18;
        const auto channel = static_cast<uint8_t>(knob % 4);
        const auto controller = static_cast<uint8_t>(20 + knob);
        s.bytes.insert(s.bytes.end(), {static_cast<uint8_t>(0xB0 | channel), controller, 0});
        for (uint8_t value = 1; value < 12; ++value)
            s.bytes.insert(s.bytes.end(), {controller, value});
        s.bytes.push_back(0xF8);
        s.bytes.insert(s.bytes.end(), {static_cast<uint8_t>(0x90 | channel), 40, 100, 0xF8, 41, 0});    // notes
        s.bytes.insert(s.bytes.end(), {static_cast<uint8_t>(0xE0 | channel), 0x00, 0x40, 0x7F, 0x7F});  // bends
        s.bytes.insert(s.bytes.end(), {0xB9, 0x07, 0x64});                                              // unmatched
        s.messages += 12 + 1 + 3 + 2 + 1;
    }
    return s;
}

void BM_DecodeAndAttribute(benchmark::State& state)
{
    GlobalState table;
    fill_table(table);
    const KnobMatcher matcher = knob_attribution(serial, some_knobs_written(), &table);
    const Stream stream = knob_turns();
    std::vector<int> knobs;
    knobs.reserve(mapped_knob_count);
    int64_t matched = 0;
    for (auto _ : state) {
        MidiByteDecoder decoder;
        for (uint8_t byte : stream.bytes) {
            if (std::optional<MidiMessage> message = decoder.push(byte)) {
                matcher.matched_knobs(*message, knobs);
                matched += static_cast<int64_t>(knobs.size());
            }
        }
        benchmark::DoNotOptimize(matched);
    }
    state.SetItemsProcessed(state.iterations() * stream.messages);
    state.counters["knobs_per_message"] = static_cast<double>(matched) /
                                          static_cast<double>(state.iterations() * stream.messages);
    state.counters["ns_per_message"] = benchmark::Counter(static_cast<double>(stream.messages) * 1e-9,
                                                          benchmark::Counter::kIsIterationInvariantRate |
                                                              benchmark::Counter::kInvert);
}
BENCHMARK(BM_DecodeAndAttribute)->MinTime(1.0);

void BM_BuildAttribution(benchmark::State& state)
{
    GlobalState table;
    fill_table(table);
    const ControllerLedger ledger = some_knobs_written();
    for (auto _ : state) {
        const KnobMatcher matcher = knob_attribution(serial, ledger, &table);
        benchmark::DoNotOptimize(matcher.knobs().size());
    }
}
BENCHMARK(BM_BuildAttribution)->MinTime(1.0);

}  // namespace

BENCHMARK_MAIN();
