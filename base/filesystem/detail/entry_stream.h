#pragma once

#include <cstddef>
#include <vector>

#include "base/filesystem/detail/tree_walk.h"

namespace Oxa_1_1::detail
{

/// A way through a tree on which each folder is read once, an entry at a time. What a folder that is left open for what
/// lies below has still to give stays with the system; only of those far above it is kept in memory.
class EntryStream
{
   public:
    explicit EntryStream(FolderWay way);

    FolderWay& way() noexcept { return m_way; }
    platform::OpenFolder& current() noexcept { return m_way.current(); }

    /// The next entry of the current folder. False at its end (the last error is 18), or when reading fails.
    bool next(platform::FolderEntry& entry);
    /// Reads the rest of the current folder, so that its folders come first.
    void readAhead() { keepRest(m_levels.back()); }

    /// As FolderWay's. Only so many links are followed on a way.
    /// @{
    bool enter(TextView name, platform::Links links);
    bool leave();
    /// @}

   private:
    struct Level
    {
        /// Until the rest is kept.
        platform::OpenFolder folder;
        bool isLink = false;
        bool isKept = false;
        FolderContents rest = {};
        std::size_t nextFolder = 0;
        std::size_t nextFile = 0;
        /// How reading the rest has ended.
        DWORD end = 0;
    };

    static void keepRest(Level& level);

    FolderWay m_way;
    std::vector<Level> m_levels;
    std::size_t m_links = 0;
};

}  // namespace Oxa_1_1::detail
