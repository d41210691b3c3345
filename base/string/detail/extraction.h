#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <type_traits>

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

/// Integers with the limits of the conversion, which may be wider than the target: those of 32 bits at least.
template <class T>
using LimitsOf = std::numeric_limits<std::conditional_t<(sizeof(T) < sizeof(std::int32_t)), std::int32_t, T>>;

/// Where the number that `p` leads to ends, if it is as most are: nothing beyond ASCII before it, perhaps a minus sign,
/// a few digits, no minus sign behind. Else null. Calls nothing, so that its callers need not keep their registers.
template <std::integral T>
inline const Char* readPlain(const Char* p, const Char* end, T& out) noexcept
{
    constexpr std::ptrdiff_t FEW = std::numeric_limits<std::int64_t>::digits10;
    while (p != end && *p < NUMBER_STARTS.size() && !NUMBER_STARTS[*p]) ++p;
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    const Char* const digits = p;
    std::uint64_t value = 0;
    p = appendDigits(p, end, value);
    const bool isPlain = p != digits && p - digits <= FEW && value <= static_cast<std::uint64_t>(LimitsOf<T>::max()) &&
                         (p == end || *p != '-');
    if (!isPlain) return nullptr;
    out = static_cast<T>(negative ? 0 - value : value);
    return p;
}

/// The same of a number with a point among its digits, perhaps, and neither exponent nor prefix.
inline const Char* readPlain(const Char* p, const Char* end, double& out) noexcept
{
    while (p != end && *p < NUMBER_STARTS.size() && !NUMBER_STARTS[*p]) ++p;
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    Decimal decimal;
    p = readDecimal(p, end, decimal);
    if (p == nullptr || (p != end && ((*p | 0x20) == 'e' || (*p | 0x20) == 'x'))) return nullptr;
    const double value = static_cast<double>(static_cast<std::int64_t>(decimal.digits)) /
                         EXACT_POWERS[static_cast<std::size_t>(-decimal.exponent)];
    out = negative ? -value : value;
    return p;
}

/// A number within limits as it may stand there.
/// @{
Taken takeAnySigned(TextView text, std::int64_t lowest, std::int64_t highest, std::int64_t& out) noexcept;
Taken takeAnyUnsigned(TextView text, std::uint64_t highest, std::uint64_t& out) noexcept;
/// @}

template <std::integral T>
inline Taken take(TextView text, T& out) noexcept
{
    if (const Char* const behind = readPlain(text.data(), text.data() + text.size(), out))
        return {static_cast<std::size_t>(behind - text.data()), true};
    using Limits = LimitsOf<T>;
    std::conditional_t<Limits::is_signed, std::int64_t, std::uint64_t> value = 0;
    Taken taken;
    if constexpr (Limits::is_signed)
        taken = takeAnySigned(text, Limits::min(), Limits::max(), value);
    else
        taken = takeAnyUnsigned(text, Limits::max(), value);
    out = static_cast<T>(value);
    return taken;
}

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
