#!/usr/bin/env bash
# Builds the example program and shows on a copy of FOLDER (default: /usr/share/doc) what the library does. Installs
# what is missing for that. Exit codes: 0 all was done, 1 something failed, 2 wrong usage, 130 interrupted.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
program=$root/build/linux-release/foldertool/foldertool
log=$root/build/demo.log

fail() {
  echo "demo.sh: $2" >&2
  exit "$1"
}

build() {
  cd "$root"
  cmake --preset linux-release -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache &&
    cmake --build --preset linux-release --target foldertool
}

[ $# -le 1 ] || fail 2 "one folder at most is wanted: demo.sh [FOLDER]"
folder=${1-/usr/share/doc}
[ -n "$folder" ] || fail 2 "the name of the folder is empty: demo.sh [FOLDER]"
[ -d "$folder" ] || fail 1 "'$folder' is no folder"

"$root/scripts/setup.sh" build || fail 1 "the packages for the build cannot be installed"
mkdir -p "$root/build"
echo "Building foldertool, which takes some minutes the first time (log: ${log/#"$PWD/"/}) ..."
if ! (build) >"$log" 2>&1; then
  tail -n 30 "$log" >&2
  fail 1 "the build failed"
fi

echo
status=0
"$program" tour -- "$folder" || status=$?
echo
echo "The program is ${program/#"$PWD/"/}: try it with --help, or with -lang=DEU for German."
exit "$status"
