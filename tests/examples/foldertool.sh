#!/usr/bin/env bash
# What foldertool answers to command lines, and what it leaves on the disk.
# Arguments: the system that it is built for (linux or windows), and the command that runs it.
set -uo pipefail
system=$1
shift
program=("$@")
scripts=$(cd "$(dirname "$0")/../../scripts" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder" || exit 1
export LC_ALL=C.UTF-8 LANGUAGE= XDG_CONFIG_HOME=$folder/none
if [ "$system" = linux ]; then
  mkdir temporary
  export TMPDIR=$folder/temporary
  leftovers=$folder/temporary/foldertool*
else
  leftovers=${OXA_WINEPREFIX:-$scripts/../build/wine}/drive_c/users/*/Temp/foldertool*
fi
failed=0

fail() {
  echo "FAILED: $1"
  failed=1
}

# Runs a command line: expect CODE PIECE ARGUMENT... The piece is in what the program says on both streams.
expect() {
  local code=$1 piece=$2 said status=0
  shift 2
  # By a file, since processes that Wine leaves behind would keep a pipe open.
  "${program[@]}" "$@" >"$folder/said" 2>&1 </dev/null || status=$?
  said=$(<"$folder/said")
  [ "$status" = "$code" ] || fail "$* ended with $status instead of $code: $said"
  [[ $said == *"$piece"* ]] || fail "$* did not say '$piece': $said"
}

same() { diff -r "$1" "$2" || fail "$1 and $2 differ"; }
gone() { [ ! -e "$1" ] || fail "$1 is still there"; }

mkdir -p tree/sub/deep full empty
printf 'first' >tree/a.txt
printf '2nd' >tree/sub/B.TXT
head -c 3000000 /dev/urandom >tree/sub/deep/large.bin
: >tree/sub/none
printf 'x' >full/x
printf '#define A 1\n#define B A\n#define A 2\n' >bad.h
cp -r tree original

expect 0 "Usage: foldertool COMMAND" --help
expect 0 "Aufruf: foldertool BEFEHL" help -lang=DEU
expect 0 "Usage: foldertool copy SOURCE TARGET [--overwrite]" copy --help
expect 0 "foldertool 1.0.0.0" --version
expect 2 "a command is missing"
expect 2 "unknown command 'fly'" fly
expect 2 "unbekannter Befehl 'fly'" fly /LANG=deu
expect 2 "unknown option '--fast'" --fast list
expect 2 "unknown command '--help'" -- --help
expect 2 "'list' does not take --overwrite" list --overwrite '*' tree
expect 2 "too few operands" list '*'
expect 2 "zu viele Angaben" size tree empty -lang=DEU
expect 2 "'a|b' is no pattern" list 'a|b' tree
expect 1 "'nowhere': " list '*' nowhere
expect 1 "'tree/a.txt' is a file, a folder is wanted" tour tree/a.txt
expect 1 "'' is no path" size ''
expect 0 "8 B  2 files" list '*.txt' tree
expect 0 "4 Dateien in 2 Ordnern, 3,0 MB" size tree -lang=DEU
expect 0 "Files   = 4" info tree
expect 0 "Size      = 5 B" info tree/a.txt
expect 0 "Changed = 20" info tree
expect 1 "'bad.h', line 3: no definition" symbols bad.h
expect 0 "101  IDS_DECIMAL_POINT" symbols "$scripts/../examples/foldertool/resource.h"
expect 0 "VERSIONINFO     #1" resources "$scripts/../tests/data/resources/sample.dll"
expect 1 "'bad.h' is no program or library for Windows" resources bad.h
expect 0 "foldertool::commands::stack" stack

expect 1 "'tree' is source and target" copy tree tree
expect 1 "'tree/sub/new' lies in" copy tree tree/sub/new
expect 1 "'full' is there already" copy tree full
expect 1 "'full' ist ein Ordner, verlangt ist eine Datei" copy bad.h full -lang=DEU
expect 0 "4 files copied, 3.0 MB" copy tree new/copy
same tree new/copy
expect 0 "4 files copied" copy tree full --overwrite
[ -e full/x ] || fail "copying removed full/x"
expect 0 "1 file copied" copy tree/a.txt new/b.txt
expect 1 "'new/b.txt' is there already" move tree/sub/B.TXT new/b.txt
expect 0 "moved" move new/b.txt tree/sub/B.TXT --overwrite
same tree/a.txt tree/sub/B.TXT
expect 1 "lies in" move new new/copy/sub
expect 0 "moved" move new/copy empty
same original/sub/deep empty/sub/deep
gone new/copy
expect 0 "removed" remove empty
gone empty
expect 1 "'empty': " remove empty
expect 0 "All steps done" tour tree
expect 0 "Option -lang" tour tree -lang=DEU

# Nobody reads on.
mkdir many
head -c 4000000 /dev/zero | split -b 1000 -a 3 - many/
"${program[@]}" list '*' many 2>said </dev/null | head -n 1 >/dev/null
status=${PIPESTATUS[0]}
[ "$status" = "$([ "$system" = linux ] && echo 141 || echo 1)" ] || fail "the list that nobody reads ended with $status"
[ ! -s said ] || fail "the list that nobody reads said: $(cat said)"

holds() { [ -n "$(ls -A "$1" 2>/dev/null)" ]; }

# Interrupts a command line as soon as BEGUN holds. What ended before is done again, after PREPARE.
interrupt() {
  local prepare=$1 begun=$2 said
  shift 2
  for _ in 1 2 3 4 5 6 7 8 9; do
    $prepare
    "${program[@]}" "$@" 2>said >/dev/null &
    until eval "$begun" || ! kill -0 $! 2>/dev/null; do :; done
    kill -INT $! 2>/dev/null
    wait $!
    status=$?
    [ $status = 0 ] || break
  done
  said=$(<said)
  [ $status = 130 ] || fail "$* ended with $status when interrupted"
  [[ $said == "foldertool: interrupted"* ]] || fail "$* said when interrupted: $said"
}

# Names of any bytes, closed and full outputs, and signals are as they are here on Linux.
linux_only() {
  local odd=$'odd\xff:*?. ' evil=$'e\n\e[31m\tl' shown='e\x0a\x1b[31m\x09l' file source said far
  mkdir "tree/$odd"
  printf 'odd' >"tree/$odd/$odd"
  ln -s .. "tree/$odd/loop"
  expect 0 "$folder/tree/$odd/$odd" list 'odd*' "tree/$odd"
  expect 0 "All steps done" tour tree
  expect 0 "5 files copied" copy tree "$odd"
  same "tree/$odd/$odd" "$odd/$odd/$odd"
  ln -s tree link
  expect 0 "removed" remove link
  [ -d tree ] || fail "removing a link removed what it leads to"
  printf 'x' >$'tree/line\nbreak\xc2\x9b'
  expect 0 'tree/line\x0abreak\x9b' list 'line*' tree
  rm $'tree/line\nbreak\xc2\x9b'
  printf '#define A B' >"$evil"
  expect 0 "/$shown" info "$evil"
  expect 0 "'$folder/$shown' moved" move "$evil" "$evil.b"
  expect 1 "'$shown': " copy "$evil" new
  expect 1 "'$shown.b', line 1" symbols "$evil.b"
  expect 0 "'$folder/$shown.b' removed" remove "$evil.b"
  expect 2 "unknown command '$shown'" "$evil"
  # Perhaps on another disk.
  far=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
  cp -r original near
  expect 0 "moved" move near "$far/moved"
  gone near
  same original "$far/moved"
  rm -r "$far"
  ln -s nowhere tree/dangling
  expect 0 "All steps done" tour tree
  mkfifo tree/pipe
  expect 1 "cannot copy '$folder/tree/pipe'" tour tree

  "${program[@]}" --help >/dev/full 2>/dev/null
  [ $? = 1 ] || fail "a full output was not noticed"
  "${program[@]}" copy tree/a.txt closed >&- 2>&-
  same tree/a.txt closed
  "${program[@]}" tour original | head -n 1 >/dev/null
  "$scripts/demo.sh" a b 2>/dev/null
  [ $? = 2 ] || fail "demo.sh took two folders"
  said=$("$scripts/demo.sh" nowhere 2>&1)
  [ "$said" = "demo.sh: 'nowhere' is no folder" ] || fail "demo.sh said: $said"

  # While it copies many files, a large one in a folder, and a large one; on the way to another disk; while it removes.
  mkdir large && head -c 200000000 /dev/zero >large/file
  for source in many large large/file; do
    interrupt "rm -rf out" "holds out" copy $source out${source#"${source%%/*}"}
    diff -rq out "${source%/file}" | grep -v "^Only in ${source%/file}" && fail "an incomplete file was left"
    [ -z "$(ls -A out | grep -vxE '[a-z]{3}|file')" ] || fail "the interrupted copy left $(ls -A out)"
  done
  far=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
  refresh() { rm -rf "$far/out" near && cp -r many near; }
  interrupt refresh "holds $far/out" move near "$far/out"
  [ "$(find near "$far/out" -type f -size 1000c -printf '%f\n' | sort -u | wc -l)" = 4000 ] || fail "a move lost files"
  rm -rf "$far"
  interrupt refresh '[ "$(find near -type f | wc -l)" != 4000 ]' remove near
  [ -d near ] || fail "an interrupted removal removed all"

  # At 40 columns the bar stays, and no number is cut. It comes late: what is copied by then has no bar.
  for name in 2 3 4 5; do ln large/file large/$name; done
  for _ in 1 2 3 4 5 6 7 8 9; do
    rm -rf out
    script -qec "stty cols 40; $(printf '%q ' "${program[@]}") copy large out" /dev/null </dev/null | tr '\r' '\n' |
      grep '\[' >drawn && break
  done
  [ -s drawn ] || fail "no bar was drawn"
  ! grep -vE '^ *\[[#.]{6,}] +[0-9]+ %  [0-9.]+ .?B of 1\.0 GB(  [0-9.]+ .?B/s)? *$' drawn || fail "a bar is cut"
  [ "$(wc -L <drawn)" -lt 40 ] || fail "a bar is too long"
}
[ "$system" != linux ] || linux_only

# shellcheck disable=SC2086 # They are patterns.
! ls -d $leftovers 2>/dev/null || fail "temporary folders were left"
exit $failed
