#include "base/platform/files/stream_error.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

void forgetStreamError() noexcept { SetLastError(ERROR_SUCCESS); }

/// The run-time library calls the system last.
DWORD streamError() noexcept
{
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_WRITE_FAULT;
}

}  // namespace Oxa_1_1::platform
