#pragma once

#include <cstdint>

#include "base/filesystem/disk_facts.h"
#include "base/platform/files/detail/file_time.h"

namespace Oxa_1_1::detail
{

/// From 1601 to 1970.
inline constexpr FileTime::duration BEFORE_UNIX_TIME = std::chrono::seconds(platform::SECONDS_FROM_1601_TO_1970);

constexpr FileTime timeOfTicks(platform::FileTicks ticks) noexcept
{
    return FileTime(FileTime::duration(static_cast<std::int64_t>(ticks)) - BEFORE_UNIX_TIME);
}

}  // namespace Oxa_1_1::detail
