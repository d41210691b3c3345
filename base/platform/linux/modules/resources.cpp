#include "base/platform/modules/resources.h"

#include <memory>
#include <utility>

#include "base/platform/linux/modules/resource_store.h"
#include "base/platform/modules/indexed_resources.h"

namespace Oxa_1_1::platform
{

namespace
{

formats::ResourceIndex::Entries versionsOf(HINSTANCE module, const Char* type, const Char* name) noexcept
{
    const formats::ResourceIndex* const resources = resourcesOf(module);
    return resources != nullptr ? resourceVersions(*resources, type, name) : formats::ResourceIndex::Entries();
}

}  // namespace

void offerResources(HINSTANCE module, std::span<const std::byte> compiledScript)
{
    std::optional<formats::ResourceIndex> resources = formats::ResourceIndex::fromRes(compiledScript);
    if (resources) setResources(module, std::make_unique<const formats::ResourceIndex>(std::move(*resources)));
}

void withdrawResources(HINSTANCE module) noexcept { setResources(module, nullptr); }

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name) noexcept
{
    return preferredVersion(versionsOf(module, type, name));
}

HRSRC findResource(HINSTANCE module, const Char* type, const Char* name, std::uint16_t language) noexcept
{
    return versionIn(versionsOf(module, type, name), language);
}

std::vector<std::uint16_t> resourceLanguages(HINSTANCE module, const Char* type, const Char* name)
{
    return languagesOf(versionsOf(module, type, name));
}

std::span<const std::byte> resourceBytes(HINSTANCE, HRSRC resource) noexcept { return indexedBytes(resource); }

Text loadString(HINSTANCE module, unsigned int id)
{
    const formats::ResourceIndex* const resources = resourcesOf(module);
    return resources != nullptr ? indexedString(*resources, id) : Text();
}

}  // namespace Oxa_1_1::platform
