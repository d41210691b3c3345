#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

thread_local constinit DWORD lastErrorOfThread = 0;

}  // namespace

DWORD lastError() noexcept { return lastErrorOfThread; }

void setLastError(DWORD code) noexcept { lastErrorOfThread = code; }

}  // namespace Oxa_1_1::platform
