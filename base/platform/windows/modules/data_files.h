#pragma once

#include <optional>
#include <span>

#include "base/char.h"
#include "base/formats/resource_index.h"
#include "base/platform/platform_types.h"

/// Files that are loaded for their resources alone. The system maps them and gives them a handle; it trusts every
/// length in them, so what is taken from them is read by the library itself.
namespace Oxa_1_1::platform
{

/// The handle; null when the system refuses the file, its directory of resources is broken, or it is too large.
HINSTANCE openDataFile(TextView path);
void closeDataFile(HINSTANCE file) noexcept;

/// The resources of a handle of openDataFile; null for any other.
const formats::ResourceIndex* resourcesOfDataFile(HINSTANCE file) noexcept;

}  // namespace Oxa_1_1::platform
