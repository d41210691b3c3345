// Appending: numbers, characters and texts.

#include "base/string/detail/number_text.h"
#include "base/string/oxa_string.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

String& String::append(TextView text)
{
    m_text.append(text);
    m_present = true;
    return *this;
}

/// The text up to its first zero.
String& String::appendText(TextView text)
{
    return append(text.substr(0, text::findUnit(text.data(), text.size(), 0)));
}

String& String::appendSigned(long long value)
{
    Char buffer[detail::INTEGER_CAPACITY];
    return append({buffer, detail::writeSigned(buffer, value)});
}

String& String::appendUnsigned(unsigned long long value)
{
    Char buffer[detail::INTEGER_CAPACITY];
    return append({buffer, detail::writeUnsigned(buffer, value)});
}

String& String::operator+=(float value)
{
    Char buffer[detail::FLOATING_CAPACITY];
    return append({buffer, detail::writeFloating(buffer, value, detail::FLOAT_RULE)});
}

String& String::operator+=(double value)
{
    Char buffer[detail::FLOATING_CAPACITY];
    return append({buffer, detail::writeFloating(buffer, value, detail::DOUBLE_RULE)});
}

String& String::operator+=(Char c)
{
    m_present = true;
    if (c != 0) m_text.push_back(c);
    return *this;
}

String& String::operator+=(const Char* text) { return text == nullptr ? *this : append(text); }

String& String::operator+=(const String& other) { return m_present ? appendText(other.m_text) : *this = other; }

}  // namespace Oxa_1_1
