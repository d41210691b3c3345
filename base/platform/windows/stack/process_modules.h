#pragma once

#include <cstdint>
#include <vector>

#include "base/platform/stack/symbols.h"

namespace Oxa_1_1::platform
{

/// The modules of a process: file, name, base and size. By the tool-help functions and, when those yield nothing, by
/// the process-status functions.
std::vector<ModuleInfo> listModules(std::uint32_t processId, HANDLE process);

/// A number that differs when other modules are loaded.
std::uint64_t digestOfModules(HANDLE process);

/// The version in the file's resources, 0 when it has none.
std::uint64_t versionOfFile(const std::string& file);

}  // namespace Oxa_1_1::platform
