#include "base/filesystem/detail/folder_list.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1::detail
{

namespace
{

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

    /// What has to be read for items of these kinds. Only the library's own items are what their entries are.
    platform::EntryKinds kindsToRead(Kinds kinds) const noexcept
    {
        if (m_path == nullptr || kinds == Kinds::ALL) return platform::EntryKinds::ALL;
        return kinds == Kinds::FILES ? platform::EntryKinds::FILES : platform::EntryKinds::FOLDERS;
    }

    void make(const platform::FolderEntry& entry, ItemReceiver& receiver) const
    {
        if (m_path == nullptr || !isValidFileName(entry.name))
            askFor(m_fullName + entry.name.c_str(), receiver);
        else if (entry.isFolder)
            receiver.take(makeFolder(entry));
        else
            receiver.take(makeFile(OxaWindowsFileSystemFile::fromCheckedName(m_impl, entry.name)));
    }

   private:
    /// Makes what the registered implementations and the disk say; nothing when it is gone.
    static void askFor(const String& path, ItemReceiver& receiver)
    {
        const std::shared_ptr<const FileSystemItem> item = FileSystemItem::fromExistingString(path);
        if (auto file = std::dynamic_pointer_cast<const File>(item))
            receiver.take(std::move(file));
        else if (auto directory = std::dynamic_pointer_cast<const Directory>(item))
            receiver.take(std::move(directory));
    }

    std::shared_ptr<const Directory> makeFolder(const platform::FolderEntry& entry) const
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

bool isLinkAt(const ParsedDirectory& path)
{
    return path.link == LinkState::UNKNOWN ? platform::isLink(longName(path)) : path.link == LinkState::LINK;
}

}  // namespace

void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver)
{
    const ItemMaker maker(directory);
    const auto reader = platform::openFolder(maker.readablePath());
    if (reader == nullptr) return;
    const Wildcard wildcard(pattern);
    const platform::EntryKinds kindsToRead = maker.kindsToRead(kinds);
    platform::FolderEntry entry;
    while (reader->nextOf(entry, kindsToRead))
        if (wildcard.matches(entry.name)) maker.make(entry, receiver);
}

bool isLinkItself(const Directory& directory)
{
    const auto* const impl = windowsImpl(directory);
    return impl != nullptr && isLinkAt(*impl->path());
}

bool leadsToAncestor(const OxaWindowsFileSystemDirectory& directory)
{
    const ParsedDirectory& path = *directory.path();
    if (!isLinkAt(path)) return false;
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
