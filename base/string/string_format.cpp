// Texts made of a pattern with positions.

#include <algorithm>
#include <optional>

#include "base/string/oxa_string.h"
#include "base/text/character.h"

namespace Oxa_1_1
{

namespace
{

/// More digits than any list of arguments needs.
constexpr std::size_t MOST_DIGITS = 4;

/// The position that the text between braces names, which is `next` for none; nothing for another text.
std::optional<std::size_t> readPosition(TextView text, std::size_t& next)
{
    if (text.empty()) return next++;
    std::size_t position = 0;
    for (const Char c : text)
    {
        if (!text::isDigit(c)) return std::nullopt;
        position = position * 10 + static_cast<std::size_t>(c - '0');
    }
    return position;
}

}  // namespace

String String::formatted(const String& pattern, const String* arguments, std::size_t count)
{
    if (pattern.isNil()) return NIL;
    String result(Present{});
    std::size_t next = 0;
    TextView rest = pattern.m_text;
    while (!rest.empty())
    {
        const std::size_t brace = std::min(rest.find_first_of(OXA_TEXT("{}")), rest.size());
        result.append(rest.substr(0, brace));
        rest.remove_prefix(brace);
        if (rest.empty()) break;

        const bool isDouble = rest.size() > 1 && rest[0] == rest[1];
        // No further than a position reaches, so that braces without their ends cost nothing.
        const TextView field = rest.substr(0, MOST_DIGITS + 2);
        const std::size_t end = rest[0] == '{' && !isDouble ? field.find(Char('}')) : TextView::npos;
        const auto position = end == TextView::npos ? std::nullopt : readPosition(rest.substr(1, end - 1), next);
        if (position && *position < count)
        {
            result.append(arguments[*position].view());
            rest.remove_prefix(end + 1);
            continue;
        }
        result.append(rest.substr(0, 1));
        rest.remove_prefix(isDouble ? 2 : 1);
    }
    return result;
}

}  // namespace Oxa_1_1
