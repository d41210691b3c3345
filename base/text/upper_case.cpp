#include "base/text/upper_case.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace Oxa_1_1::text
{

namespace
{

#include "base/text/upper_case_table.inc"

constexpr std::size_t BLOCK = 32;

}  // namespace

Char toUpper(Char c) noexcept
{
    const std::size_t position = UPPER_INDEX[c / BLOCK] * BLOCK + c % BLOCK;
    return static_cast<Char>(c + UPPER_OFFSETS[UPPER_BLOCKS[position]]);
}

}  // namespace Oxa_1_1::text
