#include "base/platform/modules/host_framework.h"

#include "base/platform/modules/module_loader.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Null stands for the program, where a thread begins.
constinit thread_local HINSTANCE currentHandle = nullptr;

}  // namespace

bool attachExtension(HINSTANCE) { return true; }

void detachExtension() noexcept {}

HINSTANCE currentResourceHandle() noexcept { return currentHandle != nullptr ? currentHandle : programModule(); }

void setCurrentResourceHandle(HINSTANCE module) noexcept { currentHandle = module; }

}  // namespace Oxa_1_1::platform
