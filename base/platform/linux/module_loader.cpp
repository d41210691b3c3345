#include "base/platform/module_loader.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "base/platform/linux/file_bytes.h"
#include "base/platform/linux/native_path.h"
#include "base/platform/linux/resource_store.h"

namespace Oxa_1_1::platform
{

namespace
{

std::string realPath(const char* path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path, nullptr), &std::free);
    return resolved != nullptr ? resolved.get() : "";
}

}  // namespace

HINSTANCE programModule() noexcept
{
    static const auto handle = static_cast<HINSTANCE>(dlopen(nullptr, RTLD_LAZY | RTLD_NOLOAD));
    return handle;
}

HINSTANCE moduleOfAddress(const void* address) noexcept
{
    Dl_info info{};
    void* map = nullptr;
    return dladdr1(address, &info, &map, RTLD_DL_LINKMAP) != 0 ? static_cast<HINSTANCE>(map) : nullptr;
}

Text moduleFileName(HINSTANCE module)
{
    if (module == nullptr || module == programModule()) return spellingOf(realPath("/proc/self/exe"));
    if (isDataFile(module)) return {};
    // A handle of the loader is the address of its entry in the list of loaded objects.
    return spellingOf(realPath(reinterpret_cast<const link_map*>(module)->l_name));
}

Text longPathName(TextView path) { return spellingOf(realPath(nativePathOf(path).c_str())); }

HINSTANCE loadDataFile(TextView path)
{
    std::optional<std::vector<std::byte>> bytes = readFileBytes(nativePathOf(path));
    return bytes ? openDataFile(std::move(*bytes)) : nullptr;
}

void freeModule(HINSTANCE module) noexcept
{
    if (isDataFile(module))
        closeDataFile(module);
    else
        dlclose(module);
}

}  // namespace Oxa_1_1::platform
