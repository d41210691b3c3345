#pragma once

#include <memory>
#include <optional>

#include "base/filesystem/file_system_item.h"
#include "extras/memory_file_system/memory_volume.h"

namespace Oxa_1_1
{

class File;

/// A place in a volume: "mem:/a/b", or "mem:a/b" for a relative one, which counts from the root.
struct MemoryPlace
{
    std::shared_ptr<MemoryVolume> volume;
    bool isAbsolute = false;
    MemoryPath path;

    /// None for a text that is no such path. Backslashes count as slashes.
    static std::optional<MemoryPlace> parse(const String& text, const std::shared_ptr<MemoryVolume>& volume);

    /// Ends with a slash unless `name` follows.
    String fullName(const String& name = {}) const;
    /// Drops "." and takes back a level for ".."; false when that leads beyond the root.
    bool normalize();
    MemoryPath pathOf(const String& name) const;
    bool isSame(const MemoryPlace& other) const;
    /// None when it leads beyond the root.
    std::optional<MemoryPlace> absolute() const;
    /// The way here from `reference`; none when one of them leads beyond the root.
    std::optional<MemoryPlace> relativeTo(const MemoryPlace& reference) const;
};

bool isMemoryName(const String& name);

/// Splits at the last period.
void splitMemoryName(const String& name, String& baseName, String& extension);

// What files and folders answer alike; false when there is no such one.
bool storeCreationTime(const std::optional<MemoryVolume::Status>& status, FILETIME* time);
bool storeLastWriteTime(const std::optional<MemoryVolume::Status>& status, FILETIME* time);
bool storeStatus(const std::optional<MemoryVolume::Status>& status, struct _stat64i32& result);
bool allowsAccess(const std::optional<MemoryVolume::Status>& status, int mode);

/// Reports what failed on which path.
void reportMemoryFailure(const Char* what, const String& path, MemoryError code);

std::shared_ptr<Directory> makeMemoryDirectory(MemoryPlace place);
std::shared_ptr<File> makeMemoryFile(MemoryPlace folder, const String& name);

}  // namespace Oxa_1_1
