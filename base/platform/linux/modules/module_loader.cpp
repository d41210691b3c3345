#include "base/platform/modules/module_loader.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/modules/resource_store.h"
#include "base/platform/system/error_text.h"
#include "base/platform/system/last_error.h"
#include "base/platform/system/system_info.h"

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

HINSTANCE loadDataFile(TextView path) { return openDataFile(nativePathOf(path)); }

HINSTANCE loadModule(TextView path, Text& error)
{
    const std::string file = nativePathOf(path);
    if (file.empty())
    {
        // Which the loader takes for the program.
        error = systemErrorText(INVALID_PARAMETER);
        return nullptr;
    }
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) error = decodeNarrow(dlerror());
    return static_cast<HINSTANCE>(handle);
}

void* findSymbol(HINSTANCE module, const char* name) noexcept { return dlsym(module, name); }

void keepModule(HINSTANCE module) noexcept
{
    const auto* const entry = reinterpret_cast<const link_map*>(module);
    dlopen(entry->l_name, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

void freeModule(HINSTANCE module) noexcept
{
    if (isDataFile(module))
        closeDataFile(module);
    else
        dlclose(module);
}

}  // namespace Oxa_1_1::platform
