// Appending: numbers, characters and texts.

#include <cmath>

#include "base/string/detail/number_text.h"
#include "base/string/oxa_string.h"
#include "base/text/resize_and_fill.h"
#include "base/text/scan.h"

namespace Oxa_1_1
{

namespace
{

void appendFloating(Text& text, double value, const detail::FloatingRule& rule)
{
    const auto write = [value, &rule](Char* out) { return detail::writeFloating(out, value, rule); };
    if (std::fabs(value) <= detail::MOST_SHORT)
        text::appendWritten<detail::SHORT_CAPACITY>(text, write);
    else
        text::appendWritten<detail::FLOATING_CAPACITY>(text, write);
}

}  // namespace

String& String::append(TextView text)
{
    m_text.append(text);
    m_present = true;
    return *this;
}

/// The text up to its first zero.
String& String::appendText(TextView text)
{
    // Calls that look for the zero and copy would take longer than the few units.
    constexpr std::size_t FEW = 16;
    if (text.size() <= FEW)
    {
        text::appendWritten<FEW>(m_text,
                                 [text](Char* out)
                                 {
                                     std::size_t i = 0;
                                     for (; i < text.size() && text[i] != 0; ++i) out[i] = text[i];
                                     return i;
                                 });
        m_present = true;
        return *this;
    }
    return append(text.substr(0, text::findUnit(text.data(), text.size(), 0)));
}

String& String::appendSigned(long long value)
{
    text::appendWritten<detail::INTEGER_CAPACITY>(m_text,
                                                  [value](Char* out) { return detail::writeSigned(out, value); });
    m_present = true;
    return *this;
}

String& String::appendUnsigned(unsigned long long value)
{
    text::appendWritten<detail::INTEGER_CAPACITY>(m_text,
                                                  [value](Char* out) { return detail::writeUnsigned(out, value); });
    m_present = true;
    return *this;
}

String& String::operator+=(float value)
{
    appendFloating(m_text, value, detail::FLOAT_RULE);
    m_present = true;
    return *this;
}

String& String::operator+=(double value)
{
    appendFloating(m_text, value, detail::DOUBLE_RULE);
    m_present = true;
    return *this;
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
