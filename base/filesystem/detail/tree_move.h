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

    /// Where everything must be able to get by renaming.
    struct Destination
    {
        /// On the same disk.
        platform::OpenFolder nearest;
        /// Stands for the folder itself, which need not be there.
        FolderWay place;
    };
    /// Reads the whole tree. False when something of it cannot be seen or, after a report, cannot get to the
    /// destination if there is one.
    bool readSource(const Destination* destination);
    /// What a target was before.
    enum class Target
    {
        FOUND,
        /// No links in it are followed: what is there came meanwhile, or could not be removed.
        EMPTIED,
        /// It gets the permissions of the source.
        MADE
    };
    /// Moves everything, and removes the folders below the top. `targetPath` is as the caller wrote it.
    bool run(FolderWay target, const ParsedDirectory& targetPath, Target kind);

   private:
    struct Folder
    {
        FolderContents contents;
        /// Those of its folders that are no links, by their places in m_folders, and by their places in its contents.
        std::vector<std::size_t> inside;
        std::vector<std::size_t> entries;
        platform::FileIdentity identity;
        bool isMade = false;
    };
    class Step;
    class MakeStep;
    class FileStep;
    class RemoveStep;
    class CheckStep;

    bool addCurrent(const Destination* destination);
    bool canGetTo(const Destination& destination, const Folder& folder);
    /// How its place in the target is entered.
    platform::Links linksTo(const Folder& folder) const noexcept
    {
        return folder.isMade ? platform::Links::REFUSE : m_links;
    }
    bool walk(Step& step);

    FolderWay m_source;
    bool m_overwrites;
    /// For the folders in the target that were there.
    platform::Links m_links = platform::Links::FOLLOW;
    std::vector<Folder> m_folders;
};

}  // namespace Oxa_1_1::detail
