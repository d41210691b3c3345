#pragma once

#include "base/string/oxa_string.h"

namespace Oxa_1_1::test
{

/// A literal of the text type that may hold zeros.
template <std::size_t N>
String literal(const Char (&text)[N])
{
    return String(TextView(text, N - 1));
}

}  // namespace Oxa_1_1::test
