#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <tuple>

#include "base/filesystem/detail/tree_walk.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// What stays at the source of a move, for a reason that was told.
class LeftEntries
{
   public:
    void add(const platform::OpenFolder& folder, TextView name);
    bool contains(const platform::OpenFolder& folder, TextView name) const;

   private:
    std::set<std::tuple<std::uint64_t, std::uint64_t, Text>> m_entries;
};

/// The second half of a move: what was copied is removed at the source, where it is the same on both sides.
class TreeClearing
{
   public:
    explicit TreeClearing(TreeWork& work) : m_work(work) {}

    /// What is in the source; both ways stand at their tops. False when not all of it is gone.
    bool clear(FolderWay& source, FolderWay& target, const LeftEntries& left);
    /// A single file or link.
    bool clearEntry(FolderWay& source, TextView name, FolderWay& target, TextView targetName);
    /// An empty folder.
    bool clearFolder(const platform::OpenFolder& above, TextView name, const String& path);

    /// From then on, the copy is all that there is.
    bool hasRemoved() const noexcept { return m_hasRemoved; }

   private:
    struct Level
    {
        FolderContents contents;
        std::size_t next = 0;
        bool keepsSomething = false;
    };
    enum class Step
    {
        DOWN,
        PASSED,
        LOST
    };

    bool remove(FolderWay& source, TextView name);
    bool isEnded() { return m_work.isStopped() || m_work.isEnded(); }
    bool failLost(const FolderWay& source);
    void begin(FolderWay& source, FolderWay& target, const LeftEntries& left, Level& level);
    Step enter(FolderWay& source, FolderWay& target, TextView name);

    TreeWork& m_work;
    bool m_hasRemoved = false;
};

}  // namespace Oxa_1_1::detail
