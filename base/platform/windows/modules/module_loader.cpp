#include "base/platform/modules/module_loader.h"

#include <string>

#include "base/platform/system/error_text.h"
#include "base/platform/windows/modules/data_files.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

HINSTANCE programModule() noexcept { return GetModuleHandleW(nullptr); }

HINSTANCE moduleOfAddress(const void* address) noexcept
{
    constexpr DWORD FLAGS = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HINSTANCE module = nullptr;
    return GetModuleHandleExW(FLAGS, static_cast<LPCWSTR>(address), &module) != 0 ? module : nullptr;
}

Text moduleFileName(HINSTANCE module)
{
    // A path that is cut fills the buffer.
    for (Text path(MAX_PATH, 0);; path.resize(2 * path.size()))
    {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size())
        {
            path.resize(length);
            return path;
        }
    }
}

Text longPathName(TextView path)
{
    const Text shortPath(path);
    Text result(MAX_PATH, 0);
    for (;;)
    {
        const DWORD length = GetLongPathNameW(shortPath.c_str(), result.data(), static_cast<DWORD>(result.size()));
        const bool fits = length < result.size();
        result.resize(length);
        if (fits) return result;
    }
}

HINSTANCE loadDataFile(TextView path) { return openDataFile(path); }

HINSTANCE loadModule(TextView path, Text& error)
{
    // What it depends on is looked for beside it, too.
    const bool isAbsolute = path.size() > 1 && (path[1] == L':' || path[1] == L'\\');
    const HINSTANCE module =
        LoadLibraryExW(Text(path).c_str(), nullptr, isAbsolute ? LOAD_WITH_ALTERED_SEARCH_PATH : 0);
    if (module != nullptr) return module;
    error = systemErrorText(GetLastError());
    while (!error.empty() && error.back() <= L' ') error.pop_back();
    return nullptr;
}

void* findSymbol(HINSTANCE module, const char* name) noexcept
{
    return reinterpret_cast<void*>(GetProcAddress(module, name));
}

void keepModule(HINSTANCE module) noexcept
{
    HMODULE ignored = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(module), &ignored);
}

void freeModule(HINSTANCE module) noexcept { closeDataFile(module); }

}  // namespace Oxa_1_1::platform
