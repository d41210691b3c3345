// The trailing index: the run of decimal digits at the end of a text.

#include <limits>

#include "base/string/detail/number_scan.h"
#include "base/string/oxa_string.h"
#include "base/text/character.h"

namespace Oxa_1_1
{

namespace
{

/// Where the trailing digits begin; the length when there are none.
std::size_t indexStart(TextView text)
{
    std::size_t start = text.size();
    while (start > 0 && text::isDigit(text[start - 1])) --start;
    return start;
}

}  // namespace

unsigned int String::getIndex() const noexcept
{
    const TextView digits = view().substr(indexStart(m_text));
    return static_cast<unsigned int>(detail::scanSigned(digits, 0, std::numeric_limits<int>::max()).value);
}

void String::setIndex(unsigned int n)
{
    m_text.resize(indexStart(m_text));
    if (n == 0 && !m_text.empty()) return;
    *this += n;
}

// Both step the digits themselves, not a number made of them: a time stamp of fourteen digits counts on like any other.

void String::incrementIndex()
{
    const std::size_t start = indexStart(m_text);
    m_present = true;
    for (std::size_t i = m_text.size(); i-- > start;)
    {
        if (m_text[i] != '9')
        {
            ++m_text[i];
            return;
        }
        m_text[i] = '0';
    }
    m_text.insert(start, 1, Char('1'));
}

void String::decrementIndex()
{
    const std::size_t start = indexStart(m_text);
    if (start == m_text.size())
    {
        // Kept on purpose: a text without a number gets the same first one in both directions.
        *this += Char('1');
        return;
    }
    if (m_text.find_first_not_of(Char('0'), start) == Text::npos) return;

    std::size_t i = m_text.size() - 1;
    for (; m_text[i] == '0'; --i) m_text[i] = '9';
    --m_text[i];
}

}  // namespace Oxa_1_1
