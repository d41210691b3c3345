#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/filesystem/detail/tree_walk.h"

namespace Oxa_1_1::detail
{

/// Moves what is in one open folder to another, by renaming every file and making every folder anew.
class TreeMove
{
   public:
    TreeMove(FolderWay source, bool overwrite);

    /// Reads the whole tree; false when something of it cannot be seen.
    bool readSource();
    /// False, after a report, when there are files that would have to get from one disk to another. `target` stands
    /// for the folder that they are to come to.
    bool fitsOn(std::uint64_t volume, const FolderWay& target) const;
    /// Moves everything, and removes the folders below the top. `targetPath` is as the caller wrote it. A target that
    /// was made for it gets the permissions of the source.
    bool run(FolderWay target, const ParsedDirectory& targetPath, bool isTargetMade);

   private:
    struct Folder
    {
        FolderContents contents;
        /// Those of its folders that are no links, by their places in m_folders, and by their places in its contents.
        std::vector<std::size_t> inside;
        std::vector<std::size_t> entries;
        platform::FileIdentity identity;
        /// Of the folder that it lies in; of the top, its own.
        std::size_t above = 0;
        bool isMade = false;
    };
    class Step;
    class MakeStep;
    class FileStep;
    class RemoveStep;
    class CheckStep;

    bool addCurrent(std::size_t above);
    void appendPath(ParsedDirectory& path, std::size_t folder) const;
    bool walk(Step& step);

    FolderWay m_source;
    bool m_overwrites;
    std::vector<Folder> m_folders;
};

}  // namespace Oxa_1_1::detail
