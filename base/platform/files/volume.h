#pragma once

#include <cstdint>
#include <optional>

#include "base/char.h"

/// What the system knows of the disk below a path.
namespace Oxa_1_1::platform
{

/// In bytes.
struct VolumeSpace
{
    /// For the calling user, whose share may be limited.
    std::uint64_t available = 0;
    std::uint64_t free = 0;
    std::uint64_t total = 0;
};
/// Of the disk that an existing file or folder lies on; none when it is missing.
std::optional<VolumeSpace> readVolumeSpace(TextView path);

}  // namespace Oxa_1_1::platform
