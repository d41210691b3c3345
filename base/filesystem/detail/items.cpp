#include "base/filesystem/detail/items.h"

#include <utility>

#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"

namespace Oxa_1_1::detail
{

const OxaWindowsFileSystemDirectory* windowsImpl(const Directory& directory) noexcept
{
    return dynamic_cast<const OxaWindowsFileSystemDirectory*>(directory.getImpl());
}

const OxaWindowsFileSystemFile* windowsImpl(const File& file) noexcept
{
    return dynamic_cast<const OxaWindowsFileSystemFile*>(file.getImpl());
}

std::shared_ptr<Directory> makeDirectory(SharedDirectory path)
{
    if (path == nullptr) return nullptr;
    return std::make_shared<Directory>(std::make_unique<OxaWindowsFileSystemDirectory>(std::move(path)));
}

std::shared_ptr<File> makeFile(std::unique_ptr<OxaWindowsFileSystemFile> impl)
{
    return impl != nullptr ? std::make_shared<File>(std::move(impl)) : nullptr;
}

std::shared_ptr<File> makeFile(const OxaWindowsFileSystemFile& impl) { return makeFile(impl.duplicate()); }

}  // namespace Oxa_1_1::detail
