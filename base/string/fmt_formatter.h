#pragma once

/// @file
/// Texts as arguments of the {fmt} library, for programs that use it. Without it this header is empty.

#if __has_include(<fmt/format.h>)

#include <fmt/format.h>

#include "base/string/oxa_string.h"

/// In narrow formats, as UTF-8, with the options of texts. NIL is empty.
template <>
struct fmt::formatter<Oxa_1_1::String, char> : fmt::formatter<fmt::string_view, char>
{
    /// Writes the text.
    template <class Context>
    auto format(const Oxa_1_1::String& text, Context& context) const
    {
        return fmt::formatter<fmt::string_view, char>::format(text.stringUTF8(), context);
    }
};

#endif
