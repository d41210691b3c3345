#pragma once

#include <cstddef>
#include <string_view>

#include "base/char.h"

/// Numbers as text, for no locale.
namespace Oxa_1_1::detail
{

/// Room for every 64-bit integer with its sign.
inline constexpr std::size_t INTEGER_CAPACITY = 20;
/// Room for every double in the notation of its rule, and for those within MOST_SHORT of zero.
/// @{
inline constexpr std::size_t FLOATING_CAPACITY = 320;
inline constexpr std::size_t SHORT_CAPACITY = 32;
inline constexpr double MOST_SHORT = 1e18;
/// @}

/// How many digits a floating-point number is written with.
struct FloatingRule
{
    /// Digits behind the point of a number of magnitude 1 or more.
    int decimals;
    /// Significant digits of a smaller one.
    int digitsBelowOne;
};

inline constexpr FloatingRule FLOAT_RULE{5, 4};
inline constexpr FloatingRule DOUBLE_RULE{9, 8};

/// Each writes to `out`, which has room for the capacity, and returns the number of units that count.
std::size_t writeSigned(Char* out, long long value) noexcept;
std::size_t writeUnsigned(Char* out, unsigned long long value) noexcept;

/// As printf's %.*g does with a precision of ceil(log10(|value|)) + decimals for magnitudes of 1 or more and of
/// digitsBelowOne for smaller ones, the logarithm taken exactly: correctly rounded, no trailing zeros, an exponent
/// below 0.0001. "nan", "inf", "-inf".
std::size_t writeFloating(Char* out, double value, const FloatingRule& rule) noexcept;

}  // namespace Oxa_1_1::detail
