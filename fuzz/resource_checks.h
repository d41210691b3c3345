#pragma once

#include <optional>
#include <utility>

#include "base/formats/resource_index.h"
#include "fuzz/outside_bytes.h"

namespace Oxa_1_1::fuzz
{

/// What holds of every index: its order, that all is found again, and that nothing lies outside of the file.
inline void checkResources(std::optional<formats::ResourceIndex> read, std::span<const std::byte> bytes)
{
    if (!read) return;
    const formats::ResourceIndex index = std::move(*read);
    const formats::ResourceEntry* last = nullptr;
    for (const formats::ResourceEntry& entry : index.entries())
    {
        require(isPartOf(entry.bytes, bytes));
        const auto found = index.find(entry.type, entry.name);
        require(&entry >= found.data() && &entry < found.data() + found.size());
        if (last != nullptr)
        {
            const int types = compare(last->type, entry.type);
            const int names = types != 0 ? types : compare(last->name, entry.name);
            require(names < 0 || (names == 0 && last->language < entry.language));
        }
        last = &entry;
    }
    for (unsigned id = 0; id < 0x10000; ++id)
        for (const formats::ResourceEntry& block : index.stringBlock(id))
        {
            require(block.type.id == formats::ResourceIndex::STRING_TYPE && block.name.id == id / 16 + 1);
            require(2 * formats::ResourceIndex::stringAt(block, id).size() <= block.bytes.size());
        }
}

}  // namespace Oxa_1_1::fuzz
