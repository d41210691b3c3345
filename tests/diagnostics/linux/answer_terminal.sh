#!/usr/bin/env bash
# Answers the question of a failed assertion on a terminal. Arguments: the program that asks.
set -euo pipefail
program=$1
output=$(mktemp)
trap 'rm -f "$output"' EXIT
failed=0

# What is typed, the exit code and the number of questions that must follow.
expect() {
  local typed=$1 code=$2 questions=$3 got=0 asked
  printf '%b' "$typed" | SHELL=/bin/sh timeout 60 script -qec "'$program'" /dev/null >"$output" 2>&1 || got=$?
  asked=$(grep -o '(i)gnore?' "$output" | wc -l)
  if [ "$got" != "$code" ] || [ "$asked" != "$questions" ]; then
    echo "typed '$typed': exit code $got instead of $code, $asked questions"
    cat "$output"
    failed=1
  fi
}

expect 'i\n' 0 1
expect 'r\nr\n' 0 2
expect 'what\n\nIgnore\n' 0 3
expect 'a\n' 3 1
expect 'r\nA\n' 3 2

# Nobody can be asked without a terminal.
code=0
setsid -w "$program" </dev/null >"$output" 2>&1 || code=$?
[ "$code" = 3 ] || { echo "without a terminal: exit code $code instead of 3"; failed=1; }
exit $failed
