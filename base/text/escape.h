#pragma once

#include <cstddef>

#include "base/char.h"

/// The escapes of one-line literals: a backslash before double quote and backslash, \n for a line feed, \r for a
/// carriage return and, when `unicode`, \uXXXX for every unit beyond ASCII.
namespace Oxa_1_1::text
{

/// How long `text` is when it is escaped.
std::size_t escapedLength(TextView text, bool unicode) noexcept;

/// Writes exactly that many units.
void escape(TextView text, bool unicode, Char* out) noexcept;

}  // namespace Oxa_1_1::text
