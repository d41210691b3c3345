#include "base/filesystem/disk_facts.h"

#include "base/filesystem/detail/file_times.h"
#include "base/filesystem/detail/system_item.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/new_items.h"
#include "base/platform/files/volume.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

namespace
{

using detail::BEFORE_UNIX_TIME;
using Ticks = FileTime::duration;

std::optional<FileTime> timeOf(const FileSystemItem& item, platform::FileTicks platform::FileInformation::*ticks)
{
    const String path = detail::seamPath(item);
    if (path.isNil()) return std::nullopt;
    const auto information = platform::readInformation(path);
    if (!information) return std::nullopt;
    return detail::timeOfTicks((*information).*ticks);
}

}  // namespace

std::optional<DiskSpace> freeSpace(const FileSystemItem& item)
{
    const String path = detail::seamPath(item);
    if (path.isNil()) return std::nullopt;
    const auto space = platform::readVolumeSpace(path);
    if (!space)
    {
        platform::noteFailedStep("readVolumeSpace", path);
        return std::nullopt;
    }
    return DiskSpace{.available = space->available, .free = space->free, .total = space->total};
}

std::optional<FileTime> creationTime(const FileSystemItem& item)
{
    return timeOf(item, &platform::FileInformation::created);
}

std::optional<FileTime> lastWriteTime(const FileSystemItem& item)
{
    return timeOf(item, &platform::FileInformation::written);
}

bool setLastWriteTime(const FileSystemItem& item, FileTime time)
{
    const String path = detail::seamPath(item);
    // Whoever counts from 1601 in 64 bits comes to an end before the type does, and takes 0 for no time at all.
    if (path.isNil()) return false;
    if (time.time_since_epoch() <= -BEFORE_UNIX_TIME || time > FileTime::max() - BEFORE_UNIX_TIME)
        return platform::failStep(platform::INVALID_PARAMETER, "writeLastWrite", path);
    const Ticks ticks = time.time_since_epoch() + BEFORE_UNIX_TIME;
    return platform::writeLastWrite(path, static_cast<platform::FileTicks>(ticks.count()));
}

}  // namespace Oxa_1_1
