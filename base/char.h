#pragma once

/// @file
/// The character type of the library's text, chosen once for each system.

#include <string>
#include <string_view>

/// Everything that the library offers, in the version of its interface.
namespace Oxa_1_1
{

#ifdef _WIN32
/// One UTF-16 code unit: the system's own wide character.
using Char = wchar_t;
/// The other wide character type that callers write literals in.
using ForeignChar = char16_t;
#define OXA_TEXT_JOIN(literal) L##literal
#else
/// One UTF-16 code unit. The system's wide character has 32 bits, so it cannot serve.
using Char = char16_t;
/// The other wide character type that callers write literals in: UTF-32.
using ForeignChar = wchar_t;
/// Serves OXA_TEXT.
#define OXA_TEXT_JOIN(literal) u##literal
#endif

/// A text or character literal of `Char`: OXA_TEXT("name"), OXA_TEXT('x').
#define OXA_TEXT(literal) OXA_TEXT_JOIN(literal)

/// The standard text of `Char`.
using Text = std::basic_string<Char>;
/// The standard view of `Char`.
using TextView = std::basic_string_view<Char>;

static_assert(sizeof(Char) == 2);

}  // namespace Oxa_1_1
