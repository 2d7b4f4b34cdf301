// Speed of the table operations that scale with the table: applying an
// imported text of 100,000 lines, and storing plus loading a 100,000-slot
// table. Printed lines go to /dev/null while the loops run.
#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QSettings>
#include <QStandardPaths>

#include "model/config_file_transfer.h"
#include "model/configuration.h"
#include "model/stored_configuration.h"
#include "quiet_stdout.h"

using namespace dialcraft;

namespace {

QString text_of_lines(int count)
{
    QStringList lines;
    lines.reserve(count);
    const QString kinds[] = {QStringLiteral("Control Change"), QStringLiteral("16"), QStringLiteral("127")};
    for (int i = 0; i < count; ++i)
        lines.append(kinds[i % 3]);
    return lines.join(u'\n');
}

QStringList table_of_slots(int count)
{
    QStringList settings;
    settings.reserve(count);
    for (int i = 0; i < count; ++i)
        settings.append(i % 3 == 0 ? QStringLiteral("Control Change") : QString::number(i % 128));
    return settings;
}

void BM_ReverseUpdateDocument100kLines(benchmark::State& state)
{
    ConfigFileTransfer transfer;
    transfer.document.text = text_of_lines(100000);
    QuietStdout quiet;
    for (auto _ : state) {
        transfer.reverseUpdateDocument();
        benchmark::DoNotOptimize(configuration.settings.size());
    }
    if (configuration.settings.size() != 100000)
        state.SkipWithError("wrong slot count");
}
BENCHMARK(BM_ReverseUpdateDocument100kLines)->Unit(benchmark::kMillisecond)->MinTime(1.0);

void BM_SaveAndLoadCustomInfo100kSlots(benchmark::State& state)
{
    const QStringList table = table_of_slots(100000);
    QuietStdout quiet;
    for (auto _ : state) {
        state.PauseTiming();
        configuration.settings = table;
        state.ResumeTiming();
        saveCustomInfo();
        loadCustomInfo();
        benchmark::DoNotOptimize(configuration.settings.size());
    }
    if (configuration.settings != table)
        state.SkipWithError("table did not survive the round trip");
    QSettings(QStringLiteral("dialcraft"), QStringLiteral("dialcraft")).remove(QStringLiteral("configurationKey"));
}
BENCHMARK(BM_SaveAndLoadCustomInfo100kSlots)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace

// The library's own main runs the benchmarks; it is renamed so that ours can
// set up Qt first.
#define main run_benchmarks
BENCHMARK_MAIN();
#undef main

int main(int argc, char** argv)
{
    // Test-mode paths keep the benchmark away from the real user's settings.
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication app(argc, argv);
    return run_benchmarks(argc, argv);
}
