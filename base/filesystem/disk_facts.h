#pragma once

/// @file
/// Room on disks, and times in the standard's own types. For the library's own file system.

#include <chrono>
#include <cstdint>
#include <optional>
#include <ratio>

#include "base/filesystem/file_system_item.h"

namespace Oxa_1_1
{

/// In bytes.
struct DiskSpace
{
    /// What this user may still write.
    std::uint64_t available = 0;
    /// What is free at all.
    std::uint64_t free = 0;
    /// How large the disk is.
    std::uint64_t total = 0;
};

/// Of the disk that an existing file or folder lies on; empty when it is missing.
OXA_API std::optional<DiskSpace> freeSpace(const FileSystemItem& item);

/// UTC, in steps of 100 ns, from 1601 on.
using FileTime = std::chrono::sys_time<std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>>;

/// Of what a link leads to; empty for what is missing.
/// @{
OXA_API std::optional<FileTime> creationTime(const FileSystemItem& item);
OXA_API std::optional<FileTime> lastWriteTime(const FileSystemItem& item);
/// @}

/// False when it is missing, the system refuses, or the time does not lie behind the beginning of 1601.
OXA_API bool setLastWriteTime(const FileSystemItem& item, FileTime time);

}  // namespace Oxa_1_1
