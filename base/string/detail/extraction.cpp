#include "base/string/detail/extraction.h"

#include "base/text/character.h"
#include "base/text/scan.h"

namespace Oxa_1_1::detail
{

namespace
{

/// The index of `c` at or after `start`; the length when there is none.
std::size_t find(TextView text, Char c, std::size_t start)
{
    const std::size_t hit = text::findUnit(text.data() + start, text.size() - start, c);
    return hit == text::NOT_FOUND ? text.size() : start + hit;
}

/// The closing quote of a quoted text, not preceded by a backslash, but for two of them; the length when there is none.
std::size_t findClosingQuote(TextView text)
{
    for (std::size_t i = find(text, '"', 0); i < text.size(); i = find(text, '"', i + 1))
    {
        const bool escaped = i >= 1 && text[i - 1] == '\\';
        const bool escapeEscaped = i >= 2 && text[i - 2] == '\\';
        if (!escaped || escapeEscaped) return i;
    }
    return text.size();
}

std::size_t findGraphic(TextView text)
{
    std::size_t i = 0;
    while (i < text.size() && !text::isGraphic(text[i])) ++i;
    return i;
}

}  // namespace

Taken takeAnySigned(TextView text, std::int64_t lowest, std::int64_t highest, std::int64_t& out) noexcept
{
    const std::size_t start = findNumberStart(text);
    const auto number = scanSigned(withoutFront(text, start), lowest, highest);
    out = number.value;
    // All digits and minus signs go. A plus sign is none of them and stays, with what follows it.
    std::size_t end = start;
    while (end < text.size() && isSignedDigit(text[end])) ++end;
    return {end, number.length != 0 && end != start};
}

Taken takeAnyUnsigned(TextView text, std::uint64_t highest, std::uint64_t& out) noexcept
{
    const std::size_t start = findNumberStart(text);
    const auto number = scanUnsigned(withoutFront(text, start), highest);
    out = number.value;
    return {start + number.length, number.length != 0};
}

Taken take(TextView text, double& out)
{
    if (const Char* const behind = readPlain(text.data(), text.data() + text.size(), out))
        return {static_cast<std::size_t>(behind - text.data()), true};
    const std::size_t start = findNumberStart(text);
    const auto number = scanFloating(withoutFront(text, start));
    out = number.value;
    return {start + number.length, number.length != 0};
}

Taken take(TextView text, float& out)
{
    double value = 0;
    const Taken taken = take(text, value);
    out = static_cast<float>(value);
    return taken;
}

Taken take(TextView text, bool& out)
{
    const std::size_t start = findNumberStart(text);
    if (start == text.size() || !text::isAlpha(text[start]))
    {
        int number = 0;
        const Taken taken = take(text, number);
        out = number != 0;
        return taken;
    }

    for (const std::string_view word : {"true", "false"})
    {
        const std::size_t length = matchWord(withoutFront(text, start), word);
        out = length == 4;
        if (length != 0) return {start + length, true};
    }
    return {};
}

Taken take(TextView text, Char& out) noexcept
{
    const std::size_t place = findGraphic(text);
    const bool found = place < text.size();
    out = found ? text[place] : Char(0);
    return {place + found, found};
}

Taken take(TextView text, ForeignChar& out) noexcept
{
    Char unit = 0;
    Taken taken = take(text, unit);
    out = static_cast<ForeignChar>(unit);
    const Char next = taken.length < text.size() ? text[taken.length] : Char(0);
    const bool isPair = (unit & 0xFC00) == 0xD800 && (next & 0xFC00) == 0xDC00;
    if (sizeof(ForeignChar) > sizeof(Char) && isPair)
    {
        out = static_cast<ForeignChar>(0x10000 + ((unit & 0x3FF) << 10) + (next & 0x3FF));
        ++taken.length;
    }
    return taken;
}

TakenText takeText(TextView text) noexcept
{
    const std::size_t quote = text.starts_with(Char('"'));
    const TextView behind = text.substr(quote);
    const std::size_t end = quote != 0 ? findClosingQuote(behind) : find(behind, '\n', 0);
    // The quote or line feed that ends it goes, too.
    const std::size_t length = quote + end + (end < behind.size());
    return {{length, !text.empty()}, behind.substr(0, end)};
}

std::size_t countBlanks(TextView text) noexcept
{
    const std::size_t count = findGraphic(text);
    return count == text.size() ? 0 : count;
}

}  // namespace Oxa_1_1::detail
