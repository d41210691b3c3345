#!/usr/bin/env bash
# Holds the rules of the folders: who may include whom, and platform words only in the seam. Prints each violation.
set -euo pipefail
cd "$(dirname "$0")/.."
failed=0
folders=()
for folder in base tests fuzz benchmarks examples extras; do [ -d "$folder" ] && folders+=("$folder"); done

sources=(--include=*.h --include=*.cpp --include=*.inc --include=*.inl)

report() {
  echo "check_layout: $1"
  failed=1
}

# Which subsystems a folder may include, besides itself and the headers directly under base/.
allowed() {
  case $1 in
    text) echo "" ;;
    formats) echo "text" ;;
    platform) echo "text formats" ;;
    string) echo "text platform" ;;
    object) echo "text string platform" ;;
    module) echo "text string object formats platform" ;;
    diagnostics) echo "text string platform" ;;
    filesystem) echo "text string object diagnostics platform" ;;
    *) echo "unknown" ;;
  esac
}

for folder in base/*/; do
  subsystem=$(basename "$folder")
  permitted=" $subsystem $(allowed "$subsystem") "
  [ "$permitted" != " $subsystem unknown " ] || report "base/$subsystem has no place in the order of the subsystems"
  while IFS=: read -r file target; do
    # Class records look for the entries of their modules; the modules for class records.
    [[ "$subsystem/$target" == @(object|filesystem)/module ]] && [ "${file##*.}" = cpp ] && continue
    # The systems' entry points of modules are called from below.
    [[ $file == base/platform/*/entry/* && $target == module ]] && continue
    [[ $permitted == *" $target "* ]] || report "$file includes base/$target"
  done < <(grep -rnoE '^ *# *include +"base/[a-z]+/' "$folder" "${sources[@]}" |
    sed -E 's/:[0-9]+:[^"]*"base\/([a-z]+)\//:\1/' | sort -u)
done

# What knows no system includes the standard library and the processor's instructions, and nothing of ours but the type of
# a character.
while IFS= read -r line; do
  report "no place for this include: $line"
done < <(grep -rnE '^ *# *include' base/text base/formats "${sources[@]}" |
  grep -vE 'include +(<[a-z_0-9]+>|<([a-z]*intrin|cxxabi)\.h>|"base/(char\.h|[a-z]+/.*)")' || true)

# Each side of the seam is reached by its own sources, and by those that both share; all others ask the headers of the
# services.
while IFS= read -r line; do
  report "reaches through the seam: $line"
done < <(grep -rnE 'include +"base/platform/(linux|windows)/' base extras examples "${sources[@]}" |
  grep -vE '^base/platform/(linux/.*"base/platform/linux/|windows/.*"base/platform/windows/|(files|modules|stack|system)/|[a-z_]+\.)' || true)

while IFS= read -r line; do
  report "not written from the root: $line"
done < <(grep -rnE '^ *# *include +"' "${folders[@]}" "${sources[@]}" 2>/dev/null |
  grep -vE '"(base|tests|fuzz|benchmarks|examples|extras)/|^tests/consumer/' || true)

words='_WIN32|_WIN64|_MSC_VER|__MINGW|__linux__|__unix__|windows\.h|unistd\.h|sys/[a-z]+\.h|(dlfcn|link|elf|fcntl|pthread|dirent)\.h'
while IFS= read -r line; do
  report "platform word outside the seam: $line"
done < <(grep -rnE "# *(if|ifdef|ifndef|elif|include).*($words)" "${folders[@]}" "${sources[@]}" |
  grep -vE '^base/(platform/|char\.h|export\.h)|^((tests|examples)/[a-z]+|benchmarks)/(linux|windows)/' || true)

while IFS= read -r file; do
  case $(basename "$file") in
    *[A-Z]*) report "not snake case: $file" ;;
    string.h | math.h | time.h | locale.h | limits.h | memory.h | assert.h | errno.h | signal.h)
      report "named like a standard header: $file" ;;
  esac
done < <(find "${folders[@]}" -name '*.h' -o -name '*.cpp')

[ $failed = 0 ] && echo "check_layout: ok"
exit $failed
