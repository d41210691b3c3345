#pragma once

#include "base/char.h"

namespace Oxa_1_1::platform
{

/// The folder of what programs share, without a separator at its end; empty when there is none.
Text commonProgramFiles();

}  // namespace Oxa_1_1::platform
