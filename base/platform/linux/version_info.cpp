#include "base/platform/version_info.h"

#include <algorithm>

#include "base/platform/linux/file_bytes.h"
#include "base/platform/linux/native_path.h"
#include "base/platform/linux/resource_store.h"
#include "base/platform/module_loader.h"
#include "base/platform/resources.h"
#include "base/platform/version_block.h"

namespace Oxa_1_1::platform
{

namespace
{

/// The one resource of the type for versions.
std::vector<std::byte> versionIn(const ResourceIndex& resources)
{
    const auto found = resources.find(ResourceKey::number(16), ResourceKey::number(1));
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
        const ResourceIndex* const resources = resourcesOf(module);
        if (resources != nullptr && moduleFileName(module) == realPath) return versionIn(*resources);
    }

    const auto bytes = readFileBytes(nativePathOf(path));
    if (!bytes) return {};
    const auto resources = ResourceIndex::fromPortableExecutable(*bytes);
    return resources ? versionIn(*resources) : std::vector<std::byte>();
}

std::optional<std::span<const std::byte>> queryVersionInfo(std::span<const std::byte> info, TextView query)
{
    return queryVersionValue(info, query);
}

}  // namespace Oxa_1_1::platform
