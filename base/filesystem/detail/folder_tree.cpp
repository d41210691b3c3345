#include "base/filesystem/detail/folder_tree.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/tree.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::FileIdentity;

void appendTree(FolderTree& tree, const Directory& directory)
{
    for (const auto& file : directory.findFiles(OXA_TEXT("*"))) tree.files.push_back(file);
    tree.isWhole = tree.isWhole && ListScope::wasRead();
    const auto below = directory.collectDirectories(OXA_TEXT("*"), false);
    tree.isWhole = tree.isWhole && ListScope::wasRead();
    tree.directories.insert(tree.directories.end(), below.begin(), below.end());
    for (const auto& folder : below)
        if (!isLinkItself(*folder)) appendTree(tree, *folder);
}

/// The folders of a tree, by what they are.
class FolderSet
{
   public:
    FolderSet(const Directory& top, const FolderTree& tree)
    {
        add(top);
        for (const auto& folder : tree.directories)
            if (!isLinkItself(*folder)) add(*folder);
        std::ranges::sort(m_identities, isLess);
    }

    bool contains(const Directory& directory) const
    {
        const auto identity = readIdentity(directory);
        return identity && std::ranges::binary_search(m_identities, *identity, isLess);
    }

    /// For a folder that need not be there yet: what it would be made in.
    bool wouldContain(const Directory& directory) const
    {
        auto place = directory.makeAbsolute();
        while (place != nullptr && !place->exists()) place = place->getParent();
        return place != nullptr && contains(*place);
    }

   private:
    static bool isLess(const FileIdentity& a, const FileIdentity& b)
    {
        return std::tie(a.volume, a.index) < std::tie(b.volume, b.index);
    }

    void add(const Directory& directory)
    {
        if (const auto identity = readIdentity(directory)) m_identities.push_back(*identity);
    }

    std::vector<FileIdentity> m_identities;
};

void takePermissions(const Directory& folder, const Directory& from, platform::OwnerAccess access)
{
    if (windowsImpl(folder) == nullptr || windowsImpl(from) == nullptr) return;
    const auto open = [](const Directory& directory)
    { return platform::OpenFolder::at(directory.getFullNameUnicode(), platform::Links::FOLLOW); };
    const platform::OpenFolder target = open(folder);
    const platform::OpenFolder source = open(from);
    if (target.isOpen() && source.isOpen()) target.takePermissions(source, access);
}

bool isInPath(const Directory& folder, const Directory& directory)
{
    for (auto place = directory.makeAbsolute(); place != nullptr; place = place->getParent())
        if (isSameFolder(*place, folder)) return true;
    return false;
}

bool reportDifferentDisks(const FolderTree& tree, const Directory& target)
{
    const File& file = *tree.files.front();
    const auto place = File::fromString(target, file.getName());
    const String from = file.getFullNameUnicode();
    const String to = place != nullptr ? place->getFullNameUnicode() : String();
    platform::failStep(platform::NOT_SAME_DEVICE, "renameFile", from, to);
    return reportFailedMove(from, to);
}

}  // namespace

void MadeFolders::add(std::shared_ptr<const Directory> made, std::shared_ptr<const Directory> from)
{
    takePermissions(*made, *from, platform::OwnerAccess::FULL);
    m_pairs.push_back({std::move(made), std::move(from)});
}

void MadeFolders::finish() const
{
    // The innermost first, as one that is shut keeps those in it from being reached.
    std::for_each(m_pairs.rbegin(), m_pairs.rend(),
                  [](const auto& pair) { takePermissions(*pair.made, *pair.from, platform::OwnerAccess::AS_GIVEN); });
}

FolderTree readTree(const Directory& directory)
{
    FolderTree tree;
    appendTree(tree, directory);
    return tree;
}

std::optional<FileIdentity> readIdentity(const Directory& directory)
{
    if (windowsImpl(directory) == nullptr) return std::nullopt;
    return platform::readIdentity(directory.getFullNameUnicode());
}

std::vector<FileIdentity> readAncestry(const Directory& directory)
{
    if (windowsImpl(directory) == nullptr) return {};
    const auto folder = platform::OpenFolder::at(directory.getFullNameUnicode(), platform::Links::FOLLOW);
    return folder.isOpen() ? folder.ancestry() : std::vector<FileIdentity>();
}

bool isSameFolder(const Directory& a, const Directory& b)
{
    const auto identityA = readIdentity(a);
    const auto identityB = readIdentity(b);
    // Where names count case, folders that are there may differ by nothing else.
    return identityA || identityB ? identityA == identityB : a == b;
}

bool isSameOrInside(const Directory& directory, const Directory& folder)
{
    if (windowsImpl(directory) != nullptr && windowsImpl(folder) != nullptr)
    {
        const auto places = ancestryOfNearest(DiskFolder(directory));
        // What cannot be seen may be there.
        return places.empty() || contains(places, readIdentity(folder));
    }
    return isInPath(folder, directory);
}

bool canMoveTree(const Directory& folder, const FolderTree& tree, const Directory& target, bool emptyTarget)
{
    // A path through the folder would lead elsewhere as soon as the link in it has moved.
    if (isSameOrInside(target, folder) || isInPath(folder, target)) return false;
    // A rename that fails would come too late for what was in the target.
    const bool isMixed = (windowsImpl(folder) == nullptr) != (windowsImpl(target) == nullptr);
    if (isMixed && emptyTarget && target.exists() && !tree.files.empty()) return reportDifferentDisks(tree, target);
    const FolderSet moved(folder, tree);
    if (moved.wouldContain(target)) return false;
    if (emptyTarget)
    {
        if (isSameOrInside(folder, target) || FolderSet(target, readTree(target)).contains(folder)) return false;
        // Behind a link, nothing is emptied.
        if (!isLinkItself(target)) return true;
    }
    return std::ranges::none_of(tree.directories,
                                [&](const auto& inside)
                                {
                                    const auto place = placeIn(target, folder, *inside);
                                    return place != nullptr && moved.contains(*place);
                                });
}

bool isLinkItself(const Directory& directory)
{
    const auto* const impl = windowsImpl(directory);
    return impl != nullptr && platform::isLink(impl->getFullNameUnicode());
}

bool leadsToAncestor(const Directory& directory)
{
    if (!isLinkItself(directory)) return false;
    const ParsedDirectory& path = *windowsImpl(directory)->path();
    const auto identity = platform::readIdentity(longName(path));
    if (!identity) return false;
    ParsedDirectory ancestor = path;
    while (!ancestor.levels.empty())
    {
        ancestor.levels.dropBack();
        if (platform::readIdentity(longName(ancestor)) == identity) return true;
    }
    return false;
}

std::shared_ptr<const Directory> placeIn(const Directory& target, const Directory& folder, const Directory& inside)
{
    const auto relative = inside.makeRelative(folder);
    return relative != nullptr && !relative->isAbsolute() ? target.appendPath(*relative) : nullptr;
}

}  // namespace Oxa_1_1::detail
