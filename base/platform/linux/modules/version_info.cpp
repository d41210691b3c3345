#include "base/platform/modules/version_info.h"

#include <algorithm>

#include "base/formats/version_block.h"
#include "base/platform/linux/files/file_bytes.h"
#include "base/platform/linux/files/native_path.h"
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

    const auto bytes = readFileBytes(nativePathOf(path));
    if (!bytes) return {};
    const auto resources = formats::ResourceIndex::fromPortableExecutable(*bytes);
    return resources ? versionIn(*resources) : std::vector<std::byte>();
}

std::optional<std::span<const std::byte>> queryVersionInfo(std::span<const std::byte> info, TextView query)
{
    return formats::queryVersionValue(info, query);
}

}  // namespace Oxa_1_1::platform
