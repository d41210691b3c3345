#pragma once

#include <cstddef>
#include <vector>

#include "base/char.h"

/// Version resources of module files.
namespace Oxa_1_1::platform
{

/// A copy of the version resource of a file; empty when it has none. See formats::queryVersionValue() for what is in
/// it.
std::vector<std::byte> readVersionInfo(TextView path);

}  // namespace Oxa_1_1::platform
