#include "base/filesystem/detail/items.h"

#include <type_traits>
#include <typeinfo>
#include <utility>

#include "base/filesystem/detail/item_memory.h"
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

template <class Item, class Final>
std::shared_ptr<Item> makeOwnItem(std::unique_ptr<Final> impl)
{
    return ItemMemory<Final>::template makeItem<Item>(std::move(impl));
}

template <class Item, class Final, class Base>
std::shared_ptr<Item> makeItemOf(std::unique_ptr<Base> impl)
{
    if (castToFinal<Final>(impl.get()) == nullptr) return std::make_shared<Item>(std::move(impl));
    return makeOwnItem<Item>(std::unique_ptr<Final>(static_cast<Final*>(impl.release())));
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
    return makeOwnItem<Directory>(std::make_unique<OxaWindowsFileSystemDirectory>(std::move(path)));
}

std::shared_ptr<File> makeFile(std::unique_ptr<OxaWindowsFileSystemFile> impl)
{
    return impl != nullptr ? makeOwnItem<File>(std::move(impl)) : nullptr;
}

std::shared_ptr<Directory> makeItem(std::unique_ptr<IDirectoryImpl> impl)
{
    return makeItemOf<Directory, OxaWindowsFileSystemDirectory>(std::move(impl));
}

std::shared_ptr<File> makeItem(std::unique_ptr<IFileImpl> impl)
{
    return makeItemOf<File, OxaWindowsFileSystemFile>(std::move(impl));
}

std::shared_ptr<File> makeFile(const OxaWindowsFileSystemFile& impl) { return makeFile(impl.duplicate()); }

}  // namespace Oxa_1_1::detail
