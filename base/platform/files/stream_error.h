#pragma once

#include "base/platform/platform_types.h"

/// Why streams of the standard library fail, which do not tell themselves.
namespace Oxa_1_1::platform
{

/// To be called before a stream is asked to write.
void forgetStreamError() noexcept;
/// What the system said since then; 29, "write fault", when it said nothing.
DWORD streamError() noexcept;

}  // namespace Oxa_1_1::platform
