#!/usr/bin/env bash
# Presses the buttons of the message box of a failed assertion, on a screen of its own. Arguments: the script that runs
# programs of the Windows target, the program that asks. OXA_WINEPREFIX names a prefix that nothing else uses: a desktop
# that others have made without a screen would hide the box.
set -euo pipefail
runner=$1
program=$2
output=$(mktemp)
screen=$(mktemp)
trap 'WINEPREFIX=$OXA_WINEPREFIX wineserver -k || true; kill "$server" 2>/dev/null || true; rm -f "$output" "$screen"' EXIT
# Without a reset, which ends programs that come just when the last one before them has gone.
Xvfb -noreset -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$screen" >/dev/null 2>&1 &
server=$!
for _ in $(seq 100); do [ -s "$screen" ] && break; sleep 0.1; done
export DISPLAY=":$(cat "$screen")"
failed=0

# Presses the first letter of a button whenever the box is there, until the program ends: a slow machine may lose a key,
# and a look at windows that come and go may fail.
press() {
  local key=$1 run=$2 name window outcome=1
  name=$(basename "$program")
  for _ in $(seq 300); do
    kill -0 "$run" 2>/dev/null || return $outcome
    window=$(xdotool search --onlyvisible --name "$name" 2>/dev/null | head -n 1) || true
    if [ -n "$window" ]; then
      outcome=0
      timeout 5 xdotool windowfocus --sync "$window" key --clearmodifiers "$key" 2>/dev/null || true
    fi
    sleep 0.5
  done
  return 1
}

# The button, the exit code and the rounds that must follow.
expect() {
  local button=$1 code=$2 rounds=$3 got=0 run
  "$runner" "$program" >"$output" 2>&1 &
  run=$!
  press "$button" "$run" || { echo "no message box to press '$button' in"; failed=1; kill "$run" 2>/dev/null || true; }
  wait "$run" || got=$?
  if [ "$got" != "$code" ] || [ "$(grep -c '^round' "$output")" != "$rounds" ]; then
    echo "pressed '$button': exit code $got instead of $code"
    cat "$output"
    failed=1
  fi
}

expect i 0 2
expect a 3 1
exit $failed
