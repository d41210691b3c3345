#pragma once

#include "base/platform/platform_types.h"

/// The application framework of the host process, as far as the library takes part in it: an extension library
/// registers itself, and resources of dialogs are taken from the current resource handle of the calling thread's
/// module state.
///
/// There are two back ends: a small module state of our own beside this header, and MFC's in windows/mfc/.
namespace Oxa_1_1::platform
{

/// Registers the library; false when the framework refuses.
bool attachExtension(HINSTANCE library);
void detachExtension() noexcept;

HINSTANCE currentResourceHandle() noexcept;
void setCurrentResourceHandle(HINSTANCE module) noexcept;

}  // namespace Oxa_1_1::platform
