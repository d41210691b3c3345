#pragma once

#include "base/platform/system/shell.h"

namespace Oxa_1_1::platform::native
{

inline constexpr std::intptr_t SHELL_SUCCESS = 33;

/// Asks the desktop itself; the result is as that of a hook.
std::intptr_t askShell(const ShellRequest& request);

}  // namespace Oxa_1_1::platform::native
