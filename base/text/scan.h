#pragma once

#include <cstddef>

#include "base/char.h"
#include "base/text/vector/kernels.h"

/// Search and comparison of UTF-16 units, by the widest vectors that the processor has.
namespace Oxa_1_1::text
{

/// "Nowhere", as a result of a search.
inline constexpr std::size_t NOT_FOUND = static_cast<std::size_t>(-1);

/// The index of the first `c` among the first `length` units.
inline std::size_t findUnit(const Char* text, std::size_t length, Char c) noexcept
{
    return textKernels().findUnit(text, length, c);
}

/// The index of the first occurrence, before the first zero, of a pattern that is not empty and holds no zero.
inline std::size_t findText(const Char* text, std::size_t length, const Char* pattern,
                            std::size_t patternLength) noexcept
{
    return textKernels().findText(text, length, pattern, patternLength);
}

/// The difference of the first units that differ within `length`, 0 when none does. Stops at a zero in both.
inline int compareUnits(const Char* a, const Char* b, std::size_t length) noexcept
{
    return textKernels().compareUnits(a, b, length);
}

/// The same after mapping each unit to lower case.
inline int compareUnitsIgnoreCase(const Char* a, const Char* b, std::size_t length) noexcept
{
    return textKernels().compareUnitsIgnoreCase(a, b, length);
}

}  // namespace Oxa_1_1::text
