#include "base/platform/modules/resources.h"

#include <algorithm>

#include "base/platform/modules/indexed_resources.h"
#include "base/platform/windows/modules/data_files.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

// The system's loader knows the resources of its modules.
void offerResources(HINSTANCE, std::span<const std::byte>) {}
void withdrawResources(HINSTANCE) noexcept {}

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name) noexcept
{
    const formats::ResourceIndex* const file = resourcesOfDataFile(module);
    return file != nullptr ? preferredVersion(resourceVersions(*file, type, name)) : FindResourceW(module, name, type);
}

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name, std::uint16_t language) noexcept
{
    const formats::ResourceIndex* const file = resourcesOfDataFile(module);
    return file != nullptr ? versionIn(resourceVersions(*file, type, name), language)
                           : FindResourceExW(module, type, name, language);
}

std::vector<std::uint16_t> resourceLanguages(HINSTANCE module, const Char* type, const Char* name)
{
    if (const formats::ResourceIndex* const file = resourcesOfDataFile(module))
        return languagesOf(resourceVersions(*file, type, name));
    const auto collect = [](HMODULE, LPCWSTR, LPCWSTR, WORD language, LONG_PTR context) -> BOOL
    {
        reinterpret_cast<std::vector<std::uint16_t>*>(context)->push_back(language);
        return TRUE;
    };
    std::vector<std::uint16_t> languages;
    if (EnumResourceLanguagesW(module, type, name, collect, reinterpret_cast<LONG_PTR>(&languages)) == 0) return {};
    // A language may come from the module and again from a file of the system beside it.
    std::sort(languages.begin(), languages.end());
    languages.erase(std::unique(languages.begin(), languages.end()), languages.end());
    return languages;
}

std::span<const std::byte> resourceBytes(HINSTANCE module, HRSRC resource) noexcept
{
    if (resourcesOfDataFile(module) != nullptr) return indexedBytes(resource);
    const HGLOBAL loaded = LoadResource(module, resource);
    if (loaded == nullptr) return {};
    const DWORD size = SizeofResource(module, resource);
    const auto* const bytes = static_cast<const std::byte*>(LockResource(loaded));
    return bytes != nullptr ? std::span(bytes, size) : std::span<const std::byte>();
}

Text loadString(HINSTANCE module, unsigned int id)
{
    if (const formats::ResourceIndex* const file = resourcesOfDataFile(module)) return indexedString(*file, id);
    // The system looks at the low 16 bits only.
    if (id > 0xFFFF) return {};
    // With a size of 0 the call gives the text where it lies.
    const Char* text = nullptr;
    const int length = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
    return length > 0 ? Text(text, static_cast<std::size_t>(length)) : Text();
}

}  // namespace Oxa_1_1::platform
