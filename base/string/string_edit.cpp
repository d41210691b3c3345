// Parts of texts, replacement and shortening.

#include <algorithm>
#include <limits>

#include "base/string/oxa_string.h"
#include "base/text/character.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

namespace
{

constexpr TextView ELLIPSIS = OXA_TEXT("...");

/// As an int can count it.
int toCount(std::size_t count)
{
    return static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

/// The head of a shortened text: whole folders where it holds some.
TextView shortHead(TextView text, std::size_t length, TextView separators)
{
    const TextView head = text.substr(0, length);
    const std::size_t slash = head.find_last_of(separators);
    if (slash == TextView::npos || slash <= 1) return head;
    return head.substr(0, slash + 1);
}

/// The end of a shortened text: from its first folder on where it holds one.
TextView shortTail(TextView text, std::size_t length, TextView separators)
{
    const TextView tail = text.substr(text.size() - length);
    const std::size_t slash = tail.find_first_of(separators);
    return slash == TextView::npos ? tail : tail.substr(slash);
}

}  // namespace

String String::substr(int start, int end) const
{
    const std::size_t size = m_text.size();
    const std::size_t from = std::min(static_cast<std::size_t>(std::max(start, 0)), size);
    const std::size_t to = end < 0 ? size : std::min(static_cast<std::size_t>(end), size);
    if (from == 0 && to == size) return *this;
    if (from >= to) return EMPTY;
    return String(view().substr(from, to - from));
}

String String::trim(bool left, bool right) const
{
    TextView kept = m_text;
    while (left && !kept.empty() && text::isSpace(kept.front())) kept.remove_prefix(1);
    while (right && !kept.empty() && text::isSpace(kept.back())) kept.remove_suffix(1);
    return kept.size() == m_text.size() ? *this : String(kept);
}

bool String::startsWith(const String& prefix) const noexcept { return view().starts_with(prefix.view()); }

bool String::endsWith(const String& suffix, bool ignoreCase) const noexcept
{
    if (suffix.isEmpty() || suffix.m_text.size() > m_text.size()) return false;
    if (!ignoreCase) return view().ends_with(suffix.view());
    const Char* const end = m_text.c_str() + (m_text.size() - suffix.m_text.size());
    return text::compareUnitsIgnoreCase(end, suffix.m_text.c_str(), suffix.m_text.size()) == 0;
}

int String::replace(Char from, Char to) noexcept
{
    std::size_t count = 0;
    for (Char& c : m_text)
    {
        if (c == 0) break;
        if (c != from) continue;
        c = to;
        ++count;
    }
    return toCount(count);
}

int String::replaceUnits(const CharacterUnits& from, const CharacterUnits& to)
{
    if (from.count == 1 && to.count == 1) return replace(from.units[0], to.units[0]);
    return replace(String(from.view()), String(to.view()));
}

int String::replace(const Char* from, const Char* to)
{
    if (from == nullptr || *from == 0) return 0;
    const TextView pattern = from;
    const TextView replacement = to == nullptr ? TextView() : TextView(to);

    // Into a text of its own, which also lets both arguments lie in this one.
    Text result;
    std::size_t count = 0;
    TextView rest = m_text;
    while (true)
    {
        const std::size_t hit = text::findText(rest.data(), rest.size(), pattern.data(), pattern.size());
        if (hit == text::NOT_FOUND) break;
        result.append(rest.substr(0, hit)).append(replacement);
        rest.remove_prefix(hit + pattern.size());
        ++count;
    }
    if (count == 0) return 0;
    m_text = std::move(result.append(rest));
    return toCount(count);
}

void String::reverse() noexcept { std::reverse(m_text.begin(), m_text.end()); }

String String::shortened(int maxLength, int headLength, TextView separators) const
{
    const auto limit = static_cast<std::size_t>(std::max(maxLength, 0));
    if (isNil() || m_text.size() <= limit) return *this;
    const std::size_t forHead = limit - std::min(limit, ELLIPSIS.size());
    const auto wanted = static_cast<std::size_t>(std::max(headLength, 0));
    const TextView head = shortHead(m_text, wanted, separators).substr(0, forHead);

    String result(head);
    result.append(ELLIPSIS.substr(0, limit - head.size()));
    return result.append(shortTail(m_text, limit - result.m_text.size(), separators));
}

String String::shortenString(int maxLength, int headLength) const
{
    return shortened(maxLength, headLength, OXA_TEXT("/"));
}

String String::shortenPath(int maxLength, int headLength) const
{
    return shortened(maxLength, headLength < 0 ? maxLength / 3 : headLength, OXA_TEXT("/\\"));
}

}  // namespace Oxa_1_1
