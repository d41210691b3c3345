#pragma once

#include <cstdint>

#include "base/filesystem/disk_facts.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1::detail
{

/// From 1601 to 1970.
inline constexpr FileTime::duration BEFORE_UNIX_TIME = std::chrono::seconds(11644473600);

constexpr FileTime timeOfTicks(platform::FileTicks ticks) noexcept
{
    return FileTime(FileTime::duration(static_cast<std::int64_t>(ticks)) - BEFORE_UNIX_TIME);
}

}  // namespace Oxa_1_1::detail
