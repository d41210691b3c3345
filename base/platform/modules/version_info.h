#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/char.h"

/// Version resources of module files.
namespace Oxa_1_1::platform
{

/// A copy of the version resource of a file; empty when it has none.
std::vector<std::byte> readVersionInfo(TextView path);

/// A value of it, by a path like \VarFileInfo\Translation. Texts come without their zero. None when it is not there.
std::optional<std::span<const std::byte>> queryVersionInfo(std::span<const std::byte> info, TextView query);

}  // namespace Oxa_1_1::platform
