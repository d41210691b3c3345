#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "base/formats/resource_index.h"
#include "base/platform/platform_types.h"

/// Which resources belong to which module handle. Modules carry their compiled resource script within them and make
/// it known when they are loaded; files that are loaded as data get a handle of their own kind.
namespace Oxa_1_1::platform
{

/// The resources of a module; null when it has none. Takes no lock.
const formats::ResourceIndex* resourcesOf(HINSTANCE module) noexcept;

/// Forgets the former resources of the module, if any. Null makes it a module without resources.
void setResources(HINSTANCE module, std::unique_ptr<const formats::ResourceIndex> resources);

/// The modules that have resources.
std::vector<HINSTANCE> modulesWithResources();

/// A handle for a file that is a Portable Executable; null when it is none, or larger than MAX_DATA_FILE.
HINSTANCE openDataFile(const std::string& nativePath);
bool isDataFile(HINSTANCE module) noexcept;
void closeDataFile(HINSTANCE module) noexcept;

}  // namespace Oxa_1_1::platform
