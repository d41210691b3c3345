#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <vector>

#include "base/char.h"

/// Resources in files of either kind that carries them, read without the system.
namespace Oxa_1_1::formats
{

struct ResourceList;

inline constexpr unsigned STRINGS_IN_BLOCK = 16;

/// Where in a block of strings each one begins, in units.
using StringOffsets = std::array<std::uint16_t, STRINGS_IN_BLOCK>;

/// A name or a type of a resource: a number or a text.
struct ResourceKey
{
    std::uint16_t id = 0;
    /// Has data, be it of length zero, when the key is a text.
    TextView name;

    static constexpr ResourceKey number(unsigned id) { return {static_cast<std::uint16_t>(id), {}}; }
    static constexpr ResourceKey text(TextView name)
    {
        return {0, name.data() == nullptr ? TextView(OXA_TEXT("")) : name};
    }

    constexpr bool isText() const { return name.data() != nullptr; }
};

/// Below, equal or above zero. Numbers stand before texts, and texts compare without case.
int compare(const ResourceKey& a, const ResourceKey& b) noexcept;

struct ResourceEntry
{
    ResourceKey type;
    ResourceKey name;
    std::uint16_t language = 0;
    std::span<const std::byte> bytes;
    /// Of blocks of strings only, and owned by the index.
    const StringOffsets* strings = nullptr;
};

/// The resources of a file. Its bytes are not copied and have to outlive the index; names are.
///
/// A file whose directory is broken has no index. A resource whose bytes lie outside the file is left out. Of
/// resources with the same type, name and language the first counts.
class ResourceIndex
{
   public:
    using Entries = std::span<const ResourceEntry>;

    /// The types that the index itself knows.
    static constexpr unsigned STRING_TYPE = 6;

    ResourceIndex(ResourceIndex&&) = default;
    ResourceIndex& operator=(ResourceIndex&&) = default;
    ResourceIndex(const ResourceIndex&) = delete;
    ResourceIndex& operator=(const ResourceIndex&) = delete;
    ~ResourceIndex() = default;

    /// The resources of a compiled resource script (.res). Empty for bytes that are none.
    static std::optional<ResourceIndex> fromRes(std::span<const std::byte> bytes);

    /// The resources of a program or library for Windows (32 or 64 bit), as it lies in a file. Empty for bytes that
    /// are none; one without resources has an index without entries.
    static std::optional<ResourceIndex> fromPortableExecutable(std::span<const std::byte> bytes);

    /// All resources by type, name, language.
    Entries entries() const { return m_entries; }

    /// All language versions of one resource, ascending by language.
    Entries find(const ResourceKey& type, const ResourceKey& name) const;

    /// The language versions of the block of strings that `id` belongs to, looked up without a search.
    Entries stringBlock(unsigned id) const
    {
        const std::size_t block = id / STRINGS_IN_BLOCK;
        if (block + 1 >= m_blocks.size()) return {};
        return Entries(m_entries).subspan(m_blocks[block], m_blocks[block + 1] - m_blocks[block]);
    }

    /// A copy of the text `id` in its block, empty when the block has none.
    static Text stringAt(const ResourceEntry& block, unsigned id);

   private:
    explicit ResourceIndex(ResourceList&& list);
    static std::optional<ResourceIndex> from(std::optional<ResourceList>&& list);

    void indexStrings();

    std::vector<ResourceEntry> m_entries;
    /// What the keys of the entries refer to.
    std::deque<Text> m_names;
    std::vector<StringOffsets> m_strings;
    /// Block i is the entries from m_blocks[i] to m_blocks[i + 1].
    std::vector<std::uint32_t> m_blocks;
};

}  // namespace Oxa_1_1::formats
