#!/usr/bin/env python3
"""Writes base/text/character_tables.inc and upper_case_table.inc: classes and case of the 65536 UTF-16 units.

Run by hand when Python's Unicode data is newer: scripts/generate_character_tables.py
"""

import pathlib
import unicodedata

ALPHA, DIGIT, SPACE, GRAPHIC = 1, 2, 4, 8
WHITE_SPACE = {*range(0x09, 0x0E), 0x20, 0x85, 0xA0, 0x1680, *range(0x2000, 0x200B), 0x2028, 0x2029, 0x202F, 0x205F,
               0x3000}
BLOCK = 32


def classes(unit):
    category = unicodedata.category(chr(unit))
    if unit in WHITE_SPACE:
        return SPACE
    if category in ("Cc", "Cf"):
        return 0
    # What is unassigned today may be a letter tomorrow; it must not be taken for a blank.
    result = GRAPHIC
    # Marks belong to the words that they stand in.
    if category[0] in "LM" and category != "Me" or category == "Nl":
        result |= ALPHA
    if category == "Nd":
        result |= DIGIT
    return result


def lower_offset(unit):
    """What to add, modulo 65536, for the simple lower-case mapping of a single unit."""
    lower = chr(unit).lower()
    # The full mapping of the dotted capital I has two characters; the simple one is its first.
    target = ord(lower[0])
    return (target - unit) % 0x10000 if target < 0x10000 else 0


def upper_offset(unit):
    """The same for the simple upper-case mapping: the full one where it has one character, else that of titles."""
    upper = next((full for full in (chr(unit).upper(), chr(unit).title()) if len(full) == 1), chr(unit))
    return (ord(upper) - unit) % 0x10000 if ord(upper) < 0x10000 else 0


def two_stage(values):
    blocks, index, seen = [], [], {}
    for start in range(0, 0x10000, BLOCK):
        block = tuple(values[start:start + BLOCK])
        if block not in seen:
            seen[block] = len(blocks)
            blocks.append(block)
        index.append(seen[block])
    return index, [value for block in blocks for value in block]


def write_array(lines, kind, name, values):
    lines.append(f"constexpr std::array<{kind}, {len(values)}> {name}{{")
    for start in range(0, len(values), 24):
        lines.append("    " + ", ".join(str(value) for value in values[start:start + 24]) + ",")
    lines.append("};")


def write_case(lines, name, offsets):
    # There are few different offsets, so units hold their numbers.
    distinct = [0, *sorted(set(offsets) - {0})]
    index, blocks = two_stage([distinct.index(offset) for offset in offsets])
    write_array(lines, "std::uint8_t", f"{name}_INDEX", index)
    write_array(lines, "std::uint8_t", f"{name}_BLOCKS", blocks)
    write_array(lines, "std::uint16_t", f"{name}_OFFSETS", distinct)


def write_file(name, lines):
    head = [f"// Made by scripts/generate_character_tables.py from Unicode {unicodedata.unidata_version}.",
            "// clang-format off", ""]
    target = pathlib.Path(__file__).parent.parent / "base" / "text" / name
    target.write_text("\n".join(head + lines) + "\n")


def main():
    lines = []
    class_index, class_blocks = two_stage([classes(unit) for unit in range(0x10000)])
    write_array(lines, "std::uint8_t", "CLASS_INDEX", class_index)
    write_array(lines, "std::uint8_t", "CLASS_BLOCKS", class_blocks)
    write_case(lines, "LOWER", [lower_offset(unit) for unit in range(0x10000)])
    write_file("character_tables.inc", lines)

    lines = []
    write_case(lines, "UPPER", [upper_offset(unit) for unit in range(0x10000)])
    write_file("upper_case_table.inc", lines)


main()
