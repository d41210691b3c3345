#pragma once

#include "base/char.h"
#include "base/platform/platform_types.h"

/// Code modules, and files of resources that are loaded as data.
namespace Oxa_1_1::platform
{

/// The handle of the running program.
HINSTANCE programModule() noexcept;

/// The handle of the module whose code or data lies at `address`; null when there is none.
HINSTANCE moduleOfAddress(const void* address) noexcept;

/// The path of the module's file; empty when it cannot be had.
Text moduleFileName(HINSTANCE module);

/// The path with the full names of its folders and file; empty when it cannot be had.
Text longPathName(TextView path);

/// Loads a file for its resources only; null when there is no such file or it holds none.
HINSTANCE loadDataFile(TextView path);

/// Lets go of a module that loadDataFile gave.
void freeModule(HINSTANCE module) noexcept;

}  // namespace Oxa_1_1::platform
