#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <type_traits>
#include <utility>

#include "base/filesystem/detail/folder_tree.h"
#include "base/filesystem/detail/held_reports.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/detail/folder_list.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_iterators.h"
#include "base/platform/files/files.h"

namespace Oxa_1_1
{

namespace
{

using detail::Kinds;

/// Null when nothing can be searched for in the folder.
std::shared_ptr<const Directory> searchable(const OxaWindowsFileSystemDirectory& directory, const String& pattern)
{
    return detail::checkSearchString(pattern) ? directory.makeAbsolute() : nullptr;
}

template <class Iterator>
std::shared_ptr<Iterator> find(const OxaWindowsFileSystemDirectory& directory, const String& pattern)
{
    const detail::ListScope scope;
    const auto absolute = searchable(directory, pattern);
    return absolute != nullptr ? std::make_shared<Iterator>(*absolute, pattern) : nullptr;
}

template <class Item>
using Items = std::vector<std::shared_ptr<const Item>>;

template <class Item>
class Appender final : public detail::ItemReceiver
{
   public:
    explicit Appender(Items<Item>& items) : m_items(items) {}
    void take(std::shared_ptr<const File> file) override { append(std::move(file)); }
    void take(std::shared_ptr<const Directory> directory, bool /*mayBeLink*/) override { append(std::move(directory)); }

   private:
    template <class Found>
    void append(std::shared_ptr<const Found>&& item)
    {
        if constexpr (std::is_convertible_v<const Found*, const Item*>) m_items.push_back(std::move(item));
    }

    Items<Item>& m_items;
};

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

/// In this folder and, if it is to be so, in all below it, each complete before the next one beside it: of each kind
/// what an iterator over it would give, without one.
void listByPaths(const OxaWindowsFileSystemDirectory& top, const String& pattern, std::span<const Kinds> kinds,
                 bool recursive, detail::ItemReceiver& receiver)
{
    Descent descent;
    const auto goInto = [&](const OxaWindowsFileSystemDirectory& directory)
    {
        for (const Kinds each : kinds)
            if (const auto absolute = searchable(directory, pattern))
                detail::listFolder(*absolute, pattern, each, receiver);
        const auto absolute = recursive ? directory.makeAbsolute() : nullptr;
        if (absolute == nullptr) return;
        const auto before = static_cast<std::ptrdiff_t>(descent.folders.size());
        detail::listFolder(*absolute, OXA_TEXT("*"), Kinds::DIRECTORIES, descent);
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

/// The absolute path of a folder whose tree can be listed from open folder to open folder; null for others.
detail::SharedDirectory pathOfOwnTree(const OxaWindowsFileSystemDirectory& directory)
{
    // What is reported here would be so again.
    const detail::HeldReports quiet;
    const auto absolute = directory.makeAbsolute();
    return absolute != nullptr ? detail::ItemMaker::pathOfOwnItems(*absolute) : nullptr;
}

template <class Item>
void collect(Items<Item>& items, const OxaWindowsFileSystemDirectory& directory, const String& pattern,
             std::span<const Kinds> kinds, bool recursive)
{
    Appender<Item> appender(items);
    if (const auto path = recursive ? pathOfOwnTree(directory) : nullptr)
        detail::listTree(path, pattern, kinds, appender);
    else
        listByPaths(directory, pattern, kinds, recursive, appender);
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
    collect(items, *this, pattern, std::array{Kinds::DIRECTORIES, Kinds::FILES}, recursive);
}

void OxaWindowsFileSystemDirectory::collectDirectoriesInternal(std::vector<std::shared_ptr<const Directory>>& items,
                                                               const String& pattern, bool recursive) const
{
    collect(items, *this, pattern, std::array{Kinds::DIRECTORIES}, recursive);
}

void OxaWindowsFileSystemDirectory::collectFilesInternal(std::vector<std::shared_ptr<const File>>& items,
                                                         const String& pattern, bool recursive) const
{
    collect(items, *this, pattern, std::array{Kinds::FILES}, recursive);
}

bool OxaWindowsFileSystemDirectory::isEmpty() const { return platform::isEmptyFolder(getFullNameUnicode()); }

}  // namespace Oxa_1_1
