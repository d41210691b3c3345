#pragma once

#include <cstdint>
#include <limits>

#include "base/char.h"
#include "base/string/detail/number_scan.h"

/// What `>>` takes off the front of a text: the one rule for the String that loses it and for the reader that walks on.
namespace Oxa_1_1::detail
{

/// How many units a value took, blanks before it included, and whether it was there: found and passed.
struct Taken
{
    std::size_t length = 0;
    bool found = false;
};

/// A text without its quotes or line feed.
struct TakenText : Taken
{
    TextView text;
};

/// Where a number can begin; the length of the text when nowhere.
inline std::size_t findNumberStart(TextView text) noexcept
{
    const Char* p = text.data();
    const Char* const end = p + text.size();
    while (p != end && !isNumberStart(*p)) ++p;
    return static_cast<std::size_t>(p - text.data());
}

/// A number between `lowest` and `highest` as it may stand there.
Taken takeAnySigned(TextView text, std::int64_t lowest, std::int64_t highest, std::int64_t& out) noexcept;

/// `Limits` are those of the conversion, which may be narrower than the target or wider.
template <class Limits, class T>
Taken takeSigned(TextView text, T& out) noexcept
{
    // As most numbers are: a few digits, perhaps a minus sign before them, and none behind.
    constexpr std::ptrdiff_t FEW = std::numeric_limits<std::int64_t>::digits10;
    const Char* p = text.data() + findNumberStart(text);
    const Char* const end = text.data() + text.size();
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    const Char* const digits = p;
    // Too many of them wrap around, and go the other way.
    std::uint64_t magnitude = 0;
    for (; p != end && text::isDigit(*p); ++p) magnitude = magnitude * 10 + static_cast<std::uint64_t>(*p - '0');
    auto value = static_cast<std::int64_t>(magnitude);
    if (p != digits && p - digits <= FEW && value <= Limits::max() && (p == end || *p != '-'))
    {
        out = static_cast<T>(negative ? -value : value);
        return {static_cast<std::size_t>(p - text.data()), true};
    }
    const Taken taken = takeAnySigned(text, Limits::min(), Limits::max(), value);
    out = static_cast<T>(value);
    return taken;
}

/// The same without negative numbers.
template <class Limits, class T>
Taken takeUnsigned(TextView text, T& out) noexcept
{
    const std::size_t start = findNumberStart(text);
    const auto number = scanUnsigned(withoutFront(text, start), Limits::max());
    out = static_cast<T>(number.value);
    return {start + number.length, number.length != 0};
}

using Limits32 = std::numeric_limits<std::int32_t>;
using Limits64 = std::numeric_limits<std::int64_t>;
using LimitsLong = std::numeric_limits<long>;
using LimitsU32 = std::numeric_limits<std::uint32_t>;
using LimitsULong = std::numeric_limits<unsigned long>;
using LimitsU64 = std::numeric_limits<std::uint64_t>;

inline Taken take(TextView text, signed char& out) noexcept { return takeSigned<Limits32>(text, out); }
inline Taken take(TextView text, unsigned char& out) noexcept { return takeSigned<Limits32>(text, out); }
inline Taken take(TextView text, short& out) noexcept { return takeSigned<Limits32>(text, out); }
inline Taken take(TextView text, unsigned short& out) noexcept { return takeSigned<Limits32>(text, out); }
inline Taken take(TextView text, int& out) noexcept { return takeSigned<Limits32>(text, out); }
inline Taken take(TextView text, long& out) noexcept { return takeSigned<LimitsLong>(text, out); }
inline Taken take(TextView text, long long& out) noexcept { return takeSigned<Limits64>(text, out); }
inline Taken take(TextView text, unsigned int& out) noexcept { return takeUnsigned<LimitsU32>(text, out); }
inline Taken take(TextView text, unsigned long& out) noexcept { return takeUnsigned<LimitsULong>(text, out); }
inline Taken take(TextView text, unsigned long long& out) noexcept { return takeUnsigned<LimitsU64>(text, out); }

Taken take(TextView text, float& out);
Taken take(TextView text, double& out);
Taken take(TextView text, bool& out);
Taken take(TextView text, Char& out) noexcept;
Taken take(TextView text, ForeignChar& out) noexcept;
/// A quoted text, or the rest of the line.
TakenText takeText(TextView text) noexcept;

/// The characters at the front that are not graphic; 0 when there are no others.
std::size_t countBlanks(TextView text) noexcept;

}  // namespace Oxa_1_1::detail
