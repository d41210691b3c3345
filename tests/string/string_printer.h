#pragma once

#include <ostream>

#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// Lets failures tell NIL, "" and text apart.
inline void PrintTo(const String& text, std::ostream* stream)
{
    if (text.isNil())
    {
        *stream << "NIL";
        return;
    }
    String escaped = text;
    escaped.controlsToEsc(true);
    *stream << '"' << escaped.stringUTF8() << '"';
}

}  // namespace Oxa_1_1

namespace Oxa_1_1::test
{

/// A literal of the text type that may hold zeros.
template <std::size_t N>
String literal(const Char (&text)[N])
{
    return String(TextView(text, N - 1));
}

}  // namespace Oxa_1_1::test
