#include "base/filesystem/detail/wildcard.h"

#include "base/text/character.h"

namespace Oxa_1_1::detail
{

namespace
{

constexpr Char STAR = '*';
constexpr Char ANY = '?';

}  // namespace

Wildcard::Wildcard(TextView pattern)
{
    m_pattern.reserve(pattern.size());
    for (const Char c : pattern) m_pattern += text::toLower(c);
    m_hasOnlyLeadingStar = m_pattern.find_last_of(STAR) == 0;
}

bool Wildcard::matchesAt(std::size_t patternIndex, Char c) const noexcept
{
    const Char expected = m_pattern[patternIndex];
    return expected == ANY || expected == text::toLower(c);
}

bool Wildcard::matchesEnd(TextView name) const noexcept
{
    std::size_t p = m_pattern.size();
    if (name.size() + 1 < p) return false;
    for (std::size_t n = name.size(); --p > 0;)
        if (!matchesAt(p, name[--n])) return false;
    return true;
}

bool Wildcard::matches(TextView name) const noexcept
{
    if (m_hasOnlyLeadingStar && !name.starts_with(STAR)) return matchesEnd(name);
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t afterStar = 0;
    std::size_t starName = 0;
    while (n < name.size())
    {
        // A star in a name, which no file has, is taken by itself before it is taken by any run.
        if (p < m_pattern.size() && matchesAt(p, name[n]))
        {
            ++p;
            ++n;
        }
        else if (p < m_pattern.size() && m_pattern[p] == STAR)
        {
            afterStar = ++p;
            starName = n;
        }
        else if (afterStar != 0)
        {
            n = ++starName;
            p = afterStar;
        }
        else
        {
            return false;
        }
    }
    while (p < m_pattern.size() && m_pattern[p] == STAR) ++p;
    return p == m_pattern.size();
}

}  // namespace Oxa_1_1::detail
