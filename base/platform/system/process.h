#pragma once

#include <vector>

#include "base/char.h"

namespace Oxa_1_1::platform
{

/// The arguments of the process, its program first.
std::vector<Text> commandLineArguments();

}  // namespace Oxa_1_1::platform
