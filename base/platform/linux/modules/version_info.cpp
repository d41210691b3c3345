#include "base/platform/modules/version_info.h"

#include "base/platform/linux/modules/resource_store.h"
#include "base/platform/modules/module_loader.h"
#include "base/platform/modules/resources.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The one resource of the type for versions.
std::vector<std::byte> versionIn(const formats::ResourceIndex& resources)
{
    const auto found = resources.find(formats::ResourceKey::number(16), formats::ResourceKey::number(1));
    return found.empty() ? std::vector<std::byte>()
                         : std::vector(found.front().bytes.begin(), found.front().bytes.end());
}

}  // namespace

std::vector<std::byte> readVersionInfo(TextView path)
{
    const Text realPath = longPathName(path);
    if (realPath.empty()) return {};
    for (const HINSTANCE module : modulesWithResources())
    {
        const formats::ResourceIndex* const resources = resourcesOf(module);
        if (resources != nullptr && moduleFileName(module) == realPath) return versionIn(*resources);
    }

    const HINSTANCE file = loadDataFile(path);
    if (file == nullptr) return {};
    std::vector<std::byte> version = versionIn(*resourcesOf(file));
    freeModule(file);
    return version;
}

}  // namespace Oxa_1_1::platform
