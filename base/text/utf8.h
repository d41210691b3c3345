#pragma once

#include <string>
#include <string_view>

#include "base/char.h"

/// UTF-8 to UTF-16 and back, the same on every system. Each conversion measures, allocates once, then converts.
namespace Oxa_1_1::text
{

/// Every maximal ill-formed sequence becomes one U+FFFD.
Text decodeUtf8(std::string_view bytes);

/// Every unpaired surrogate becomes U+FFFD.
std::string encodeUtf8(TextView text);

}  // namespace Oxa_1_1::text
