#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Oxa_1_1::platform
{

/// The whole content of a regular file; none when it cannot be read.
std::optional<std::vector<std::byte>> readFileBytes(const std::string& nativePath);

}  // namespace Oxa_1_1::platform
