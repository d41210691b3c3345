// Escapes for one-line literals.

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include "base/string/oxa_string.h"
#include "base/text/escape.h"
#include "base/text/resize_and_fill.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

namespace
{

/// The length of \uXXXX.
constexpr std::size_t UNICODE_ESCAPE = 6;

/// What backslash and `letter` stand for; 0 when that is no escape.
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
    const std::size_t length = text::escapedLength(m_text, unicode);
    if (length == m_text.size()) return;

    Text escaped;
    text::resizeAndFill(escaped, length, [&](Char* out) { text::escape(m_text, unicode, out); });
    m_text = std::move(escaped);
}

int String::escToControls(bool unicode)
{
    std::size_t target = text::findUnit(m_text.data(), m_text.size(), '\\');
    if (target == text::NOT_FOUND) return -1;

    std::size_t count = 0;
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
    return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

}  // namespace Oxa_1_1
