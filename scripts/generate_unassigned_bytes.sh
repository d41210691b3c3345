#!/usr/bin/env bash
# Writes base/platform/linux/system/unassigned_bytes.inc: the units that the Windows target's system gives to bytes without a
# character, in runs. Run by hand.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat >"$work/table.cpp" <<'PROGRAM'
#include <cstdio>
#include <initializer_list>
#include <windows.h>

int unitOf(unsigned page, int byte)
{
    const char source = static_cast<char>(byte);
    wchar_t unit = 0;
    return byte < 256 && MultiByteToWideChar(page, 0, &source, 1, &unit, 1) == 1 ? unit : -1;
}

// A control character of the same value, or one of the units set aside for this. The controls of the ISO pages are real.
// One Hebrew vowel sign is younger than the tables of iconv.
bool isUnassigned(unsigned page, int byte)
{
    const int unit = unitOf(page, byte);
    if (page == 1255 && unit == 0x05BA) return true;
    return (unit == byte && byte >= 0x80 && byte < 0xA0 && page < 28591) || (unit >= 0xF700 && unit < 0xF8FF);
}

int main()
{
    std::puts("// Made by scripts/generate_unassigned_bytes.sh.\n// clang-format off\n");
    std::puts("constexpr UnassignedBytes UNASSIGNED_BYTES[]{");
    for (const unsigned page : {857, 864, 869, 874, 932, 936, 949, 950, 1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258,
                                28593, 28596, 28597, 28598})
        for (int first = 0x80, last; first < 256; first = last + 1)
        {
            last = first;
            if (!isUnassigned(page, first)) continue;
            while (isUnassigned(page, last + 1) && unitOf(page, last + 1) == unitOf(page, last) + 1) ++last;
            std::printf("{%u, 0x%02X, 0x%02X, 0x%04X},\n", page, first, last, unitOf(page, first));
        }
    std::puts("};");
}
PROGRAM
x86_64-w64-mingw32-g++-posix -O1 "$work/table.cpp" -o "$work/table.exe"
scripts/run_under_wine.sh "$work/table.exe" | tr -d '\r' >base/platform/linux/system/unassigned_bytes.inc
