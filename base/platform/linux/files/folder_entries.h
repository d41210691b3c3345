#pragma once

#include <dirent.h>

#include <cstddef>
#include <memory>
#include <optional>

#include "base/platform/files/tree.h"
#include "base/platform/linux/files/file_descriptor.h"
#include "base/platform/platform_types.h"

namespace Oxa_1_1::platform
{

/// What an entry of the folder is. The system is asked only where the entry does not tell.
EntryKind kindOf(int folder, const struct dirent64& entry);
/// Asks the system; none sets `errno`.
std::optional<EntryKind> readKind(int folder, const char* name);

/// The entries of an open folder, read in large pieces as the system has them.
class FolderEntries
{
   public:
    explicit FolderEntries(FileDescriptor folder);

    int folder() const noexcept { return m_folder.get(); }
    /// Without "." and ".."; valid until the next call. Null at the end, or when reading fails: the last error tells.
    const struct dirent64* next();
    bool rewind();

   private:
    bool fill();
    bool isRemoved() const;

    FileDescriptor m_folder;
    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_position = 0;
    std::size_t m_end = 0;
};

}  // namespace Oxa_1_1::platform
