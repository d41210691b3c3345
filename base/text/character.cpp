#include "base/text/character.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Oxa_1_1::text::detail
{

namespace
{

#include "base/text/character_tables.inc"

constexpr std::size_t BLOCK = 32;

std::size_t position(std::uint8_t block, Char c) { return block * BLOCK + c % BLOCK; }

}  // namespace

std::uint8_t characterClass(Char c) noexcept { return CLASS_BLOCKS[position(CLASS_INDEX[c / BLOCK], c)]; }

Char lowerBeyondAscii(Char c) noexcept
{
    return static_cast<Char>(c + LOWER_OFFSETS[LOWER_BLOCKS[position(LOWER_INDEX[c / BLOCK], c)]]);
}

}  // namespace Oxa_1_1::text::detail
