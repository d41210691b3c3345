#pragma once

/// @file
/// Texts as arguments of std::format, where the standard library has it; else this header is empty.

#include <version>

#ifdef __cpp_lib_format

#include <format>

#include "base/string/oxa_string.h"

/// In narrow formats, as UTF-8, with the options of texts. NIL is empty.
template <>
struct std::formatter<Oxa_1_1::String, char> : std::formatter<std::string_view, char>
{
    /// Writes the text.
    template <class Context>
    auto format(const Oxa_1_1::String& text, Context& context) const
    {
        return std::formatter<std::string_view, char>::format(text.stringUTF8(), context);
    }
};

/// In wide formats, where those are of the text's own type.
template <class C>
requires(std::same_as<C, wchar_t>&& std::same_as<C, Oxa_1_1::Char>) struct std::formatter<Oxa_1_1::String, C>
    : std::formatter<std::basic_string_view<C>, C>
{
    /// Writes the text.
    template <class Context>
    auto format(const Oxa_1_1::String& text, Context& context) const
    {
        return std::formatter<std::basic_string_view<C>, C>::format(text.view(), context);
    }
};

#endif
