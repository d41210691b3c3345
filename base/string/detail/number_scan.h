#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "base/char.h"
#include "base/text/character.h"

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

/// A decimal digit or '-'.
inline bool isSignedDigit(Char c) noexcept { return text::isDigit(c) || c == '-'; }

/// The ASCII characters that a number can begin with, as far as searches know: letters, digits, '-', '.' and '+'.
inline constexpr auto NUMBER_STARTS = []
{
    std::array<bool, 128> starts{};
    for (std::size_t i = 0; i < starts.size(); ++i)
    {
        const auto c = static_cast<Char>(i);
        starts[i] = text::detail::isAsciiLetter(c) || text::isDigit(c) || c == '-' || c == '.' || c == '+';
    }
    return starts;
}();

/// A letter, a digit, '-', '.' or '+'.
inline bool isNumberStart(Char c) noexcept
{
    return c < NUMBER_STARTS.size() ? NUMBER_STARTS[c] : text::isAlphaNumeric(c);
}

/// The text behind its first `count` units, which it has.
inline TextView withoutFront(TextView text, std::size_t count) noexcept
{
    text.remove_prefix(count);
    return text;
}

/// The length of the sign at the front.
inline std::size_t signLength(TextView text) noexcept
{
    return !text.empty() && (text.front() == '-' || text.front() == '+') ? 1 : 0;
}

/// Whether digits, of which there may be any number, exceed 64 bits.
bool exceeds64Bits(TextView digits) noexcept;

/// Appends four digits to those of `value`; false when one of the four units is none.
inline bool appendFourDigits(const Char* units, std::uint64_t& value) noexcept
{
    constexpr std::uint64_t EACH = 0x0001000100010001;
    std::uint64_t word = 0;
    std::memcpy(&word, units, sizeof word);
    // Digits become their values, side by side. A unit below them borrows, which sets its top bit.
    word -= '0' * EACH;
    if (((word | (word + (0x8000 - 10) * EACH)) & 0x8000 * EACH) != 0) return false;
    // The top of the product is the sum of each digit with its power of ten.
    constexpr std::uint64_t POWERS = 0x03E8'0064'000A'0001;
    value = value * 10000 + (word * POWERS >> 48);
    return true;
}

/// Appends the digits at `p` to those of `value`, which wraps around, and returns where they end.
inline const Char* appendDigits(const Char* p, const Char* end, std::uint64_t& value) noexcept
{
    // No loop: its constants would take more registers than calls leave.
    if constexpr (std::endian::native == std::endian::little)
        if (end - p >= 4 && appendFourDigits(p, value))
        {
            p += 4;
            if (end - p >= 4 && appendFourDigits(p, value)) p += 4;
        }
    for (; p != end && text::isDigit(*p); ++p) value = value * 10 + static_cast<std::uint64_t>(*p - '0');
    return p;
}

/// The magnitude of the digits at the front, at most `highest`; `tooLarge` says whether it is more.
inline Scanned<std::uint64_t> scanDigits(TextView text, std::uint64_t highest, bool& tooLarge) noexcept
{
    // So many digits fit 64 bits, whatever they are.
    constexpr std::size_t SAFE = std::numeric_limits<std::uint64_t>::digits10;
    std::uint64_t value = 0;
    const Char* const behind = appendDigits(text.data(), text.data() + text.size(), value);
    const auto length = static_cast<std::size_t>(behind - text.data());
    tooLarge = value > highest || (length > SAFE && exceeds64Bits({text.data(), length}));
    return {tooLarge ? highest : value, length};
}

/// Optional sign and decimal digits; beyond the limits the nearest one.
inline Scanned<std::int64_t> scanSigned(TextView text, std::int64_t lowest, std::int64_t highest) noexcept
{
    const std::size_t sign = signLength(text);
    const bool negative = sign != 0 && text.front() == '-';
    const auto limit = negative ? 0 - static_cast<std::uint64_t>(lowest) : static_cast<std::uint64_t>(highest);
    bool tooLarge = false;
    const auto digits = scanDigits(withoutFront(text, sign), limit, tooLarge);
    if (digits.length == 0) return {};
    const std::uint64_t value = negative ? 0 - digits.value : digits.value;
    return {static_cast<std::int64_t>(value), sign + digits.length};
}

/// The same without negative results: a '-' negates modulo highest + 1, a number too large gives `highest`.
inline Scanned<std::uint64_t> scanUnsigned(TextView text, std::uint64_t highest) noexcept
{
    const std::size_t sign = signLength(text);
    bool tooLarge = false;
    auto digits = scanDigits(withoutFront(text, sign), highest, tooLarge);
    if (digits.length == 0) return {};
    if (sign != 0 && text.front() == '-' && !tooLarge) digits.value = (0 - digits.value) & highest;
    return {digits.value, sign + digits.length};
}

/// Digits with a point among them, perhaps, as one number and its power of ten.
struct Decimal
{
    std::uint64_t digits = 0;
    std::ptrdiff_t exponent = 0;
};

/// Where the decimal at `p` ends; null without a digit, and when its digits are too many for a double to hold them all.
inline const Char* readDecimal(const Char* p, const Char* end, Decimal& out) noexcept
{
    constexpr std::uint64_t LARGEST = std::uint64_t(1) << std::numeric_limits<double>::digits;
    constexpr std::ptrdiff_t MOST_DIGITS = std::numeric_limits<std::uint64_t>::digits10;
    const Char* const first = p;
    p = appendDigits(p, end, out.digits);
    std::ptrdiff_t count = p - first;
    if (p != end && *p == '.')
    {
        const Char* const fraction = p + 1;
        p = appendDigits(fraction, end, out.digits);
        out.exponent = fraction - p;
        count += p - fraction;
    }
    return count == 0 || count > MOST_DIGITS || out.digits > LARGEST ? nullptr : p;
}

/// The powers of ten that doubles are without rounding.
inline constexpr std::array EXACT_POWERS{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                         1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// What C's strtod reads: decimal or hexadecimal with an exponent, "inf", "infinity", "nan", "nan(...)". Too large a
/// number is infinite.
Scanned<double> scanFloating(TextView text);

/// The length of `word`, which is in lower case, when the text begins with it, in any case; else 0.
std::size_t matchWord(TextView text, std::string_view word) noexcept;

}  // namespace Oxa_1_1::detail
