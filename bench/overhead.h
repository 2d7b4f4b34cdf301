#pragma once
// Per-press overhead beyond the mandated pauses, reported as the median of
// the iterations so that a rare scheduler hiccup of the machine does not hide
// the typical figure.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

// Each programming press sleeps 7 x 8 ms on purpose.
inline constexpr double mandated_sleep_ms = 56.0;

template <typename F>
void measure_overhead(benchmark::State& state, F&& press)
{
    std::vector<double> overhead;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        press();
        overhead.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count() -
                           mandated_sleep_ms);
    }
    std::sort(overhead.begin(), overhead.end());
    state.counters["overhead_median_ms"] = overhead[overhead.size() / 2];
    state.counters["overhead_max_ms"] = overhead.back();
}
