#include "base/string/detail/number_scan.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include "base/text/character.h"

namespace Oxa_1_1::detail
{

namespace
{

std::size_t matchNan(TextView text)
{
    const std::size_t word = matchWord(text, "nan");
    if (word == 0 || text.size() == word || text[word] != '(') return word;
    std::size_t end = word + 1;
    while (end < text.size() && text[end] < 0x80 && (text::isAlphaNumeric(text[end]) || text[end] == '_')) ++end;
    return end < text.size() && text[end] == ')' ? end + 1 : word;
}

bool isDigitOf(Char c, bool hexadecimal)
{
    const auto lower = static_cast<Char>(c | 0x20);
    return text::isDigit(c) || (hexadecimal && lower >= 'a' && lower <= 'f');
}

/// A decimal number of a few digits, as most are: its digits and its power of ten are doubles without rounding, so that
/// one operation makes the nearest double of them. 0 units for whatever else stands there.
Scanned<double> scanExact(TextView text)
{
    constexpr std::ptrdiff_t LARGEST_POWER = EXACT_POWERS.size() - 1;
    constexpr std::ptrdiff_t MOST_EXPONENT_DIGITS = 4;

    const Char* const end = text.data() + text.size();
    Decimal decimal;
    const Char* p = readDecimal(text.data(), end, decimal);
    if (p == nullptr || (p != end && (*p | 0x20) == 'x')) return {};
    if (p != end && (*p | 0x20) == 'e')
    {
        const Char* const first = p + 1 + signLength(withoutFront(text, static_cast<std::size_t>(p + 1 - text.data())));
        std::uint64_t power = 0;
        const Char* const last = appendDigits(first, end, power);
        if (last - first > MOST_EXPONENT_DIGITS) return {};
        if (last != first)
        {
            const auto moved = static_cast<std::ptrdiff_t>(power);
            decimal.exponent += first[-1] == '-' ? -moved : moved;
            p = last;
        }
    }
    if (decimal.exponent < -LARGEST_POWER || decimal.exponent > LARGEST_POWER) return {};
    const auto value = static_cast<double>(decimal.digits);
    const auto length = static_cast<std::size_t>(p - text.data());
    if (decimal.exponent > 0) return {value * EXACT_POWERS[static_cast<std::size_t>(decimal.exponent)], length};
    return {value / EXACT_POWERS[static_cast<std::size_t>(-decimal.exponent)], length};
}

/// A number by its grammar, as std::from_chars takes it: narrow, without sign and base prefix.
struct Literal
{
    Literal(TextView text, bool hex) : hexadecimal(hex)
    {
        std::size_t digits = 0;
        std::size_t end = 0;
        bool point = false;
        for (; end < text.size(); ++end)
        {
            if (text[end] == '.' && !point)
                point = true;
            else if (isDigitOf(text[end], hex))
                ++digits;
            else
                break;
        }
        if (digits == 0) return;

        length = end + matchExponent(text.substr(end));
        if (length > m_short.size()) m_long.resize(length);
        char* const begin = length > m_short.size() ? m_long.data() : m_short.data();
        char* out = begin;
        for (std::size_t i = 0; i < length; ++i)
        {
            // from_chars takes no plus sign there.
            if (i == end + 1 && text[i] == '+') continue;
            *out++ = static_cast<char>(text[i]);
        }
        narrow = {begin, static_cast<std::size_t>(out - begin)};
    }
    Literal(const Literal&) = delete;
    Literal& operator=(const Literal&) = delete;

    /// The length of an exponent that has digits; else 0.
    std::size_t matchExponent(TextView text) const
    {
        if (text.empty() || (text[0] | 0x20) != (hexadecimal ? 'p' : 'e')) return 0;
        const std::size_t digits = 1 + signLength(text.substr(1));
        std::size_t end = digits;
        while (end < text.size() && text::isDigit(text[end])) ++end;
        return end == digits ? 0 : end;
    }

    /// Whether the value is below 1: tells what is too small from what is too large.
    bool isSmall() const
    {
        const std::size_t mark = narrow.find_first_of(hexadecimal ? "pP" : "eE");
        const std::string_view digits(narrow.data(), std::min(mark, narrow.size()));
        const std::size_t first = digits.find_first_not_of("0.");
        if (first == std::string_view::npos) return true;
        const std::size_t point = std::min(digits.find('.'), digits.size());
        const long long places =
            (static_cast<long long>(point) - static_cast<long long>(first)) * (hexadecimal ? 4 : 1);

        if (mark == std::string_view::npos) return places <= 0;
        const bool negative = narrow[mark + 1] == '-';
        long long exponent = 0;
        const char* const from = narrow.data() + mark + 1 + negative;
        const auto parsed = std::from_chars(from, narrow.data() + narrow.size(), exponent);
        if (parsed.ec == std::errc::result_out_of_range) return negative;
        return places + (negative ? -exponent : exponent) <= 0;
    }

    double value() const
    {
        double result = 0;
        const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
        const auto parsed = std::from_chars(narrow.data(), narrow.data() + narrow.size(), result, format);
        if (parsed.ec != std::errc::result_out_of_range) return result;
        return isSmall() ? 0.0 : std::numeric_limits<double>::infinity();
    }

    std::string_view narrow;
    std::size_t length = 0;
    bool hexadecimal;

   private:
    std::array<char, 48> m_short;
    std::string m_long;
};

Scanned<double> scanWord(TextView text)
{
    if (const std::size_t length = matchWord(text, "infinity"))
        return {std::numeric_limits<double>::infinity(), length};
    if (const std::size_t length = matchWord(text, "inf")) return {std::numeric_limits<double>::infinity(), length};
    if (const std::size_t length = matchNan(text)) return {std::numeric_limits<double>::quiet_NaN(), length};
    return {};
}

Scanned<double> scanMagnitude(TextView text)
{
    if (const auto exact = scanExact(text); exact.length != 0) return exact;
    if (text.empty()) return {};
    if (!text::isDigit(text.front()) && text.front() != '.') return scanWord(text);

    if (matchWord(text, "0x") != 0)
    {
        const Literal literal(text.substr(2), true);
        if (literal.length != 0) return {literal.value(), literal.length + 2};
    }
    const Literal literal(text, false);
    if (literal.length == 0) return {};
    return {literal.value(), literal.length};
}

}  // namespace

bool exceeds64Bits(TextView digits) noexcept
{
    constexpr TextView LARGEST = OXA_TEXT("18446744073709551615");
    digits.remove_prefix(std::min(digits.find_first_not_of(Char('0')), digits.size()));
    return digits.size() > LARGEST.size() || (digits.size() == LARGEST.size() && digits > LARGEST);
}

std::size_t matchWord(TextView text, std::string_view word) noexcept
{
    if (text.size() < word.size()) return 0;
    // The case fold of the library would take other letters for those of ASCII.
    for (std::size_t i = 0; i < word.size(); ++i)
        if (text[i] >= 0x80 || text::toLower(text[i]) != static_cast<Char>(word[i])) return 0;
    return word.size();
}

Scanned<double> scanFloating(TextView text)
{
    const std::size_t sign = signLength(text);
    Scanned<double> result = scanMagnitude(withoutFront(text, sign));
    if (result.length == 0) return {};
    if (sign != 0 && text.front() == '-') result.value = -result.value;
    result.length += sign;
    return result;
}

}  // namespace Oxa_1_1::detail
