#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "base/char.h"

/// Version information of files for Windows, read without the system.
namespace Oxa_1_1::formats
{

/// The value at a path in a version resource, whose keys compare without case:
///
///  - `\` is the fixed part, 52 bytes;
///  - `\VarFileInfo\Translation` the languages, four bytes each;
///  - `\StringFileInfo\040904b0\CompanyName` a text, without its terminating zero.
///
/// Empty when there is none. Compilers count the length of a text in units or in bytes, with or without its zero, so a
/// text ends at its first zero or with its block. Blocks that reach beyond the one around them are cut.
std::optional<std::span<const std::byte>> queryVersionValue(std::span<const std::byte> block, TextView query);

}  // namespace Oxa_1_1::formats
