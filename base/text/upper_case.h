#pragma once

#include "base/char.h"

namespace Oxa_1_1::text
{

/// The simple upper-case mapping of a single UTF-16 unit, the same on every system. What has none of one unit stays, as
/// the sharp s does. Comparison folds by the lower case; this is for display.
Char toUpper(Char c) noexcept;

}  // namespace Oxa_1_1::text
