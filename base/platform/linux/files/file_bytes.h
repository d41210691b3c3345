#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Oxa_1_1::platform
{

/// The whole content of a regular file; none when it cannot be read or is larger than `maxSize`.
std::optional<std::vector<std::byte>> readFileBytes(const std::string& nativePath, std::size_t maxSize);

}  // namespace Oxa_1_1::platform
