#pragma once

#include <cstddef>
#include <cstdint>

#include "base/char.h"

/// Numbers read from the front of a text, with the limits of the C run-time library of Windows.
namespace Oxa_1_1::detail
{

/// A value and how many units it was read from; 0 units when there is no number.
template <class T>
struct Scanned
{
    T value{};
    std::size_t length = 0;
};

/// Optional sign and decimal digits; beyond the limits the nearest one.
Scanned<std::int64_t> scanSigned(TextView text, std::int64_t lowest, std::int64_t highest) noexcept;

/// The same without negative results: a '-' negates modulo highest + 1, a number too large gives `highest`.
Scanned<std::uint64_t> scanUnsigned(TextView text, std::uint64_t highest) noexcept;

/// What C's strtod reads: decimal or hexadecimal with an exponent, "inf", "infinity", "nan", "nan(...)". Too large a
/// number is infinite.
Scanned<double> scanFloating(TextView text);

}  // namespace Oxa_1_1::detail
