#!/usr/bin/env bash
# Builds and tests everything, or the named jobs: lint, linux, clang, asan, tsan, fuzz, windows.
# Ends with the line "N passed, N failed".
set -uo pipefail
cd "$(dirname "$0")/.."
# Text on the console, and Wine's ANSI code page, do not depend on the caller.
export LC_ALL=C.UTF-8

jobs=("$@")
[ ${#jobs[@]} -gt 0 ] || jobs=(lint linux clang asan tsan fuzz windows)
passed=0
failed=0

succeed() { passed=$((passed + ${1:-1})); }
fail() {
  failed=$((failed + ${2:-1}))
  echo "FAILED: $1"
}

# Runs one check that is counted as one test.
check() {
  local name=$1
  shift
  if "$@"; then succeed; else fail "$name"; fi
}

build() {
  local preset=$1
  shift
  scripts/setup.sh build "$@" || return 1
  cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache >build/"$preset".log 2>&1 &&
    cmake --build --preset "$preset" >>build/"$preset".log 2>&1 && return 0
  tail -n 60 build/"$preset".log
  return 1
}

# Counts the single tests of GoogleTest's programs and every other entry as one.
count_tests() {
  local log=$1 single
  single=$(grep -cE '^[0-9]+: \[       OK \]' "$log")
  succeed "$single"
  single=$(grep -cE '^[0-9]+: \[  FAILED  \] .*\([0-9]+ ms\)' "$log")
  [ "$single" = 0 ] || fail "$log: $single tests" "$single"
  succeed "$(grep -E '^ *[0-9]+/[0-9]+ Test ' "$log" | grep -c ' Passed ')"
  single=$(grep -E '^ *[0-9]+/[0-9]+ Test ' "$log" | grep -vc ' Passed ')
  [ "$single" = 0 ] || fail "$log: $single programs" "$single"
}

run_tests() {
  local preset=$1
  shift
  echo "== $preset"
  if ! build "$preset" "$@"; then
    fail "build of $preset"
    return
  fi
  local log=build/$preset.tests.log
  ctest --test-dir build/"$preset" -V -j 2 >"$log" 2>&1
  grep -qE '^[0-9]+% tests passed' "$log" || { fail "ctest of $preset"; tail -n 40 "$log"; }
  grep -E '\[  FAILED  \]|Failure|ERROR: |WARNING: ThreadSanitizer|runtime error' "$log" | head -n 40
  count_tests "$log"
}

check_format() {
  git ls-files -co --exclude-standard -- '*.h' '*.cpp' | xargs -r clang-format --dry-run -Werror
}

check_tidy() {
  git ls-files -co --exclude-standard -- 'base/*.cpp' | grep -v /platform/windows/ | xargs -r -P 2 -n 4 clang-tidy --quiet -p build/linux-clang 2>build/tidy.log
}

check_docs() {
  cmake --build --preset linux-clang --target docs >build/docs.log 2>&1 || { tail -n 60 build/docs.log; return 1; }
}

lint() {
  echo "== lint"
  scripts/setup.sh build lint || fail "setup of lint"
  check "layout" scripts/check_layout.sh
  check "format" check_format
  if build linux-clang; then
    check "clang-tidy" check_tidy
    check "documentation" check_docs
  else
    fail "build of linux-clang"
  fi
}

# A short run of each fuzz target, from its corpus.
fuzz() {
  echo "== fuzz"
  if ! build linux-fuzz fuzz; then
    fail "build of linux-fuzz"
    return
  fi
  local target name seconds=${OXA_FUZZ_SECONDS:-10}
  for target in build/linux-fuzz/bin/fuzz_*; do
    name=$(basename "$target")
    mkdir -p "build/corpus/$name"
    if "$target" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 -artifact_prefix="build/corpus/$name-" \
      "build/corpus/$name" "fuzz/corpus/$name" >"build/$name.log" 2>&1; then
      succeed
    else
      fail "$name"
      tail -n 30 "build/$name.log"
    fi
  done
}

mkdir -p build
for job in "${jobs[@]}"; do
  case $job in
    lint) lint ;;
    linux) run_tests linux-release package ;;
    clang) run_tests linux-clang lint package ;;
    asan) run_tests linux-asan ;;
    tsan) run_tests linux-tsan ;;
    fuzz) fuzz ;;
    windows) run_tests windows-debug windows ;;
    *) echo "test.sh: unknown job '$job'" >&2; exit 2 ;;
  esac
done

echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]
