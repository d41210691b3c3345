#pragma once

#include <cstddef>
#include <span>

#include "base/export.h"
#include "base/platform/platform_types.h"

/// @file
/// What the system's entry points of a module call: little to read, as it is compiled into every module.

namespace Oxa_1_1
{

/// The handle of the module whose code or data lies at `address`; null when there is none.
OXA_API HINSTANCE moduleHandleOf(const void* address) noexcept;

/// The start and the end of the module that the call is compiled into. Each module defines them once. False refuses to
/// be loaded.
/// @{
OXA_HIDDEN bool attachModule(HINSTANCE handle, std::span<const std::byte> compiledScript);
OXA_HIDDEN void detachModule();
/// @}

}  // namespace Oxa_1_1
