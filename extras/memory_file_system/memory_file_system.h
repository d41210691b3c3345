#pragma once

#include <memory>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "extras/memory_file_system/memory_volume.h"

namespace Oxa_1_1
{

/// While it lives, paths that begin with "mem:" lead to files and folders in memory. Items that were made keep their
/// volume alive.
class MemoryFileSystem
{
   public:
    MemoryFileSystem();
    MemoryFileSystem(const MemoryFileSystem&) = delete;
    MemoryFileSystem& operator=(const MemoryFileSystem&) = delete;
    ~MemoryFileSystem();

    MemoryVolume& volume() const { return *m_volume; }

   private:
    std::shared_ptr<MemoryVolume> m_volume;
    std::shared_ptr<const Directory::ImplCreator> m_directoryCreator;
    std::shared_ptr<const File::ImplCreator> m_fileCreator;
};

}  // namespace Oxa_1_1
