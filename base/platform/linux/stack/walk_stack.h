#pragma once

#include <sys/types.h>

#include <cstddef>
#include <span>

#include "base/formats/unwind.h"
#include "base/platform/stack/call_stack.h"

namespace Oxa_1_1::platform
{

/// Stores the frames of a thread of this process, or of the other one that the request names. 0 when it cannot be
/// stopped, with the last error.
std::size_t walkStack(const WalkRequest& walk, std::span<StackFrame> frames);

/// A word of the walked stack, by the function that the request names.
bool readStack(const WalkRequest& walk, std::uint64_t address, std::uint64_t& value);

formats::Registers registersOf(const CONTEXT& context);

/// The process that a handle stands for.
pid_t processOf(HANDLE handle);

}  // namespace Oxa_1_1::platform
