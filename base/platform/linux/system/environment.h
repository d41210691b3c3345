#pragma once

#include <string>

#include "base/platform/system/system_info.h"

namespace Oxa_1_1::platform
{

/// The folder of the user's settings, after the XDG convention; empty when the user has no home.
std::string configurationFolder();

}  // namespace Oxa_1_1::platform
