#pragma once

#include <cstddef>
#include <memory>
#include <span>
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

/// A handle for the bytes of a Portable Executable; null when they are none.
HINSTANCE openDataFile(std::vector<std::byte> bytes);
bool isDataFile(HINSTANCE module) noexcept;
void closeDataFile(HINSTANCE module) noexcept;

}  // namespace Oxa_1_1::platform
