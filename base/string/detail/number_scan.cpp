#include "base/string/detail/number_scan.h"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

#include "base/text/character.h"

namespace Oxa_1_1::detail
{

namespace
{

bool isSign(TextView text) { return !text.empty() && (text.front() == '-' || text.front() == '+'); }

/// The magnitude of the digits at the front, at most `highest`.
Scanned<std::uint64_t> scanDigits(TextView text, std::uint64_t highest, bool& tooLarge)
{
    const std::uint64_t limit = highest / 10;
    const std::uint64_t lastDigit = highest % 10;
    Scanned<std::uint64_t> result;
    tooLarge = false;
    for (const Char c : text)
    {
        if (!text::isDigit(c)) break;
        const auto digit = static_cast<std::uint64_t>(c - '0');
        tooLarge = tooLarge || result.value > limit || (result.value == limit && digit > lastDigit);
        result.value = tooLarge ? highest : result.value * 10 + digit;
        ++result.length;
    }
    return result;
}

/// The length of `word` in lower case when the text begins with it, in any case; else 0.
std::size_t matchWord(TextView text, std::string_view word)
{
    if (text.size() < word.size()) return 0;
    // The case fold of the library would take other letters for those of ASCII.
    for (std::size_t i = 0; i < word.size(); ++i)
        if (text[i] >= 0x80 || text::toLower(text[i]) != static_cast<Char>(word[i])) return 0;
    return word.size();
}

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
        narrow.reserve(length);
        for (const Char c : text.substr(0, length)) narrow += static_cast<char>(c);
        if (length == end) return;
        // from_chars takes no plus sign there.
        if (narrow[end + 1] == '+') narrow.erase(end + 1, 1);
    }

    /// The length of an exponent that has digits; else 0.
    std::size_t matchExponent(TextView text) const
    {
        if (text.empty() || (text[0] | 0x20) != (hexadecimal ? 'p' : 'e')) return 0;
        const std::size_t digits = isSign(text.substr(1)) ? 2 : 1;
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

        if (mark == std::string::npos) return places <= 0;
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

    std::string narrow;
    std::size_t length = 0;
    bool hexadecimal;
};

Scanned<double> scanMagnitude(TextView text)
{
    if (const std::size_t length = matchWord(text, "infinity"))
        return {std::numeric_limits<double>::infinity(), length};
    if (const std::size_t length = matchWord(text, "inf")) return {std::numeric_limits<double>::infinity(), length};
    if (const std::size_t length = matchNan(text)) return {std::numeric_limits<double>::quiet_NaN(), length};

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

Scanned<std::int64_t> scanSigned(TextView text, std::int64_t lowest, std::int64_t highest) noexcept
{
    const std::size_t sign = isSign(text);
    const bool negative = sign != 0 && text.front() == '-';
    const auto limit = negative ? 0 - static_cast<std::uint64_t>(lowest) : static_cast<std::uint64_t>(highest);
    bool tooLarge = false;
    const auto digits = scanDigits(text.substr(sign), limit, tooLarge);
    if (digits.length == 0) return {};
    const std::uint64_t value = negative ? 0 - digits.value : digits.value;
    return {static_cast<std::int64_t>(value), sign + digits.length};
}

Scanned<std::uint64_t> scanUnsigned(TextView text, std::uint64_t highest) noexcept
{
    const std::size_t sign = isSign(text);
    bool tooLarge = false;
    auto digits = scanDigits(text.substr(sign), highest, tooLarge);
    if (digits.length == 0) return {};
    if (sign != 0 && text.front() == '-' && !tooLarge) digits.value = (0 - digits.value) & highest;
    return {digits.value, sign + digits.length};
}

Scanned<double> scanFloating(TextView text)
{
    const std::size_t sign = isSign(text);
    Scanned<double> result = scanMagnitude(text.substr(sign));
    if (result.length == 0) return {};
    if (sign != 0 && text.front() == '-') result.value = -result.value;
    result.length += sign;
    return result;
}

}  // namespace Oxa_1_1::detail
