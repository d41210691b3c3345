// Destructive extraction: the text is its own cursor.

#include "base/string/detail/extraction.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

namespace
{

constexpr auto TAKE = [](TextView text, auto& out) { return detail::take(text, out); };

}  // namespace

void String::dropFront(std::size_t count)
{
    m_text.erase(0, count);
    // What extraction leaves is present, even of NIL.
    m_present = true;
}

template <class Scan, class T>
String& String::extractScanned(T& out, Scan scan)
{
    dropFront(scan(m_text, out).length);
    return *this;
}

String& String::operator>>(signed char& out) { return extractScanned(out, TAKE); }

String& String::operator>>(unsigned char& out) { return extractScanned(out, TAKE); }

String& String::operator>>(short& out) { return extractScanned(out, TAKE); }

String& String::operator>>(unsigned short& out) { return extractScanned(out, TAKE); }

String& String::operator>>(int& out) { return extractScanned(out, TAKE); }

String& String::operator>>(long& out) { return extractScanned(out, TAKE); }

String& String::operator>>(long long& out) { return extractScanned(out, TAKE); }

String& String::operator>>(unsigned int& out) { return extractScanned(out, TAKE); }

String& String::operator>>(unsigned long& out) { return extractScanned(out, TAKE); }

String& String::operator>>(unsigned long long& out) { return extractScanned(out, TAKE); }

String& String::operator>>(float& out) { return extractScanned(out, TAKE); }

String& String::operator>>(double& out) { return extractScanned(out, TAKE); }

String& String::operator>>(bool& out) { return extractScanned(out, TAKE); }

String& String::operator>>(Char& out) { return extractScanned(out, TAKE); }

String& String::operator>>(ForeignChar& out) { return extractScanned(out, TAKE); }

String& String::operator>>(String& out)
{
    const detail::TakenText taken = detail::takeText(m_text);
    // Copied before the text is cut, so that a text may even be extracted into itself.
    String token(taken.text);
    dropFront(taken.length);
    out = std::move(token);
    return *this;
}

void String::eatwhite()
{
    // Kept on purpose: a text of nothing but blanks stays.
    if (const std::size_t blanks = detail::countBlanks(m_text)) dropFront(blanks);
}

}  // namespace Oxa_1_1
