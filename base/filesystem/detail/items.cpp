#include "base/filesystem/detail/items.h"

#include <type_traits>
#include <typeinfo>
#include <utility>

#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"

namespace Oxa_1_1::detail
{

namespace
{

/// As dynamic_cast, which walks through bases even where there can be none below.
template <class Final, class Base>
const Final* castToFinal(const Base* impl) noexcept
{
    static_assert(std::is_final_v<Final>);
    return impl != nullptr && typeid(*impl) == typeid(Final) ? static_cast<const Final*>(impl) : nullptr;
}

}  // namespace

const OxaWindowsFileSystemDirectory* windowsImpl(const Directory& directory) noexcept
{
    return castToFinal<OxaWindowsFileSystemDirectory>(directory.getImpl());
}

const OxaWindowsFileSystemFile* windowsImpl(const File& file) noexcept
{
    return castToFinal<OxaWindowsFileSystemFile>(file.getImpl());
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
