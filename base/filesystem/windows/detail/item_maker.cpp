#include "base/filesystem/windows/detail/item_maker.h"

#include <utility>

#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"

namespace Oxa_1_1::detail
{

ItemMaker::ItemMaker(const Directory& directory, Kinds kinds) : m_path(pathOfOwnItems(directory)), m_kinds(kinds)
{
    if (m_path != nullptr)
        m_impl = OxaWindowsFileSystemDirectory(m_path);
    else
        m_fullName = directory.getFullName();
}

ItemMaker::ItemMaker(SharedDirectory path, Kinds kinds) : m_path(std::move(path)), m_impl(m_path), m_kinds(kinds) {}

SharedDirectory ItemMaker::pathOfOwnItems(const Directory& directory)
{
    return areOwnCreatorsFirst() ? parseDirectory(directory.getFullName()) : nullptr;
}

String ItemMaker::pathToRead() const { return m_path == nullptr ? m_fullName : readablePath(*m_path); }

platform::EntryKinds ItemMaker::kindsToRead() const noexcept
{
    if (m_path == nullptr || m_kinds == Kinds::ALL) return platform::EntryKinds::ALL;
    return m_kinds == Kinds::FILES ? platform::EntryKinds::FILES : platform::EntryKinds::FOLDERS;
}

void ItemMaker::make(const platform::FolderEntry& entry, ItemReceiver& receiver) const
{
    const Text& name = entry.name;
    if (m_path == nullptr)
        askFor(m_fullName + String(name), receiver);
    else if (!isValidFileName(name))
        askFor(fullName(*m_path, SEPARATOR, name), receiver);
    else if (platform::isFolder(entry.kind))
        receiver.take(makeDirectory(pathOf(name)), platform::isLink(entry.kind));
    else
        receiver.take(makeFile(OxaWindowsFileSystemFile::fromCheckedName(m_impl, name)));
}

/// Makes what the registered implementations and the disk say; nothing when it is gone.
void ItemMaker::askFor(const String& path, ItemReceiver& receiver) const
{
    const std::shared_ptr<const FileSystemItem> item = FileSystemItem::fromExistingString(path);
    if (auto file = std::dynamic_pointer_cast<const File>(item); file != nullptr && m_kinds != Kinds::DIRECTORIES)
        receiver.take(std::move(file));
    if (auto directory = std::dynamic_pointer_cast<const Directory>(item);
        directory != nullptr && m_kinds != Kinds::FILES)
        receiver.take(std::move(directory), true);
}

SharedDirectory ItemMaker::pathOf(TextView name) const { return appendLevel(*m_path, name); }

}  // namespace Oxa_1_1::detail
