#pragma once

#include "base/platform/platform_types.h"

/// The calling thread's last error, numbered as on Windows everywhere.
namespace Oxa_1_1::platform
{

/// What the last failed operation of the seam left; 0 for none. Successful operations may leave it as it is.
DWORD lastError() noexcept;
void setLastError(DWORD code) noexcept;

}  // namespace Oxa_1_1::platform
