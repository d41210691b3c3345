#!/usr/bin/env bash
# Measures the library beside its peers and prints the ratios; those of text are in build/bench/results.json, too.
# Arguments go to the benchmark programs: scripts/bench.sh --benchmark_filter=S5
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build bench
cmake --preset linux-bench -DCMAKE_CXX_COMPILER_LAUNCHER=ccache >/dev/null
cmake --build --preset linux-bench --target string_benchmark scan_point_benchmark >/dev/null
mkdir -p build/bench
options=(--benchmark_enable_random_interleaving=true --benchmark_repetitions=7 --benchmark_min_time=0.05)
build/linux-bench/bin/string_benchmark "${options[@]}" --json=build/bench/results.json "$@"
build/linux-bench/bin/scan_point_benchmark "${options[@]}" "$@"
