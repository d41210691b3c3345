#pragma once

#include <vector>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/tree_work.h"

namespace Oxa_1_1::detail
{

/// Removes a folder with all that is in it, as removeTree() does.
class TreeDeletion
{
   public:
    explicit TreeDeletion(TreeWork& work) : m_work(work) {}

    void run(const DiskFolder& folder);

   private:
    struct Level
    {
        FolderContents contents;
        std::size_t next = 0;
        bool keepsSomething = false;
    };

    /// Whether all is gone.
    bool removeContents(FolderWay way);
    void begin(FolderWay& way);
    void visit(FolderWay& way, Level& level, const FolderContents::Entry& folder);
    bool removeFile(FolderWay& way, TextView name, bool isLink);
    bool removeFolder(const platform::OpenFolder& above, TextView name, bool isLink);
    bool isEnded() { return m_work.isStopped() || m_work.isEnded(); }

    TreeWork& m_work;
    std::vector<Level> m_levels;
};

}  // namespace Oxa_1_1::detail
