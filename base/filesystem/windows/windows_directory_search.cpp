#include <algorithm>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "base/filesystem/detail/folder_tree.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/folder_list.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_iterators.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1
{

namespace
{

/// Null when nothing can be searched for in the folder.
std::shared_ptr<const Directory> searchable(const OxaWindowsFileSystemDirectory& directory, const String& pattern)
{
    if (detail::isValidSearchString(pattern)) return directory.makeAbsolute();
    detail::refuseText(OXA_TEXT("The file or directory search string '%ls' contains invalid characters."), pattern);
    return nullptr;
}

template <class Iterator>
std::shared_ptr<Iterator> find(const OxaWindowsFileSystemDirectory& directory, const String& pattern)
{
    const detail::ListScope scope;
    const auto absolute = searchable(directory, pattern);
    return absolute != nullptr ? std::make_shared<Iterator>(*absolute, pattern) : nullptr;
}

/// Appends those of one kind.
template <class Item, class Wanted>
class Appender final : public detail::ItemReceiver
{
   public:
    explicit Appender(std::vector<std::shared_ptr<const Item>>& items) : m_items(items) {}
    void take(std::shared_ptr<const File> file) override { takeItem(std::move(file)); }
    void take(std::shared_ptr<const Directory> directory, bool /*mayBeLink*/) override
    {
        takeItem(std::move(directory));
    }

   private:
    template <class Found>
    void takeItem(std::shared_ptr<const Found>&& item)
    {
        if constexpr (std::is_same_v<Found, Wanted>) m_items.push_back(std::move(item));
    }

    std::vector<std::shared_ptr<const Item>>& m_items;
};

/// What an iterator over these kinds would give, without one.
template <class Item, class Wanted>
void append(std::vector<std::shared_ptr<const Item>>& items, const OxaWindowsFileSystemDirectory& directory,
            const String& pattern, detail::Kinds kinds)
{
    const auto absolute = searchable(directory, pattern);
    if (absolute == nullptr) return;
    Appender<Item, Wanted> appender(items);
    detail::listFolder(*absolute, pattern, kinds, appender);
}

template <class Item>
void appendFiles(std::vector<std::shared_ptr<const Item>>& items, const OxaWindowsFileSystemDirectory& directory,
                 const String& pattern)
{
    append<Item, File>(items, directory, pattern, detail::Kinds::FILES);
}

template <class Item>
void appendDirectories(std::vector<std::shared_ptr<const Item>>& items, const OxaWindowsFileSystemDirectory& directory,
                       const String& pattern)
{
    append<Item, Directory>(items, directory, pattern, detail::Kinds::DIRECTORIES);
}

/// The folders that a walk goes on in.
class Descent final : public detail::ItemReceiver
{
   public:
    void take(std::shared_ptr<const File> /*file*/) override {}
    void take(std::shared_ptr<const Directory> directory, bool mayBeLink) override
    {
        if (detail::windowsImpl(*directory) == nullptr || (mayBeLink && detail::leadsToAncestor(*directory))) return;
        folders.push_back(std::move(directory));
    }

    std::vector<std::shared_ptr<const Directory>> folders;
};

/// Collects in this folder and, if it is to be so, in all below it, each complete before the next one beside it.
template <class Collect>
void walk(const OxaWindowsFileSystemDirectory& top, bool recursive, const Collect& collect)
{
    Descent descent;
    const auto goInto = [&](const OxaWindowsFileSystemDirectory& directory)
    {
        collect(directory);
        const auto absolute = recursive ? directory.makeAbsolute() : nullptr;
        if (absolute == nullptr) return;
        const auto before = static_cast<std::ptrdiff_t>(descent.folders.size());
        detail::listFolder(*absolute, OXA_TEXT("*"), detail::Kinds::DIRECTORIES, descent);
        std::reverse(descent.folders.begin() + before, descent.folders.end());
    };
    goInto(top);
    while (!descent.folders.empty())
    {
        const auto next = std::move(descent.folders.back());
        descent.folders.pop_back();
        goInto(*detail::windowsImpl(*next));
    }
}

}  // namespace

std::shared_ptr<FileSystemIterator> OxaWindowsFileSystemDirectory::findContents(const String& pattern) const
{
    return find<OxaWindowsFileSystemIterator>(*this, pattern);
}

std::shared_ptr<DirectoryIterator> OxaWindowsFileSystemDirectory::findDirectories(const String& pattern) const
{
    return find<OxaWindowsFileSystemDirectoryIterator>(*this, pattern);
}

std::shared_ptr<FileIterator> OxaWindowsFileSystemDirectory::findFiles(const String& pattern) const
{
    return find<OxaWindowsFileSystemFileIterator>(*this, pattern);
}

std::vector<std::shared_ptr<const FileSystemItem>> OxaWindowsFileSystemDirectory::collectContents(const String& pattern,
                                                                                                  bool recursive) const
{
    std::vector<std::shared_ptr<const FileSystemItem>> items;
    const detail::ListScope scope;
    collectContentsInternal(items, pattern, recursive);
    return items;
}

std::vector<std::shared_ptr<const Directory>> OxaWindowsFileSystemDirectory::collectDirectories(const String& pattern,
                                                                                                bool recursive) const
{
    std::vector<std::shared_ptr<const Directory>> items;
    const detail::ListScope scope;
    collectDirectoriesInternal(items, pattern, recursive);
    return items;
}

std::vector<std::shared_ptr<const File>> OxaWindowsFileSystemDirectory::collectFiles(const String& pattern,
                                                                                     bool recursive) const
{
    std::vector<std::shared_ptr<const File>> items;
    const detail::ListScope scope;
    collectFilesInternal(items, pattern, recursive);
    return items;
}

void OxaWindowsFileSystemDirectory::collectContentsInternal(std::vector<std::shared_ptr<const FileSystemItem>>& items,
                                                            const String& pattern, bool recursive) const
{
    walk(*this, recursive,
         [&](const auto& directory)
         {
             appendDirectories(items, directory, pattern);
             appendFiles(items, directory, pattern);
         });
}

void OxaWindowsFileSystemDirectory::collectDirectoriesInternal(std::vector<std::shared_ptr<const Directory>>& items,
                                                               const String& pattern, bool recursive) const
{
    walk(*this, recursive, [&](const auto& directory) { appendDirectories(items, directory, pattern); });
}

void OxaWindowsFileSystemDirectory::collectFilesInternal(std::vector<std::shared_ptr<const File>>& items,
                                                         const String& pattern, bool recursive) const
{
    walk(*this, recursive, [&](const auto& directory) { appendFiles(items, directory, pattern); });
}

bool OxaWindowsFileSystemDirectory::isEmpty() const { return platform::isEmptyFolder(getFullNameUnicode()); }

}  // namespace Oxa_1_1
