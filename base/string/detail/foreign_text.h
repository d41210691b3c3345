#pragma once

#include <string_view>

#include "base/char.h"

namespace Oxa_1_1::detail
{

/// UTF-16 of the other wide character type; unpaired surrogates of UTF-32 and values beyond Unicode become U+FFFD.
Text fromForeign(std::basic_string_view<ForeignChar> text);

}  // namespace Oxa_1_1::detail
