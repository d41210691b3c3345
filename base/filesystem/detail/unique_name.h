#pragma once

#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// A name that nobody else has, as far as chance goes: `prefix`, sixteen digits that cannot be guessed, ".tmp". Whoever
/// makes the item finds out, and asks again.
String uniqueName(const String& prefix);

}  // namespace Oxa_1_1::detail
