#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/char.h"

/// Conversion between UTF-16 and the system's code pages. UTF-8 is the same everywhere and has a header of its own.
namespace Oxa_1_1::platform
{

/// The text of `bytes`, which may hold zeros; what does not map becomes the code page's replacement character.
/// Code page 0 is the system's ANSI code page. Empty when the system does not know the code page.
Text decodeCodePage(std::uint32_t codePage, std::string_view bytes);

/// The bytes of `text`, '?' for what the code page lacks. Empty when the system does not know the code page.
std::string encodeCodePage(std::uint32_t codePage, TextView text);

}  // namespace Oxa_1_1::platform
