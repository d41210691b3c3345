// The resources of programs and libraries for Windows: directories of types, of names and of languages.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/formats/bytes.h"
#include "base/formats/pe_file.h"
#include "base/formats/resource_index.h"
#include "base/formats/resource_list.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::size_t DIRECTORY_HEADER = 16;
constexpr std::size_t NAMED_COUNT = 12;
constexpr std::size_t NUMBERED_COUNT = 14;
constexpr std::size_t DIRECTORY_ENTRY = 8;
constexpr std::size_t DATA_ENTRY = 16;

/// Set in an entry's key when it is the offset of a name, and in its target when that is a directory.
constexpr std::uint32_t HIGH_BIT = 0x80000000;

class DirectoryReader
{
   public:
    /// Directories may be shared and names may overlap, so what they come to is bounded by the size of the file.
    DirectoryReader(const PeFile& file, std::size_t fileSize)
        : m_file(file),
          m_bytes(file.from(file.resources())),
          m_entriesLeft(fileSize / DIRECTORY_ENTRY),
          m_nameBytesLeft(fileSize)
    {
    }

    std::optional<ResourceList> read()
    {
        const bool whole = forEachEntry(HIGH_BIT, [this](Entry type) { return readType(type); });
        if (!whole) return std::nullopt;
        return std::move(m_list);
    }

   private:
    struct Entry
    {
        std::uint32_t key;
        std::uint32_t target;
    };

    /// Calls visit(entry) for the entries of a directory until it says no.
    template <class Visit>
    bool forEachEntry(std::uint32_t target, const Visit& visit)
    {
        const std::size_t directory = target & ~HIGH_BIT;
        if ((target & HIGH_BIT) == 0 || !holds(m_bytes, directory, DIRECTORY_HEADER)) return false;
        const std::size_t count =
            std::size_t{load16(m_bytes, directory + NAMED_COUNT)} + load16(m_bytes, directory + NUMBERED_COUNT);
        const std::size_t first = directory + DIRECTORY_HEADER;
        if (!holds(m_bytes, first, count * DIRECTORY_ENTRY) || count > m_entriesLeft) return false;
        m_entriesLeft -= count;

        for (std::size_t i = 0; i < count; ++i)
        {
            const std::size_t entry = first + i * DIRECTORY_ENTRY;
            if (!visit(Entry{load32(m_bytes, entry), load32(m_bytes, entry + 4)})) return false;
        }
        return true;
    }

    bool readType(Entry type)
    {
        const auto key = readKey(type.key);
        return key && forEachEntry(type.target, [this, &key](Entry name) { return readName(*key, name); });
    }

    bool readName(const ResourceKey& type, Entry name)
    {
        const auto key = readKey(name.key);
        return key && forEachEntry(name.target, [&](Entry language) { return readLanguage(type, *key, language); });
    }

    bool readLanguage(const ResourceKey& type, const ResourceKey& name, Entry language)
    {
        if (((language.key | language.target) & HIGH_BIT) != 0) return false;
        if (!holds(m_bytes, language.target, DATA_ENTRY)) return false;
        const Bytes data = m_file.from(load32(m_bytes, language.target));
        const std::size_t size = load32(m_bytes, language.target + 4);
        if (holds(data, 0, size))
            m_list.entries.push_back({type, name, static_cast<std::uint16_t>(language.key), data.first(size), nullptr});
        return true;
    }

    /// Each name is copied once, however many entries share it.
    std::optional<ResourceKey> readKey(std::uint32_t key)
    {
        if ((key & HIGH_BIT) == 0) return ResourceKey::number(key & 0xFFFF);
        const auto known = m_names.find(key);
        if (known != m_names.end()) return known->second;

        const std::size_t offset = key & ~HIGH_BIT;
        if (!holds(m_bytes, offset, 2)) return std::nullopt;
        const std::size_t size = load16(m_bytes, offset) * sizeof(Char);
        if (!holds(m_bytes, offset + 2, size) || size > m_nameBytesLeft) return std::nullopt;
        m_nameBytesLeft -= size;
        return m_names.emplace(key, m_list.addName(copyText(m_bytes.subspan(offset + 2, size)))).first->second;
    }

    const PeFile& m_file;
    Bytes m_bytes;
    std::size_t m_entriesLeft;
    std::size_t m_nameBytesLeft;
    std::unordered_map<std::uint32_t, ResourceKey> m_names;
    ResourceList m_list;
};

}  // namespace

std::optional<ResourceList> readPortableExecutable(Bytes bytes)
{
    const auto file = PeFile::read(bytes);
    if (!file) return std::nullopt;
    if (file->resources() == 0) return ResourceList();
    return DirectoryReader(*file, bytes.size()).read();
}

}  // namespace Oxa_1_1::formats
