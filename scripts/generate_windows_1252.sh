#!/usr/bin/env bash
# Writes base/text/windows_1252_table.inc: what the Windows target's system makes of each byte 0x80 to 0x9F
# and of each unit beyond Latin-1, with its nearest relatives. Run by hand.
set -euo pipefail
cd "$(dirname "$0")/.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cat >"$work/table.cpp" <<'PROGRAM'
#include <cstdio>
#include <windows.h>

int main()
{
    std::puts("// Made by scripts/generate_windows_1252.sh.");
    std::puts("// clang-format off");
    std::puts("\n// The units of the bytes 0x80 to 0x9F.");
    std::puts("constexpr std::array<Char, 32> MIDDLE_UNITS{");
    for (int i = 0x80; i < 0xA0; ++i)
    {
        const char byte = static_cast<char>(i);
        wchar_t unit = 0;
        MultiByteToWideChar(1252, 0, &byte, 1, &unit, 1);
        std::printf("0x%04X,%s", unit, i % 16 == 15 ? "\n" : " ");
    }
    std::puts("};\n\n// Units that are not their own byte, in order, each with its byte in the low half.");
    std::puts("constexpr std::uint32_t OTHER_UNITS[]{");
    int count = 0;
    for (unsigned i = 0x80; i < 0x10000; ++i)
    {
        const wchar_t unit = static_cast<wchar_t>(i);
        char byte = 0;
        if (WideCharToMultiByte(1252, 0, &unit, 1, &byte, 1, nullptr, nullptr) != 1) continue;
        if (byte == '?' || (i >= 0xA0 && i <= 0xFF)) continue;
        std::printf("0x%06X,%s", i << 8 | static_cast<unsigned char>(byte), ++count % 12 == 0 ? "\n" : " ");
    }
    std::puts("\n};");
}
PROGRAM
x86_64-w64-mingw32-g++-posix -O1 "$work/table.cpp" -o "$work/table.exe"
scripts/run_under_wine.sh "$work/table.exe" | tr -d '\r' >base/text/windows_1252_table.inc
