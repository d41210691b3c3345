#include <utility>

#include "base/filesystem/detail/folder_list.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_iterators.h"
#include "base/platform/files.h"

namespace Oxa_1_1
{

namespace
{

template <class Iterator>
std::shared_ptr<Iterator> find(const OxaWindowsFileSystemDirectory& directory, const String& pattern)
{
    if (!detail::isValidSearchString(pattern))
    {
        detail::reportText(OXA_TEXT("The file or directory search string '%ls' contains invalid characters."), pattern);
        return nullptr;
    }
    const auto absolute = directory.makeAbsolute();
    return absolute != nullptr ? std::make_shared<Iterator>(*absolute, pattern) : nullptr;
}

template <class Item, class Source>
void append(std::vector<std::shared_ptr<const Item>>& items, const std::shared_ptr<Source>& source)
{
    for (const auto& item : source) items.push_back(item);
}

/// Goes on in every folder that lies in this one.
template <class Collect>
void descend(const OxaWindowsFileSystemDirectory& directory, Collect collect)
{
    for (const auto& below : directory.findDirectories(OXA_TEXT("*")))
    {
        const auto* const impl = detail::windowsImpl(*below);
        if (impl != nullptr && !detail::leadsToAncestor(*impl)) collect(*impl);
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
    collectContentsInternal(items, pattern, recursive);
    return items;
}

std::vector<std::shared_ptr<const Directory>> OxaWindowsFileSystemDirectory::collectDirectories(const String& pattern,
                                                                                                bool recursive) const
{
    std::vector<std::shared_ptr<const Directory>> items;
    collectDirectoriesInternal(items, pattern, recursive);
    return items;
}

std::vector<std::shared_ptr<const File>> OxaWindowsFileSystemDirectory::collectFiles(const String& pattern,
                                                                                     bool recursive) const
{
    std::vector<std::shared_ptr<const File>> items;
    collectFilesInternal(items, pattern, recursive);
    return items;
}

void OxaWindowsFileSystemDirectory::collectContentsInternal(std::vector<std::shared_ptr<const FileSystemItem>>& items,
                                                            const String& pattern, bool recursive) const
{
    append(items, findDirectories(pattern));
    append(items, findFiles(pattern));
    if (!recursive) return;
    descend(*this, [&](const auto& below) { below.collectContentsInternal(items, pattern, true); });
}

void OxaWindowsFileSystemDirectory::collectDirectoriesInternal(std::vector<std::shared_ptr<const Directory>>& items,
                                                               const String& pattern, bool recursive) const
{
    append(items, findDirectories(pattern));
    if (!recursive) return;
    descend(*this, [&](const auto& below) { below.collectDirectoriesInternal(items, pattern, true); });
}

void OxaWindowsFileSystemDirectory::collectFilesInternal(std::vector<std::shared_ptr<const File>>& items,
                                                         const String& pattern, bool recursive) const
{
    append(items, findFiles(pattern));
    if (!recursive) return;
    descend(*this, [&](const auto& below) { below.collectFilesInternal(items, pattern, true); });
}

bool OxaWindowsFileSystemDirectory::isEmpty() const { return platform::isEmptyFolder(getFullNameUnicode()); }

}  // namespace Oxa_1_1
