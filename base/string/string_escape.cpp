// Escapes for one-line literals.

#include <algorithm>
#include <cstdint>
#include <optional>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace
{

/// The length of \uXXXX.
constexpr std::size_t UNICODE_ESCAPE = 6;

/// The character behind the backslash that stands for `c`; 0 when `c` stands for itself.
constexpr Char escapeLetter(Char c)
{
    switch (c)
    {
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '"':
            return '"';
        case '\\':
            return '\\';
        default:
            return 0;
    }
}

/// The reverse: what backslash and `letter` stand for; 0 when that is no escape.
constexpr Char escapedCharacter(Char letter)
{
    switch (letter)
    {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case '"':
            return '"';
        case '\\':
            return '\\';
        default:
            return 0;
    }
}

constexpr bool isUnicodeEscaped(Char c) { return c >= 0x80; }

std::size_t escapedLength(TextView text, bool unicode)
{
    std::size_t length = text.size();
    for (const Char c : text)
    {
        length += escapeLetter(c) != 0;
        length += unicode && isUnicodeEscaped(c) ? UNICODE_ESCAPE - 1 : 0;
    }
    return length;
}

/// Writes \uXXXX so that it ends at `end`; returns where it begins.
Char* writeUnicodeEscape(Char* end, Char c)
{
    constexpr TextView DIGITS = OXA_TEXT("0123456789ABCDEF");
    for (int shift = 0; shift < 16; shift += 4) *--end = DIGITS[(c >> shift) & 0xF];
    *--end = 'u';
    *--end = '\\';
    return end;
}

std::optional<std::uint32_t> hexadecimalDigit(Char c)
{
    if (c >= '0' && c <= '9') return c - '0';
    const auto lower = static_cast<Char>(c | 0x20);
    if (lower >= 'a' && lower <= 'f') return lower - 'a' + 10;
    return std::nullopt;
}

/// The unit of a \uXXXX at the front.
std::optional<Char> readUnicodeEscape(TextView text)
{
    if (text.size() < UNICODE_ESCAPE || text[1] != 'u') return std::nullopt;
    std::uint32_t value = 0;
    for (const Char c : text.substr(2, 4))
    {
        const auto digit = hexadecimalDigit(c);
        if (!digit) return std::nullopt;
        value = value << 4 | *digit;
    }
    return static_cast<Char>(value);
}

struct Unescaped
{
    Char character;
    std::size_t length;
};

/// The escape at the front, where a backslash stands.
std::optional<Unescaped> readEscape(TextView text, bool unicode)
{
    if (text.size() < 2) return std::nullopt;
    if (const Char character = escapedCharacter(text[1])) return Unescaped{character, 2};
    if (!unicode) return std::nullopt;
    const auto character = readUnicodeEscape(text);
    return character ? std::optional(Unescaped{*character, UNICODE_ESCAPE}) : std::nullopt;
}

}  // namespace

void String::controlsToEsc(bool unicode)
{
    const std::size_t oldLength = m_text.size();
    const std::size_t newLength = escapedLength(m_text, unicode);
    if (newLength == oldLength) return;

    // From the back, so that the text makes room for itself.
    m_text.resize(newLength);
    const Char* source = m_text.data() + oldLength;
    Char* target = m_text.data() + newLength;
    while (source != target)
    {
        const Char c = *--source;
        const Char letter = escapeLetter(c);
        if (unicode && isUnicodeEscaped(c))
        {
            target = writeUnicodeEscape(target, c);
            continue;
        }
        *--target = letter != 0 ? letter : c;
        if (letter != 0) *--target = '\\';
    }
}

int String::escToControls(bool unicode)
{
    std::size_t target = m_text.find(Char('\\'));
    if (target == Text::npos) return -1;

    int count = 0;
    std::size_t source = target;
    while (source < m_text.size())
    {
        if (m_text[source] != '\\')
        {
            m_text[target++] = m_text[source++];
            continue;
        }
        const auto escape = readEscape(view().substr(source), unicode);
        if (!escape) break;
        m_text[target++] = escape->character;
        source += escape->length;
        ++count;
    }
    m_text.erase(target, source - target);
    return count;
}

}  // namespace Oxa_1_1
