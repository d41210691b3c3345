#include "base/formats/resource_index.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/formats/bytes.h"
#include "base/formats/resource_list.h"
#include "base/text/scan.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr unsigned BLOCK_COUNT = 0x10000 / STRINGS_IN_BLOCK;

/// For a string that begins too far behind for its place, or not at all.
constexpr std::uint16_t NO_OFFSET = 0xFFFF;

bool isStringBlock(const ResourceEntry& entry)
{
    return !entry.type.isText() && entry.type.id == ResourceIndex::STRING_TYPE && !entry.name.isText() &&
           entry.name.id > 0 && entry.name.id <= BLOCK_COUNT;
}

StringOffsets offsetsOf(Bytes block)
{
    StringOffsets offsets;
    offsets.fill(NO_OFFSET);
    std::size_t offset = 0;
    for (std::uint16_t& place : offsets)
    {
        if (!holds(block, offset * sizeof(Char), sizeof(Char)) || offset >= NO_OFFSET) break;
        place = static_cast<std::uint16_t>(offset);
        offset += 1 + std::size_t{load16(block, offset * sizeof(Char))};
    }
    return offsets;
}

/// Where a string begins, by going over those before it. Beyond the end when it does not.
std::size_t searchString(Bytes block, unsigned index)
{
    std::size_t offset = 0;
    for (; index > 0 && holds(block, offset, sizeof(Char)); --index)
        offset += sizeof(Char) * (1 + std::size_t{load16(block, offset)});
    return offset;
}

std::size_t beginOfString(const ResourceEntry& block, unsigned index)
{
    if (block.strings == nullptr || (*block.strings)[index] == NO_OFFSET) return searchString(block.bytes, index);
    return (*block.strings)[index] * sizeof(Char);
}

struct ByTypeAndName
{
    bool operator()(const ResourceEntry& a, const ResourceEntry& b) const
    {
        const int types = compare(a.type, b.type);
        return types != 0 ? types < 0 : compare(a.name, b.name) < 0;
    }
};

}  // namespace

int compare(const ResourceKey& a, const ResourceKey& b) noexcept
{
    if (a.isText() != b.isText()) return a.isText() ? 1 : -1;
    if (!a.isText()) return a.id - b.id;
    const int units =
        text::compareUnitsIgnoreCase(a.name.data(), b.name.data(), std::min(a.name.size(), b.name.size()));
    if (units != 0 || a.name.size() == b.name.size()) return units;
    return a.name.size() < b.name.size() ? -1 : 1;
}

ResourceIndex::ResourceIndex(ResourceList&& list)
{
    list.sort();
    m_entries = std::move(list.entries);
    m_names = std::move(list.names);
    indexStrings();
}

std::optional<ResourceIndex> ResourceIndex::from(std::optional<ResourceList>&& list)
{
    if (!list) return std::nullopt;
    return ResourceIndex(*std::move(list));
}

std::optional<ResourceIndex> ResourceIndex::fromRes(std::span<const std::byte> bytes) { return from(readRes(bytes)); }

std::optional<ResourceIndex> ResourceIndex::fromPortableExecutable(std::span<const std::byte> bytes)
{
    return from(readPortableExecutable(bytes));
}

void ResourceIndex::indexStrings()
{
    const auto first = std::find_if(m_entries.begin(), m_entries.end(), isStringBlock);
    const auto last = std::find_if_not(first, m_entries.end(), isStringBlock);
    if (first == last) return;

    // They may not move again: the entries refer to them.
    m_strings.reserve(static_cast<std::size_t>(last - first));
    m_blocks.reserve(std::size_t{(last - 1)->name.id} + 1);
    for (auto entry = first; entry != last; ++entry)
    {
        const auto index = static_cast<std::uint32_t>(entry - m_entries.begin());
        m_blocks.resize(std::max<std::size_t>(m_blocks.size(), entry->name.id), index);
        entry->strings = &m_strings.emplace_back(offsetsOf(entry->bytes));
    }
    m_blocks.push_back(static_cast<std::uint32_t>(last - m_entries.begin()));
}

ResourceIndex::Entries ResourceIndex::find(const ResourceKey& type, const ResourceKey& name) const
{
    const ResourceEntry wanted{.type = type, .name = name, .language = 0, .bytes = {}, .strings = nullptr};
    const auto [first, last] = std::equal_range(m_entries.begin(), m_entries.end(), wanted, ByTypeAndName());
    return {first, last};
}

Text ResourceIndex::stringAt(const ResourceEntry& block, unsigned id)
{
    const std::size_t begin = beginOfString(block, id % STRINGS_IN_BLOCK);
    if (!holds(block.bytes, begin, sizeof(Char))) return {};
    const std::size_t size = sizeof(Char) * load16(block.bytes, begin);
    if (!holds(block.bytes, begin + sizeof(Char), size)) return {};
    return copyText(block.bytes.subspan(begin + sizeof(Char), size));
}

}  // namespace Oxa_1_1::formats
