#!/usr/bin/env bash
# Builds and tests: without arguments both targets (linux, windows), with "all" everything that a change must pass, else
# the named jobs: lint, linux, clang, asan, tsan, fuzz, windows, clang-windows. Says when each step begins and what it
# took; the last line is "N passed, N failed".
set -uo pipefail
cd "$(dirname "$0")/.." || exit
# Nobody is asked anything, and neither the texts on the console nor Wine's code page depend on the caller.
exec </dev/null
export LC_ALL=C.UTF-8 HOME=${HOME:-$PWD/build}
# The compiler cache serves other checkouts of the same sources, too.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

default_jobs=(linux windows)
all_jobs=(linux windows lint clang asan tsan fuzz)
cores=$(nproc)
# How much lint and fuzz do: of what was changed, or of everything.
scope=changed
# What the run without arguments leaves to the others, because it takes most of the time: the packages, and each source of
# the Linux library compiled alone, for speed.
left_out=()
linux_preset=linux-release
# What each job needs installed besides the tools for every build.
declare -A needs=([linux]="linux package" [windows]=windows [lint]=lint [clang]="lint linux" [asan]= [tsan]= [fuzz]=fuzz
  [clang-windows]=clang-windows)
jobs=()
passed=0
failed=0

succeed() { passed=$((passed + ${1:-1})); }
fail() {
  failed=$((failed + ${2:-1}))
  echo "FAILED: $1"
}

finish() {
  echo "$passed passed, $failed failed"
  exit "$1"
}

duration() {
  if [ "$1" -lt 60 ]; then echo "$1 s"; else printf '%d min %02d s\n' $(($1 / 60)) $(($1 % 60)); fi
}

# The seconds that the processors have worked for this script.
processor_seconds() {
  local stat
  read -ra stat <"/proc/$$/stat"
  echo $(((stat[15] + stat[16]) / $(getconf CLK_TCK)))
}

# Runs one step of a job: what, and the command.
step() {
  local name=$1 status=0 begin=$SECONDS worked
  worked=$(processor_seconds)
  shift
  echo "$name ..."
  "$@" || status=1
  worked=$(($(processor_seconds) - worked))
  echo "$name: $([ $status = 0 ] || echo 'failed after ')$(duration $((SECONDS - begin))), $(duration $worked) of processor time"
  return $status
}

# A step that is counted as one test.
check() {
  if step "$@"; then succeed; else fail "$1"; fi
}

# Runs a command that shows its own progress on a terminal. Elsewhere only a failure is shown.
with_progress() {
  local log=$1
  shift
  if [ -t 1 ]; then
    "$@"
  else
    "$@" >"$log" 2>&1 || { tail -n 60 "$log"; return 1; }
  fi
}

quietly() {
  local log=$1
  shift
  "$@" >"$log" 2>&1 || { tail -n 60 "$log"; return 1; }
}

configure() {
  local preset=$1
  shift
  quietly "build/$preset.configure.log" cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache "$@"
}

# Installs what a job needs; while the first job works, what the others do.
installing=
install() {
  [ -z "$installing" ] || wait "$installing"
  installing=
  # shellcheck disable=SC2086
  step "$1: install" scripts/setup.sh build ${needs[$1]} || return
  [ "$1" = "${jobs[0]}" ] && [ ${#jobs[@]} -gt 1 ] || return 0
  local job others=()
  for job in "${jobs[@]:1}"; do
    # shellcheck disable=SC2206
    others+=(${needs[$job]})
  done
  scripts/setup.sh build "${others[@]}" >build/setup.log 2>&1 &
  installing=$!
}

# Makes the named targets of a preset, or all. JOB PRESET TARGET...
build() {
  local job=$1 preset=$2
  shift 2
  local targets=()
  [ $# = 0 ] || targets=(--target "$@")
  install "$job" && step "$job: configure" configure "$preset" &&
    step "$job: build" with_progress "build/$preset.build.log" cmake --build "build/$preset" "${targets[@]}" && return 0
  fail "build of $job"
  return 1
}

# Counts in the log of ctest the single tests of GoogleTest's programs, and every other test as one. Prints what failed
# tests said, and then both numbers.
read_results() {
  awk '
    function finish() {
      if (name == "") return
      if (isGood && !bad) passed += ok ? ok : 1
      else {
        passed += ok; failed += bad ? bad : 1
        printf "---- %s, after %s s\n", name, time
        for (i = lines > 80 ? lines - 80 : 0; i < lines; i++) print said[i]
      }
      name = ""
    }
    /^[0-9]+\/[0-9]+ Testing: / { finish(); name = $0; sub(/^[^:]*: /, "", name); ok = bad = isGood = isSaying = lines = 0; next }
    /^\[       OK \] / { ok++; next }
    /^\[ RUN      \] |^\[----------\] / { next }
    /^\[  FAILED  \] .*\([0-9]+ ms\)\r?$/ { bad++ }
    /^Test Passed\.$|^Required regular expression found\./ { isGood = 1 }
    /^Test time = / { time = $4 }
    /^<end of output>$/ { isSaying = 0 }
    isSaying && !/^-+$/ { said[lines++] = $0 }
    /^Output:$/ { isSaying = 1 }
    END { finish(); print passed + 0, failed + 0 }' "$1"
}

# Runs the tests of a build, or of those what ctest is told.
run_ctest() {
  local folder=$1 status=0 results good bad
  shift
  local options=(--test-dir "$folder" -j "$cores" --no-label-summary "$@")
  if [ -t 1 ]; then
    ctest "${options[@]}" --progress || status=1
  else
    ctest "${options[@]}" >"$folder.tests.log" 2>&1 || status=1
  fi
  results=$(read_results "$folder/Testing/Temporary/LastTest.log")
  read -r good bad <<<"${results##*$'\n'}"
  [ "$results" = "$good $bad" ] || echo "${results%$'\n'*}"
  succeed "$good"
  [ "$bad" = 0 ] || fail "$bad tests in $folder" "$bad"
  if [ "$bad" = 0 ] && { [ $status != 0 ] || [ "$good" = 0 ]; }; then
    tail -n 20 "$folder.tests.log" 2>/dev/null
    fail "ctest in $folder"
    status=1
  fi
  return $status
}

linux() {
  build linux $linux_preset && step "linux: tests" run_ctest build/$linux_preset "${left_out[@]}"
}

# One server of Wine's for all tests, instead of a start of its system for each, and a program that has a window: else the
# first test that comes to a window begins the desktop, whose process would hold on to the output of that test.
wine_prefix=$PWD/build/wine
run_wine_tests() {
  scripts/run_under_wine.sh wineboot >build/wine.log 2>&1 || true
  WINEPREFIX=$wine_prefix wineserver -p
  scripts/run_under_wine.sh notepad >>build/wine.log 2>&1 &
  run_ctest build/windows-quick "${left_out[@]}"
}
stop_wine() { [ ! -e "$wine_prefix" ] || WINEPREFIX=$wine_prefix wineserver -k 2>/dev/null; }

windows() {
  build windows windows-quick || return
  step "windows: tests" run_wine_tests
  stop_wine
}

# The other compiler: its warnings, its code. What users get is tried with the first.
clang() {
  build clang linux-clang && step "clang: tests" run_ctest build/linux-clang -E installed_package
}

asan() {
  build asan linux-asan && step "asan: tests" run_ctest build/linux-asan
}

# The programs whose tests start threads.
tsan() {
  local folders
  mapfile -t folders < <(cd tests && grep -rlE 'std::(j?thread|async)|pthread_create' --include='*.cpp' --include='*.h' -- */ |
    cut -d/ -f1 | sort -u | grep -vxE 'docs|consumer|package')
  build tsan linux-tsan "${folders[@]/%/_test}" || return
  step "tsan: tests" run_ctest build/linux-tsan -R "^($(IFS='|'; echo "${folders[*]}"))(_[0-9]+)?\$"
}

# The nearest thing here to another maker's compiler on Windows.
clang-windows() {
  build clang-windows windows-clang OxaBase && succeed
}

check_format() {
  find base tests fuzz benchmarks examples extras \( -name '*.h' -o -name '*.cpp' \) -print0 |
    xargs -0 -P "$cores" -n 40 clang-format --dry-run -Werror
}

# The sources of the library that were changed since the branch left main; on main itself, by the last commit. A changed
# header is read with its source, or with one that includes it.
changed_sources() {
  local git=(git -c "safe.directory=*") begin file
  begin=$("${git[@]}" merge-base HEAD origin/main 2>/dev/null || "${git[@]}" merge-base HEAD main 2>/dev/null) || return
  [ "$begin" != "$("${git[@]}" rev-parse HEAD)" ] || begin=$("${git[@]}" rev-parse -q --verify HEAD~1) || return
  {
    "${git[@]}" diff --name-only --diff-filter=d "$begin" -- base
    "${git[@]}" ls-files -o --exclude-standard -- base
  } | while IFS= read -r file; do
    case $file in
      *.cpp) echo "$file" ;;
      *.h) if [ -e "${file%.h}.cpp" ]; then echo "${file%.h}.cpp"; else grep -rlF --include='*.cpp' "\"$file\"" base | head -n 1; fi ;;
    esac
  done | grep -v /windows/ | sort -u
  return 0
}

# Folders as one unit have their headers read once. The unit itself is none of ours.
check_tidy() {
  local files=() options=() unity=OFF
  if [ $scope = all ] || ! mapfile -t files < <(changed_sources || echo base); then unity=ON; fi
  [ "${files[*]}" != base ] || unity=ON
  configure linux-lint -DOXA_UNITY=$unity || return
  if [ $unity = ON ]; then
    options=(--checks=-bugprone-suspicious-include)
    mapfile -t files < <(sed -nE 's/^ *"file": "(.*\/base\/.*)".*/\1/p' build/linux-lint/compile_commands.json | grep -v '_resources\.cpp$')
  fi
  [ ${#files[@]} -gt 0 ] || { echo "no source was changed"; return 0; }
  printf '%s\0' "${files[@]}" | xargs -0 -P "$cores" -n 1 clang-tidy --quiet "${options[@]}" -p build/linux-lint 2>build/tidy.log
}

check_docs() {
  configure linux-lint && quietly build/docs.log cmake --build build/linux-lint --target docs
}

lint() {
  install lint || { fail "install of lint"; return; }
  check "lint: layout" scripts/check_layout.sh
  check "lint: format" check_format
  check "lint: clang-tidy" check_tidy
  check "lint: documentation" check_docs
}

# A short run of one fuzz target, from its corpus.
fuzz_target() {
  local name seconds
  name=$(basename "$1")
  seconds=${OXA_FUZZ_SECONDS:-$([ $scope = all ] && echo 4 || echo 10)}
  mkdir -p "build/corpus/$name"
  quietly "build/$name.log" "$1" -max_total_time="$seconds" -max_len=4096 -timeout=10 -rss_limit_mb=2048 \
    -artifact_prefix="build/corpus/$name-" "build/corpus/$name" "fuzz/corpus/$name"
}

run_fuzz_targets() {
  local targets=(build/linux-fuzz/bin/fuzz_*) running=() status=0 i
  for ((i = 0; i < ${#targets[@]} + cores; i++)); do
    if [ $i -ge "$cores" ]; then
      local done=$((i - cores))
      if wait "${running[$done]}"; then succeed; else fail "${targets[$done]}"; status=1; fi
    fi
    [ $i -ge ${#targets[@]} ] || { fuzz_target "${targets[$i]}" & running[i]=$!; }
  done
  return $status
}

fuzz() {
  build fuzz linux-fuzz && step "fuzz: targets" run_fuzz_targets
}

# Read as a whole before anything runs, so that the script may be changed meanwhile.
main() {
  local job
  for job in "${@:-default}"; do
    case $job in
      default) jobs+=("${default_jobs[@]}"); left_out=(-E installed_package); linux_preset=linux-quick needs[linux]=linux ;;
      all) jobs+=("${all_jobs[@]}"); scope=all ;;
      lint | linux | clang | asan | tsan | fuzz | windows | clang-windows) jobs+=("$job") ;;
      *)
        echo "test.sh: there is no job '$job'. Jobs: all, or any of ${all_jobs[*]} clang-windows; without one: ${default_jobs[*]}" >&2
        finish 2
        ;;
    esac
  done

  mkdir -p build || finish 1
  trap 'stop_wine; fail interrupted; finish 130' INT TERM HUP
  for job in "${jobs[@]}"; do "$job"; done
  echo "all steps: $(duration $SECONDS), $(duration "$(processor_seconds)") of processor time"
  finish $((failed > 0 || passed == 0))
}

main "$@"; exit
