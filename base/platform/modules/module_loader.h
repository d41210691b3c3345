#pragma once

#include <cstddef>

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

/// No file of resources is larger; one that is is not taken.
inline constexpr std::size_t MAX_DATA_FILE = std::size_t{64} << 20;

/// Loads a file for its resources only; null when there is no such file, it is none, or it is larger than
/// MAX_DATA_FILE. What is damaged in it is as if it were not there.
HINSTANCE loadDataFile(TextView path);

/// Loads a module with its code; null when that fails, with the system's reason in `error`.
HINSTANCE loadModule(TextView path, Text& error);
/// What the module exports under the name; null when it exports no such thing.
void* findSymbol(HINSTANCE module, const char* name) noexcept;
/// Keeps the module until the process ends, however often it is freed.
void keepModule(HINSTANCE module) noexcept;

/// Lets go of a module that loadDataFile or loadModule gave.
void freeModule(HINSTANCE module) noexcept;

}  // namespace Oxa_1_1::platform
