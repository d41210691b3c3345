#pragma once

#include <cstddef>
#include <span>

#include "base/platform/call_stack.h"

namespace Oxa_1_1::platform
{

/// Stores the frames of a thread of this process. 0 when it cannot be stopped, with the last error.
std::size_t walkStack(const WalkRequest& walk, std::span<StackFrame> frames);

}  // namespace Oxa_1_1::platform
