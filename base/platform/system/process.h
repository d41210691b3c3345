#pragma once

#include <vector>

#include "base/char.h"

namespace Oxa_1_1::platform
{

/// The arguments of the process, its program first. On Linux a byte that is not UTF-8 is U+DC00 + byte.
std::vector<Text> commandLineArguments();

}  // namespace Oxa_1_1::platform
