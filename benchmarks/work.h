#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "benchmarks/deep_stack.h"

namespace Oxa_1_1::bench
{

/// The names of the work that is measured: the row of the table of goals, and what is done.
namespace work
{

inline const std::string FROM_UTF8_SHORT = "S1 from UTF-8, 32 ASCII bytes";
inline const std::string FROM_UTF8_ASCII = "S1 from UTF-8, 4 KiB ASCII";
inline const std::string FROM_UTF8_MIXED = "S1 from UTF-8, 4 KiB mixed scripts";
inline const std::string TO_UTF8_SHORT = "S2 to UTF-8, 32 ASCII units";
inline const std::string TO_UTF8_ASCII = "S2 to UTF-8, 4 KiB ASCII";
inline const std::string TO_UTF8_MIXED = "S2 to UTF-8, 4 KiB mixed scripts";
inline const std::string FROM_ANSI = "S3 from 4 KiB windows-1252";
inline const std::string BUILD_LIST = "S4 a list item: text, int, double";
inline const std::string WRITE_DOUBLE = "S5 a double as text";
inline const std::string READ_INTS = "S6 an int from the front of 7 KB";
inline const std::string FIND_UNIT = "S7 a unit at the end of 1 MiB";
inline const std::string FIND_TEXT = "S7 a 12-unit text at the end of 1 MiB";
inline const std::string COMPARE = "S8 compare 64 units ignoring case";
inline const std::string MAP_INSERT = "S8 insert into a map of 10,000 names";
inline const std::string MAP_FIND = "S8 look up in a map of 10,000 names";
inline const std::string ESCAPE = "S9 escape 4 KiB";
inline const std::string COPY = "S10 copy 7 units";
inline const std::string MOVE = "S10 move 7 units";
inline const std::string OWN = "O1 copy and drop an owner";
inline const std::string OWN_SHARED = "O1 the same, 2 threads";
inline const std::string CREATE = "O1 create and destroy a node";
inline const std::string WATCH = "O2 lock a watched node, drop it";
inline const std::string KIND_HIT = "O3 is-kind-of at depth 8, hit";
inline const std::string KIND_MISS = "O3 is-kind-of at depth 8, miss";
inline const std::string TEXT_BY_ID = "R1 a text of 2000 by number";
inline const std::string TEXT_IN_LANGUAGE = "R2 a text of 5000 in 10 languages";
inline const std::string PARSE_HEADER = "R3 1 kB of a resource header";
inline const std::string LOOK_UP_SYMBOL = "R4 look up among 10,000 symbols";
inline const std::string CAPTURE = "D1 capture 32 frames";
inline const std::string CAPTURE_NAMED = "D1 walk with names and lines, warm";
inline const std::string COUNT_DEPTH = "D1 count all frames";
inline const std::string PASS_OVER = "D2 an assertion that is passed over";

}  // namespace work

/// Names of those who do the work.
inline const std::string OURS = "OxaBase";
inline const std::string FLOOR = "floor";

/// Lets `body` do `name` as `who`; each call counts as `items`.
template <class Body>
void add(const std::string& name, const std::string& who, Body body, double items = 1)
{
    benchmark::RegisterBenchmark((name + "/" + who).c_str(),
                                 [body = std::move(body), items](benchmark::State& state) mutable
                                 {
                                     for (auto _ : state) body();
                                     state.counters["items"] = items;
                                 });
}

/// The same by two threads at once.
template <class Body>
void addThreads(const std::string& name, const std::string& who, Body body)
{
    benchmark::RegisterBenchmark((name + "/" + who).c_str(),
                                 [body](benchmark::State& state)
                                 {
                                     for (auto _ : state) body();
                                     state.counters["items"] = benchmark::Counter(1, benchmark::Counter::kAvgThreads);
                                 })
        ->Threads(2)
        ->UseRealTime();
}

/// The same below N frames of known functions, and warm: the first call, which reads the symbols, does not count.
template <int N, class Body>
void addBelow(const std::string& name, const std::string& who, Body body)
{
    benchmark::RegisterBenchmark((name + "/" + who).c_str(),
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

/// Keeps a result, and so the work for it.
template <class T>
void keep(T&& result)
{
    benchmark::DoNotOptimize(result);
}

// Each source registers what it measures.
void addOxa();
void addFloors();
void addStandard();
void addObjects();
void addObjectFloors();
// Those of peers register themselves, because they may be missing.

}  // namespace Oxa_1_1::bench
