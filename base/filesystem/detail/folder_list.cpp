#include "base/filesystem/detail/folder_list.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files.h"

namespace Oxa_1_1::detail
{

namespace
{

using SharedItem = std::shared_ptr<const FileSystemItem>;

bool hasDots(const ParsedDirectory& path)
{
    return std::ranges::any_of(path.levels, [](const String& level) { return isDots(level); });
}

/// Makes items of the entries of one folder.
class ItemMaker
{
   public:
    explicit ItemMaker(const Directory& directory) : m_fullName(directory.getFullName())
    {
        if (areOwnCreatorsFirst()) m_path = parseDirectory(m_fullName);
        if (m_path != nullptr) m_impl = OxaWindowsFileSystemDirectory(m_path);
    }

    /// The path to read. Nothing resolves dots in the spelling for paths of any length.
    String readablePath() const { return m_path == nullptr || hasDots(*m_path) ? m_fullName : longName(*m_path); }

    /// Empty for what is passed over.
    SharedItem make(const platform::FolderEntry& entry, Kinds kinds) const
    {
        if (m_path == nullptr || !isValidFileName(entry.name))
            return FileSystemItem::fromExistingString(m_fullName + entry.name.c_str());
        if (kinds == (entry.isFolder ? Kinds::FILES : Kinds::DIRECTORIES)) return nullptr;
        return entry.isFolder ? SharedItem(makeFolder(entry))
                              : makeFile(OxaWindowsFileSystemFile::fromCheckedName(m_impl, entry.name));
    }

   private:
    std::shared_ptr<Directory> makeFolder(const platform::FolderEntry& entry) const
    {
        auto path = copyForChange(*m_path, 1);
        path->levels.emplace_back(TextView(entry.name));
        path->link = entry.isLink ? LinkState::LINK : LinkState::NO_LINK;
        return makeDirectory(std::move(path));
    }

    String m_fullName;
    /// Null when each item has to be asked for.
    SharedDirectory m_path;
    OxaWindowsFileSystemDirectory m_impl;
};

bool isLinkItself(const ParsedDirectory& path)
{
    return path.link == LinkState::UNKNOWN ? platform::isLink(longName(path)) : path.link == LinkState::LINK;
}

}  // namespace

std::vector<SharedItem> listFolder(const Directory& directory, const String& pattern, Kinds kinds)
{
    std::vector<SharedItem> items;
    const ItemMaker maker(directory);
    const auto reader = platform::openFolder(maker.readablePath());
    if (reader == nullptr) return items;
    const Wildcard wildcard(pattern);
    platform::FolderEntry entry;
    while (reader->next(entry))
    {
        if (!wildcard.matches(entry.name)) continue;
        if (auto item = maker.make(entry, kinds)) items.push_back(std::move(item));
    }
    return items;
}

bool isLinkItself(const Directory& directory)
{
    const auto* const impl = windowsImpl(directory);
    return impl != nullptr && isLinkItself(*impl->path());
}

bool leadsToAncestor(const OxaWindowsFileSystemDirectory& directory)
{
    const ParsedDirectory& path = *directory.path();
    if (!isLinkItself(path)) return false;
    const auto identity = platform::readIdentity(longName(path));
    if (!identity) return false;
    auto ancestor = copyForChange(path);
    while (!ancestor->levels.empty())
    {
        ancestor->levels.pop_back();
        if (platform::readIdentity(longName(*ancestor)) == identity) return true;
    }
    return false;
}

bool leadsToAncestor(const Directory& directory)
{
    const auto* const impl = windowsImpl(directory);
    return impl != nullptr && leadsToAncestor(*impl);
}

}  // namespace Oxa_1_1::detail
