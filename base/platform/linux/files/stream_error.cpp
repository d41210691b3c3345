#include "base/platform/files/stream_error.h"

#include <cerrno>

#include "base/platform/linux/system/error_code.h"

namespace Oxa_1_1::platform
{

void forgetStreamError() noexcept { errno = 0; }

DWORD streamError() noexcept
{
    constexpr DWORD WRITE_FAULT = 29;
    return errno != 0 ? errorCodeOfErrno(errno) : WRITE_FAULT;
}

}  // namespace Oxa_1_1::platform
