#pragma once

#include <string>
#include <string_view>

#include "base/char.h"

/// Windows-1252, the ANSI code page of this system. Every byte has a unit; what has no byte becomes its nearest
/// relative or '?', just as on Windows.
namespace Oxa_1_1::text
{

Text decodeWindows1252(std::string_view bytes);
std::string encodeWindows1252(TextView text);

}  // namespace Oxa_1_1::text
