#pragma once

/// @file
/// Texts in standard streams. Comes with oxa_string.h.

#include <concepts>
#include <iosfwd>
#include <string>

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// Writes the ANSI form with the stream's width and fill.
/// Kept on purpose: NIL and empty texts write nothing, not even padding, and leave the width set.
OXA_API std::ostream& operator<<(std::ostream& stream, const String& text);

/// Reads one token of ANSI text: up to white space, or between double quotes, where a backslash makes the next
/// character literal. The result is present; at the end of input it is empty and the stream fails.
OXA_API std::istream& operator>>(std::istream& stream, String& text);

/// The bytes of a text in UTF-8, to be written.
struct Utf8Bytes
{
    /// Without the terminating zero.
    std::string bytes;
};

/// For streams that take UTF-8: std::cout << utf8(text).
[[nodiscard]] OXA_API Utf8Bytes utf8(const String& text);

/// Writes as << of a String does, but in UTF-8.
OXA_API std::ostream& operator<<(std::ostream& stream, const Utf8Bytes& text);

/// Writes NIL, or the text in quotes with its escapes.
OXA_API void writeReadably(std::ostream& stream, const String& text);

/// The same, as GoogleTest looks for it. A template, so that a test may have one of its own.
template <std::same_as<String> S>
void PrintTo(const S& text, std::ostream* stream)
{
    writeReadably(*stream, text);
}

}  // namespace Oxa_1_1
