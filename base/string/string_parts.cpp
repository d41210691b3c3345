// Case, parts and what a text holds.

#include <algorithm>

#include "base/string/oxa_string.h"
#include "base/text/character.h"
#include "base/text/scan.h"
#include "base/text/upper_case.h"

namespace Oxa_1_1
{

String String::toLower() const
{
    String result = *this;
    std::ranges::transform(m_text, result.m_text.begin(), text::toLower);
    return result;
}

String String::toUpper() const
{
    String result = *this;
    std::ranges::transform(m_text, result.m_text.begin(), text::toUpper);
    return result;
}

bool String::contains(const String& text, bool ignoreCase) const noexcept
{
    if (!ignoreCase) return view().find(text.view()) != TextView::npos;
    const auto isSame = [](Char a, Char b) { return text::toLower(a) == text::toLower(b); };
    const auto end = m_text.end();
    return text.isEmpty() || std::search(m_text.begin(), end, text.m_text.begin(), text.m_text.end(), isSame) != end;
}

bool String::startsWith(const String& prefix, bool ignoreCase) const noexcept
{
    if (!ignoreCase) return startsWith(prefix);
    const std::size_t length = prefix.m_text.size();
    if (length > m_text.size()) return false;
    return text::compareUnitsIgnoreCase(m_text.c_str(), prefix.m_text.c_str(), length) == 0;
}

std::vector<String> String::splitAt(TextView separator) const
{
    std::vector<String> parts;
    if (isNil()) return parts;
    TextView rest = m_text;
    while (!separator.empty())
    {
        const std::size_t end = rest.find(separator);
        if (end == TextView::npos) break;
        parts.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end + separator.size());
    }
    parts.emplace_back(rest);
    return parts;
}

std::size_t StringHashIgnoreCase::ofPresent(TextView text) noexcept
{
    // A running product with an odd factor, as strong as a table of names needs.
    constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;
    std::uint64_t hash = FACTOR;
    for (const Char c : text)
    {
        if (c == 0) break;
        hash = (hash ^ text::toLower(c)) * FACTOR;
        hash ^= hash >> 32;
    }
    return static_cast<std::size_t>(hash);
}

}  // namespace Oxa_1_1
