#pragma once

#include <string>

namespace Oxa_1_1::platform
{

/// The value of an environment variable; empty when it is not set.
std::string environmentVariable(const char* name);

/// The folder of the user's settings, after the XDG convention.
std::string configurationFolder();

}  // namespace Oxa_1_1::platform
