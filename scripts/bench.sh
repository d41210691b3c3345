#!/usr/bin/env bash
# Measures the library beside its peers and prints a table of all rows; build/bench/results.json holds the same, and
# docs/performance.svg shows it.
# Arguments go to the program, for example --quick (small trees, few repetitions: whether everything runs) and
# --benchmark_filter=S5 (rows, or "work/who", by regular expression); the picture is then build/bench/performance.svg.
# simdutf is measured, too, where $SIMDUTF_DIR says that it lies.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build bench
cmake --preset linux-bench -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DOXA_SIMDUTF_DIR="${SIMDUTF_DIR-}" >/dev/null
cmake --build --preset linux-bench --target benchmarks >/dev/null
mkdir -p build/bench

# The program removes what it makes; these folders also go when it is stopped.
disk=$(mktemp -d)
memory_disk=$(mktemp -d -p "$([ -d /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
trap 'rm -rf "$disk" "$memory_disk"' EXIT
trap 'exit 130' INT TERM

# What the figures depend on besides the library.
processor=$(sed -n '/^model name/{s/^[^:]*: //p;q}' /proc/cpuinfo)
flags=" $(sed -n '/^flags/{s/^[^:]*: //p;q}' /proc/cpuinfo) "
sets=
for set in sse2 sse4_2 avx avx2 bmi2 fma avx512f avx512bw avx512vbmi gfni; do
  [[ $flags != *" $set "* ]] || sets+=" $set"
done
compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[^=]*=//p' build/linux-bench/CMakeCache.txt)
echo "$(nproc) x ${processor:-unknown processor};${sets:- unknown instruction sets}; $(uname -sr); $("$compiler" --version | sed -n 1p)"
echo

build/linux-bench/bin/benchmarks --json=build/bench/results.json --disk="$disk" --memory-disk="$memory_disk" "$@"
picture=docs/performance.svg
[ $# = 0 ] || picture=build/bench/performance.svg
scripts/draw_performance.py build/bench/results.json "$picture"
