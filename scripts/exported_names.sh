#!/usr/bin/env bash
# exported_names.sh LIBRARY LIST: compares the names that the library exports with the list, and prints the difference.
# exported_names.sh --update LIBRARY LIST writes the list anew: look at what changed before it is committed.
set -euo pipefail
export LC_ALL=C

update=0
[ "${1-}" != --update ] || { update=1; shift; }
[ $# = 2 ] || { sed -n '2,3s/^# //p' "$0" >&2; exit 2; }
library=$1 list=$2

# Demangled, so that the variants of a constructor are one name.
names() {
  case $library in
    *.dll) x86_64-w64-mingw32-objdump -p "$library" | sed -n '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\t\[ *[0-9]*\] \(+base\[[^]]*\] *[0-9a-f]* \)\?//p' ;;
    *) nm --dynamic --defined-only --format=posix "$library" | cut -d ' ' -f 1 ;;
  esac | c++filt | sort -u
}

built=$(names)
[ -n "$built" ] || { echo "exported_names.sh: no names in $library" >&2; exit 1; }
if [ $update = 1 ]; then
  echo "$built" >"$list"
  exit
fi
surplus=$(comm -13 "$list" - <<<"$built")
missing=$(comm -23 "$list" - <<<"$built")
[ -z "$surplus" ] || printf 'Exported, but not in %s:\n%s\n' "$list" "$surplus"
[ -z "$missing" ] || printf 'In %s, but not exported:\n%s\n' "$list" "$missing"
[ -z "$surplus$missing" ]
