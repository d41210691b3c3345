#include "base/platform/modules/module_loader.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <utility>

#include "base/platform/linux/files/file_bytes.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/modules/resource_store.h"

namespace Oxa_1_1::platform
{

namespace
{

std::string realPath(const char* path)
{
    const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(path, nullptr), &std::free);
    return resolved != nullptr ? resolved.get() : "";
}

/// The file that is mapped at an address, by its absolute path; empty when there is none.
std::string mappedFile(const void* address)
{
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
    {
        // begin-end rights offset device inode path
        char* end = nullptr;
        const std::uintptr_t first = std::strtoull(line.c_str(), &end, 16);
        const std::uintptr_t behind = *end == '-' ? std::strtoull(end + 1, nullptr, 16) : 0;
        const std::size_t path = line.find('/');
        if (wanted >= first && wanted < behind && path != std::string::npos) return line.substr(path);
    }
    return {};
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
    const auto* const entry = reinterpret_cast<const link_map*>(module);
    if (entry->l_name[0] == '/') return spellingOf(realPath(entry->l_name));
    // Loaded by a relative path, which the current folder may have left.
    return spellingOf(mappedFile(entry->l_ld));
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
