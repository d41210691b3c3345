#pragma once

#include <memory>
#include <vector>

#include "base/filesystem/detail/circles.h"
#include "base/filesystem/detail/tree_walk.h"
#include "base/filesystem/progress.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1::detail
{

/// Makes the folder of this name in the current folder of the way.
enum class Place
{
    MADE,
    /// As it seems; a file may stand there, too.
    FOUND,
    /// It was reported why.
    FAILED
};
/// `path` is how the caller wrote the top of the way: nothing is made for a relative one.
Place makePlace(FolderWay& way, TextView name, const ParsedDirectory& path);

/// A copy of what is in one open folder to another.
class TreeCopy
{
   public:
    /// `sourcePath` is absolute, `targetPath` as the caller wrote it.
    TreeCopy(FolderWay source, const ParsedDirectory& sourcePath, FolderWay target, const ParsedDirectory& targetPath);
    TreeCopy(const TreeCopy&) = delete;
    TreeCopy& operator=(const TreeCopy&) = delete;
    ~TreeCopy() = default;

    void setRecursive(bool recursive) noexcept { m_isRecursive = recursive; }
    void setOverwrite(bool overwrite) noexcept { m_overwrites = overwrite; }
    void setProgress(std::shared_ptr<IProgress> progress);
    /// False, with the last error, after the first failure. A target that was made for the copy gets the permissions
    /// of the source.
    bool run(bool isTargetMade);
    /// Whether the target turned out to be part of what is copied.
    bool cameToItself() const noexcept { return m_cameToItself; }

   private:
    struct Level
    {
        FolderContents contents;
        bool isMade = false;
        std::size_t next = 0;
    };

    bool begin(bool isMade, bool withContents);
    bool end();
    bool notePlace(bool isMade);
    bool copyFolder(const FolderContents& contents, const FolderContents::Entry& folder);
    bool copyFile(const FolderContents& contents, const FolderContents::Entry& file);
    bool goesIntoItself(bool throughLink);

    FolderWay m_source;
    FolderWay m_target;
    const ParsedDirectory& m_targetPath;
    Circles m_circles;
    bool m_isRecursive = true;
    bool m_overwrites = false;
    bool m_cameToItself = false;
    std::shared_ptr<IProgress> m_progress;
    platform::CopyProgress m_report;
    std::vector<Level> m_levels;
    /// The folders on the way of the target that were there before.
    std::vector<platform::FileIdentity> m_places;
};

}  // namespace Oxa_1_1::detail
