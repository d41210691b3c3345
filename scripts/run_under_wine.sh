#!/usr/bin/env bash
# Runs a program of the Windows target under Wine, with a prefix of its own and the compiler's run-time libraries.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
export WINEPREFIX=${OXA_WINEPREFIX:-$root/build/wine}
export WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
compiler=x86_64-w64-mingw32-g++-posix
runtime=$(dirname "$($compiler -print-file-name=libstdc++-6.dll)")
threads=$(dirname "$($compiler -print-file-name=libwinpthread-1.dll)")
export WINEPATH="$runtime;$threads${WINEPATH:+;$WINEPATH}"
mkdir -p "$(dirname "$WINEPREFIX")"
# The first program makes the prefix; only one may do so at a time. Windows are made but nowhere shown, whatever screen the
# caller has.
make_prefix() {
  wine wineboot --init && wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f && wineserver --wait
  touch "$WINEPREFIX/made"
}
if [ ! -e "$WINEPREFIX/made" ]; then
  (flock 9; [ -e "$WINEPREFIX/made" ] || make_prefix >/dev/null 2>&1) 9>"$WINEPREFIX.lock" || true
fi
# Wine needs a fixed address that is free in its loader. Where the system puts things anywhere, one start in some thousands
# finds it taken, and ends without a word.
fixed=(setarch -R)
"${fixed[@]}" true 2>/dev/null || fixed=()
exec "${fixed[@]}" wine "$@"
