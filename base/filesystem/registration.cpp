// The registries, and the creators of the library itself in them. The order of the definitions counts.

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/items.h"
#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"

namespace Oxa_1_1
{

namespace
{

template <class T>
bool add(std::list<std::shared_ptr<const T>>& list, std::shared_ptr<const T>&& entry)
{
    if (std::ranges::find(list, entry) != list.end()) return false;
    list.push_back(std::move(entry));
    return true;
}

template <class T>
bool drop(std::list<std::shared_ptr<const T>>& list, const std::shared_ptr<const T>& entry)
{
    const auto found = std::ranges::find(list, entry);
    if (found == list.end()) return false;
    list.erase(found);
    return true;
}

class FileImplCreator final : public File::ImplCreator
{
   public:
    std::unique_ptr<IFileImpl> create(const Directory& directory, const String& name) const override
    {
        return OxaWindowsFileSystemFile::fromString(directory, name);
    }
    std::unique_ptr<IFileImpl> create(const String& path) const override
    {
        return OxaWindowsFileSystemFile::fromString(path);
    }
};

const auto ownDirectoryCreator =
    std::make_shared<const Directory::ImplCreator>([](const String& path) -> std::unique_ptr<IDirectoryImpl>
                                                   { return OxaWindowsFileSystemDirectory::fromString(path); });
const auto ownFileCreator = std::make_shared<const FileImplCreator>();

template <class List, class Entry>
bool isFirst(const List& list, const Entry& entry) noexcept
{
    return !list.empty() && list.front() == entry;
}

}  // namespace

std::list<std::shared_ptr<const Directory::ImplCreator>> Directory::creators;
std::list<std::shared_ptr<const File::ImplCreator>> File::creators;

bool Directory::registerImplCreator(std::shared_ptr<const ImplCreator> creator)
{
    return add(creators, std::move(creator));
}

bool Directory::unregisterImplCreator(const std::shared_ptr<const ImplCreator>& creator)
{
    return drop(creators, creator);
}

bool File::registerImplCreator(std::shared_ptr<const ImplCreator> creator) { return add(creators, std::move(creator)); }

bool File::unregisterImplCreator(const std::shared_ptr<const ImplCreator>& creator) { return drop(creators, creator); }

namespace
{

[[maybe_unused]] const bool isDirectoryCreatorRegistered = Directory::registerImplCreator(ownDirectoryCreator);
[[maybe_unused]] const bool isFileCreatorRegistered = File::registerImplCreator(ownFileCreator);

}  // namespace

bool detail::areOwnCreatorsFirst() noexcept
{
    return isFirst(Directory::creators, ownDirectoryCreator) && isFirst(File::creators, ownFileCreator);
}

}  // namespace Oxa_1_1
