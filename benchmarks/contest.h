#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <exception>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "benchmarks/deep_stack.h"
#include "benchmarks/work.h"

/// Who is measured.
namespace Oxa_1_1::bench
{

struct Contestant
{
    std::string work;
    std::string who;
    /// Hands it to the benchmark library. Empty when there is just a value.
    std::function<void()> enter;
    std::function<double()> value;
};

/// In the order in which they were added.
inline std::vector<Contestant>& contestants()
{
    static std::vector<Contestant> all;
    return all;
}

/// `run` gets the benchmark's state. What it throws is the reason why there is no result.
template <class Run>
void addRun(const std::string& work, const std::string& who, Run run,
            const std::function<void(benchmark::internal::Benchmark&)>& adjust = {})
{
    const auto enter = [name = work + "/" + who, run = std::move(run), adjust]
    {
        benchmark::internal::Benchmark* const entry =
            benchmark::RegisterBenchmark(name.c_str(),
                                         [run](benchmark::State& state) mutable
                                         {
                                             try
                                             {
                                                 run(state);
                                             }
                                             catch (const std::exception& e)
                                             {
                                                 state.SkipWithError(e.what());
                                             }
                                         });
        if (adjust) adjust(*entry);
    };
    contestants().push_back({.work = work, .who = who, .enter = enter, .value = {}});
}

/// Lets `body` do `work` as `who`; each call counts as `items`.
template <class Body>
void add(const std::string& work, const std::string& who, Body body, double items = 1)
{
    addRun(work, who,
           [body = std::move(body), items](benchmark::State& state) mutable
           {
               for (auto _ : state) body();
               state.counters["items"] = items;
           });
}

/// The same on a sample that is large, and so made only when somebody asks for it: `sample()` says, as `items`, how
/// many it holds.
template <class Sample, class Body>
void addOn(const std::string& work, const std::string& who, Sample sample, Body body)
{
    addRun(
        work, who,
        [sample, body](benchmark::State& state)
        {
            auto& made = sample();
            for (auto _ : state) body(made);
            state.counters["items"] = static_cast<double>(made.items);
        },
        [](benchmark::internal::Benchmark& entry) { entry.Repetitions(7); });
}

/// The same on a sample that the work uses up. Making it anew each time does not count.
template <class Sample, class Body>
void addOnFresh(const std::string& work, const std::string& who, Sample sample, Body body)
{
    addRun(
        work, who,
        [sample, body](benchmark::State& state)
        {
            for (auto _ : state)
            {
                const auto made = sample();
                const auto start = std::chrono::steady_clock::now();
                body(made);
                const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
                state.SetIterationTime(time.count());
                state.counters["items"] = static_cast<double>(made.items);
            }
        },
        // Each takes a second or so.
        [](benchmark::internal::Benchmark& entry) { entry.UseManualTime()->Repetitions(5); });
}

/// By two threads at once.
template <class Body>
void addThreads(const std::string& work, const std::string& who, Body body)
{
    addRun(
        work, who,
        [body](benchmark::State& state)
        {
            for (auto _ : state) body();
            state.counters["items"] = benchmark::Counter(1, benchmark::Counter::kAvgThreads);
        },
        [](benchmark::internal::Benchmark& entry) { entry.Threads(2)->UseRealTime(); });
}

/// Below N frames of known functions, and warm: the first call, which reads the symbols, does not count.
template <int N, class Body>
void addBelow(const std::string& work, const std::string& who, Body body)
{
    addRun(work, who,
           [body = std::move(body)](benchmark::State& state) mutable
           {
               auto run = [&]
               {
                   body();
                   for (auto _ : state) body();
               };
               below<N>(run);
               state.counters["items"] = 1;
           });
}

/// What is counted, not timed.
inline void addValue(const std::string& work, const std::string& who, std::function<double()> value)
{
    contestants().push_back({.work = work, .who = who, .enter = {}, .value = std::move(value)});
}

/// Keeps a result, and so the work for it.
template <class T>
void keep(T&& result)
{
    benchmark::DoNotOptimize(result);
}

// Each source adds what it measures.
void addOxa();
void addFloors();
void addStandard();
void addObjects();
void addObjectFloors();
void addFiles();
void addFileFloors();
void addStandardFiles();
void addCommands();
void addScanPoints();
// Those of peers add themselves when the program starts, because they may be missing.

}  // namespace Oxa_1_1::bench
