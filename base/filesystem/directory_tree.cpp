// Whole folders, copied, moved, emptied and measured. Those of the library itself are, from open folder to open folder;
// others, and pairs of both, by what every implementation offers. The results are the same.

#include <algorithm>
#include <utility>
#include <vector>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/disk_tree.h"
#include "base/filesystem/detail/folder_tree.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/result_codes.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1
{

namespace
{

/// A copy of the contents of one folder to another.
class ContentsCopy
{
   public:
    ContentsCopy(const Directory& target, bool recursive, bool overwrite, std::shared_ptr<IProgress> progress)
        : m_isRecursive(recursive), m_overwrites(overwrite), m_progress(std::move(progress))
    {
        note(target);
    }

    /// A target that was made for the copy gets the permissions of the source.
    bool run(const Directory& source, const Directory& target, bool isTargetMade)
    {
        if (isTargetMade) m_made.add(std::make_shared<Directory>(target), std::make_shared<Directory>(source));
        m_above = detail::readAncestry(source);
        if (!copy(source, target)) return false;
        m_made.finish();
        return true;
    }

    /// Whether the target turned out to be part of what is copied.
    bool cameToItself() const noexcept { return m_cameToItself; }

   private:
    bool copy(const Directory& source, const Directory& target)
    {
        const auto folders = source.findDirectories(OXA_TEXT("*"));
        if (!detail::ListScope::wasRead()) return false;
        // Through links, what is copied may come to stand in the source itself. Other implementations have none.
        const bool mayGrow = detail::windowsImpl(source) != nullptr;
        std::shared_ptr<FileIterator> files;
        if (mayGrow && !readFiles(source, files)) return false;
        for (const auto& folder : folders)
            if (!copyFolder(*folder, target)) return false;
        if (!mayGrow && !readFiles(source, files)) return false;
        for (const auto& file : files)
            if (file->copy(target, m_overwrites, m_progress) == nullptr) return false;
        return true;
    }

    static bool readFiles(const Directory& source, std::shared_ptr<FileIterator>& files)
    {
        files = source.findFiles(OXA_TEXT("*"));
        return detail::ListScope::wasRead();
    }

    bool copyFolder(const Directory& folder, const Directory& target)
    {
        const auto place = target.appendLevel(folder.getName());
        const bool wasThere = place != nullptr && place->exists();
        const bool isThere = place != nullptr && place->create();
        if (!isThere && !m_overwrites) return false;
        if (isThere && !wasThere) m_made.add(place, std::make_shared<Directory>(folder));
        if (!m_isRecursive || leadsUp(folder)) return true;
        // Where a file stands, there is no folder in spite of all.
        if (place == nullptr || !folder.exists() || !place->exists()) return false;
        const std::size_t outer = m_places.size();
        if (wasThere) note(*place);
        if (goesIntoItself(folder) || !copy(folder, *place)) return false;
        m_places.resize(outer);
        return true;
    }

    /// By its path, or to a folder that the whole really lies in.
    bool leadsUp(const Directory& folder) const
    {
        return detail::leadsToAncestor(folder) ||
               (detail::isLinkItself(folder) && detail::contains(m_above, detail::readIdentity(folder)));
    }

    void note(const Directory& place)
    {
        if (const auto identity = detail::readIdentity(place)) m_places.push_back(*identity);
    }

    /// Behind a link, what is copied may lie anywhere in the target.
    bool goesIntoItself(const Directory& source)
    {
        auto places =
            detail::isLinkItself(source) ? detail::readAncestry(source) : std::vector<platform::FileIdentity>();
        if (const auto own = detail::readIdentity(source)) places.push_back(*own);
        m_cameToItself = std::ranges::find_first_of(places, m_places) != places.end();
        return m_cameToItself;
    }

    bool m_isRecursive;
    bool m_overwrites;
    std::shared_ptr<IProgress> m_progress;
    /// What the source really lies in, and it itself.
    std::vector<platform::FileIdentity> m_above;
    /// On the way to the current folder of the target, those that were there before.
    std::vector<platform::FileIdentity> m_places;
    detail::MadeFolders m_made;
    bool m_cameToItself = false;
};

/// Copies of read-only files would stay; those that were there before are to.
void removeCopy(const Directory& copy, bool wasThere)
{
    if (!wasThere)
        for (const auto& file : detail::readTree(copy).files) file->unsetAsReadOnly();
    copy.remove(true);
}

/// Moves the link itself, not what it leads to.
bool moveLink(const Directory& link, const Directory& target, bool overwrite)
{
    return detail::windowsImpl(target) != nullptr && detail::moveLinkOnDisk(link, target, overwrite);
}

/// Moves a link as it is, to wherever it leads by now.
bool moveLinkInTree(const Directory& link, const Directory& place)
{
    return detail::windowsImpl(place) != nullptr &&
           platform::renameFile(link.getFullNameUnicode(), place.getFullNameUnicode(), true);
}

bool mayLieIn(const Directory& source, const Directory& copied)
{
    const bool areOwn = detail::windowsImpl(source) != nullptr && detail::windowsImpl(copied) != nullptr;
    return areOwn ? detail::mayLieIn(source, copied) : detail::isSameOrInside(source, copied);
}

/// A move of everything in one folder to another.
class ContentsMove
{
   public:
    ContentsMove(const Directory& folder, const Directory& target, bool overwrite)
        : m_folder(folder), m_target(target), m_overwrites(overwrite)
    {
    }

    bool run(const detail::FolderTree& tree)
    {
        if (!makeFolder(std::make_shared<Directory>(m_target), m_folder)) return false;
        for (const auto& directory : tree.directories)
            if (!moveFolder(*directory)) return false;
        for (const auto& file : tree.files)
            if (!moveFile(*file)) return false;
        m_made.finish();
        return true;
    }

   private:
    /// False also for a file that is in the way: that is made, as far as making goes.
    bool makeFolder(const std::shared_ptr<const Directory>& folder, const Directory& from)
    {
        if (folder->exists()) return true;
        if (!folder->create() || !folder->exists()) return false;
        m_made.add(folder, std::make_shared<Directory>(from));
        return true;
    }

    /// The place of a folder in the target, made if it is missing; null when there can be none.
    std::shared_ptr<const Directory> makePlace(const Directory& inside)
    {
        auto place = detail::placeIn(m_target, m_folder, inside);
        return place != nullptr && makeFolder(place, inside) ? place : nullptr;
    }

    bool moveFolder(const Directory& inside)
    {
        if (!detail::isLinkItself(inside)) return makePlace(inside) != nullptr;
        const auto place = detail::placeIn(m_target, m_folder, inside);
        return place != nullptr && moveLinkInTree(inside, *place);
    }

    bool moveFile(const File& file)
    {
        const auto directory = file.getDirectory();
        const auto place = directory != nullptr ? makePlace(*directory) : nullptr;
        const auto targetFile = place != nullptr ? File::fromString(*place, file.getName()) : nullptr;
        return targetFile != nullptr && file.move(*targetFile, m_overwrites);
    }

    const Directory& m_folder;
    const Directory& m_target;
    bool m_overwrites;
    detail::MadeFolders m_made;
};

/// Removes what is left of a moved tree. A file that came meanwhile, or was not listed, stays, and the folders above
/// it.
bool removeFolders(const Directory& folder, const detail::FolderTree& tree)
{
    return std::all_of(tree.directories.rbegin(), tree.directories.rend(),
                       [](const auto& directory) { return directory->remove(false); }) &&
           folder.remove(false);
}

}  // namespace

// Each folder takes along what is below it, and each item is tried once, however deep it lies.
bool Directory::removeContents(bool recursive) const
{
    if (detail::isOnDisk(*this))
    {
        detail::emptyOnDisk(*this, recursive);
        return true;
    }
    if (!exists() || detail::isLinkItself(*this)) return true;
    for (const auto& file : collectFiles(OXA_TEXT("*"), false)) file->remove();
    if (!recursive) return true;
    auto directories = collectDirectories(OXA_TEXT("*"), false);
    // A link whose folder is gone would be one to nothing.
    std::stable_partition(directories.begin(), directories.end(),
                          [](const auto& directory) { return detail::isLinkItself(*directory); });
    for (const auto& directory : directories) directory->remove(true);
    return true;
}

bool Directory::copyContents(const Directory& target, bool recursive, bool overwrite,
                             std::shared_ptr<IProgress> progress) const
{
    if (!exists() || !target.exists()) return false;
    if (detail::isOnDisk(*this) && detail::isOnDisk(target))
        return detail::copyContentsOnDisk(*this, target, recursive, overwrite, std::move(progress));
    if (detail::isSameFolder(*this, target)) return false;
    if (recursive && detail::isSameOrInside(target, *this)) return false;
    return ContentsCopy(target, recursive, overwrite, std::move(progress)).run(*this, target, false);
}

std::shared_ptr<const FileSystemItem> Directory::copy(const Directory& target, bool overwrite,
                                                      std::shared_ptr<IProgress> progress) const
{
    const auto copied = target.appendLevel(getName());
    if (copied == nullptr || !exists()) return nullptr;
    if (detail::isOnDisk(*this) && detail::isOnDisk(*copied))
        return detail::copyOnDisk(*this, *copied, overwrite, std::move(progress)) ? copied : nullptr;
    if (detail::isSameOrInside(*copied, *this)) return nullptr;
    const bool wasThere = copied->exists();
    if (!copied->create() || !copied->exists()) return nullptr;
    ContentsCopy copy(*copied, true, overwrite, std::move(progress));
    if (copy.run(*this, *copied, !wasThere)) return copied;
    // Why it failed counts, not what became of the rest.
    platform::KeptFailure reason;
    // What was there before and this folder is part of, or the reverse, is no half-made copy, nor is the target itself.
    const bool isHalfMade = !wasThere || (!copy.cameToItself() && !mayLieIn(*this, *copied));
    if (isHalfMade && !detail::isDots(getName())) removeCopy(*copied, wasThere);
    reason.restore();
    return nullptr;
}

int Directory::copy(const String& target, bool overwrite, std::shared_ptr<IProgress> progress) const
{
    const auto directory = fromString(target);
    if (directory == nullptr) return detail::NO_TARGET;
    return copy(*directory, overwrite, std::move(progress)) != nullptr ? detail::SUCCESS : detail::FAILED;
}

bool Directory::move(const Directory& target, bool overwrite) const
{
    if (!exists()) return false;
    if (detail::isLinkItself(*this)) return moveLink(*this, target, overwrite);
    if (detail::isOnDisk(*this) && detail::isOnDisk(target))
        return detail::moveContentsOnDisk(*this, target, overwrite) && remove(false);
    const detail::FolderTree tree = detail::readTree(*this);
    if (!tree.isWhole || !detail::canMoveTree(*this, tree, target, overwrite)) return false;
    if ((overwrite || !target.exists()) && !target.removeContents(true)) return false;
    return ContentsMove(*this, target, overwrite).run(tree) && removeFolders(*this, tree);
}

bool Directory::move(const String& target, bool overwrite) const
{
    const auto directory = fromString(target);
    return directory != nullptr && move(*directory, overwrite);
}

bool Directory::size(unsigned long long& bytes) const
{
    bytes = 0;
    if (detail::isOnDisk(*this)) return detail::sizeOnDisk(*this, bytes);
    const auto files = collectFiles(OXA_TEXT("*"), true);
    const bool isWhole = detail::ListScope::wasWhole();
    for (const auto& file : files)
    {
        unsigned long long fileBytes = 0;
        if (!file->size(fileBytes)) return false;
        bytes += fileBytes;
    }
    return isWhole;
}

}  // namespace Oxa_1_1
