#include "base/platform/system/last_error.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

DWORD lastError() noexcept { return GetLastError(); }

void setLastError(DWORD code) noexcept { SetLastError(code); }

}  // namespace Oxa_1_1::platform
