#include "base/module/resource_file.h"

#include "base/formats/resource_index.h"

namespace Oxa_1_1
{

namespace
{

String textOf(const formats::ResourceKey& key)
{
    return key.isText() ? String(key.name) : String(OXA_TEXT("#")) << key.id;
}

}  // namespace

std::optional<std::vector<ResourceInfo>> listResources(std::span<const std::byte> file)
{
    const auto index = formats::ResourceIndex::fromPortableExecutable(file);
    if (!index) return std::nullopt;
    std::vector<ResourceInfo> resources;
    resources.reserve(index->entries().size());
    for (const formats::ResourceEntry& entry : index->entries())
        resources.push_back({textOf(entry.type), textOf(entry.name), entry.language, entry.bytes.size()});
    return resources;
}

}  // namespace Oxa_1_1
