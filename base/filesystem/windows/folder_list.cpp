#include "base/filesystem/windows/folder_list.h"

#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

/// Behind the last entry of a folder.
constexpr DWORD NO_MORE_FILES = 18;

/// Makes items of the entries of one folder.
class ItemMaker
{
   public:
    explicit ItemMaker(const Directory& directory) : m_fullName(directory.getFullName())
    {
        if (areOwnCreatorsFirst()) m_path = parseDirectory(m_fullName);
        if (m_path != nullptr) m_impl = OxaWindowsFileSystemDirectory(m_path);
    }

    String pathToRead() const { return m_path == nullptr ? m_fullName : readablePath(*m_path); }

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
            receiver.take(makeFolder(entry), entry.isLink);
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
            receiver.take(std::move(directory), true);
    }

    std::shared_ptr<const Directory> makeFolder(const platform::FolderEntry& entry) const
    {
        auto path = copyForChange(*m_path, 1);
        path->levels.emplace_back(TextView(entry.name));
        return makeDirectory(std::move(path));
    }

    String m_fullName;
    /// Null when each item has to be asked for.
    SharedDirectory m_path;
    OxaWindowsFileSystemDirectory m_impl;
};

}  // namespace

void listFolder(const Directory& directory, const String& pattern, Kinds kinds, ItemReceiver& receiver)
{
    const ItemMaker maker(directory);
    const auto reader = platform::openFolder(maker.pathToRead());
    if (reader == nullptr)
    {
        if (!saysMissing(platform::lastError())) ListScope::setPartial();
        return;
    }
    const Wildcard wildcard(pattern);
    const platform::EntryKinds kindsToRead = maker.kindsToRead(kinds);
    platform::FolderEntry entry;
    while (reader->nextOf(entry, kindsToRead))
        if (wildcard.matches(entry.name)) maker.make(entry, receiver);
    if (platform::lastError() == NO_MORE_FILES) return;
    platform::noteFailedStep("nextEntry", maker.pathToRead());
    ListScope::setPartial();
}

}  // namespace Oxa_1_1::detail
