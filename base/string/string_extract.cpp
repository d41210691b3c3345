// Destructive extraction: the text is its own cursor.

#include <climits>
#include <cstdint>
#include <limits>

#include "base/string/detail/number_scan.h"
#include "base/string/oxa_string.h"
#include "base/text/character.h"

namespace Oxa_1_1
{

namespace
{

using Int32 = std::numeric_limits<std::int32_t>;
using Int64 = std::numeric_limits<std::int64_t>;
using Long = std::numeric_limits<long>;

/// The closing quote of a quoted token: not preceded by a backslash, but for two of them.
std::size_t closingQuote(TextView text)
{
    for (std::size_t i = text.find(Char('"')); i != TextView::npos; i = text.find(Char('"'), i + 1))
    {
        const bool escaped = i >= 1 && text[i - 1] == '\\';
        const bool escapeEscaped = i >= 2 && text[i - 2] == '\\';
        if (!escaped || escapeEscaped) return i;
    }
    return TextView::npos;
}

}  // namespace

void String::becomeEmpty() noexcept
{
    m_text.clear();
    m_present = true;
}

void String::dropFront(std::size_t count) { m_text.erase(0, count); }

/// `Limits` are those of the conversion, which may be narrower than the target or wider.
template <class Limits, class T>
String& String::extractSigned(T& out)
{
    const int start = findAlphaNum(0);
    if (start < 0)
    {
        out = 0;
        becomeEmpty();
        return *this;
    }
    const TextView number = view().substr(static_cast<std::size_t>(start));
    out = static_cast<T>(detail::scanSigned(number, Limits::min(), Limits::max()).value);
    const int end = findNonSignedDigit(start);
    if (end < 0)
        becomeEmpty();
    else
        dropFront(static_cast<std::size_t>(end));
    return *this;
}

template <class Scan, class T>
String& String::extractScanned(T& out, Scan scan)
{
    const int start = findAlphaNum(0);
    if (start < 0)
    {
        out = 0;
        becomeEmpty();
        return *this;
    }
    const auto scanned = scan(view().substr(static_cast<std::size_t>(start)));
    out = static_cast<T>(scanned.value);
    dropFront(static_cast<std::size_t>(start) + scanned.length);
    return *this;
}

String& String::operator>>(signed char& out) { return extractSigned<Int32>(out); }

String& String::operator>>(unsigned char& out) { return extractSigned<Int32>(out); }

String& String::operator>>(short& out) { return extractSigned<Int32>(out); }

String& String::operator>>(unsigned short& out) { return extractSigned<Int32>(out); }

String& String::operator>>(int& out) { return extractSigned<Int32>(out); }

String& String::operator>>(long& out) { return extractSigned<Long>(out); }

String& String::operator>>(long long& out) { return extractSigned<Int64>(out); }

String& String::operator>>(unsigned int& out)
{
    return extractScanned(out, [](TextView text) { return detail::scanUnsigned(text, UINT32_MAX); });
}

String& String::operator>>(unsigned long& out)
{
    return extractScanned(out, [](TextView text) { return detail::scanUnsigned(text, ULONG_MAX); });
}

String& String::operator>>(unsigned long long& out)
{
    return extractScanned(out, [](TextView text) { return detail::scanUnsigned(text, UINT64_MAX); });
}

String& String::operator>>(float& out) { return extractScanned(out, detail::scanFloating); }

String& String::operator>>(double& out) { return extractScanned(out, detail::scanFloating); }

String& String::operator>>(bool& out)
{
    const int start = findAlphaNum(0);
    if (start < 0 || !text::isAlpha(m_text[static_cast<std::size_t>(start)]))
    {
        int number = 0;
        *this >> number;
        out = number != 0;
        return *this;
    }

    const auto begin = static_cast<std::size_t>(start);
    for (const TextView word : {TextView(OXA_TEXT("true")), TextView(OXA_TEXT("false"))})
    {
        if (String(view().substr(begin, word.size())).compareIgnoreCase(word) != 0) continue;
        out = word.size() == 4;
        dropFront(begin + word.size());
        return *this;
    }
    out = false;
    return *this;
}

String& String::operator>>(Char& out)
{
    const int start = findNonWS(0);
    if (start < 0)
    {
        out = 0;
        becomeEmpty();
        return *this;
    }
    out = m_text[static_cast<std::size_t>(start)];
    dropFront(static_cast<std::size_t>(start) + 1);
    return *this;
}

String& String::operator>>(ForeignChar& out)
{
    Char unit = 0;
    *this >> unit;
    out = static_cast<ForeignChar>(unit);
    const bool isPair = (unit & 0xFC00) == 0xD800 && !m_text.empty() && (m_text.front() & 0xFC00) == 0xDC00;
    if (sizeof(ForeignChar) > sizeof(Char) && isPair)
    {
        out = static_cast<ForeignChar>(0x10000 + ((unit & 0x3FF) << 10) + (m_text.front() & 0x3FF));
        dropFront(1);
    }
    return *this;
}

String& String::operator>>(String& out)
{
    const bool quoted = !m_text.empty() && m_text.front() == '"';
    const TextView rest = view().substr(quoted ? 1 : 0);
    const std::size_t end = quoted ? closingQuote(rest) : rest.find(Char('\n'));
    // Taken before the text is cut, so that a text may even be extracted into itself.
    String token(rest.substr(0, end));
    if (end == TextView::npos)
        becomeEmpty();
    else
        dropFront((quoted ? 1 : 0) + end + 1);
    out = std::move(token);
    return *this;
}

void String::eatwhite()
{
    // Kept on purpose: a text of nothing but blanks stays.
    const int start = findNonWS(0);
    if (start > 0) dropFront(static_cast<std::size_t>(start));
}

}  // namespace Oxa_1_1
