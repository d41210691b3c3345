// Compiled resource scripts: records of a header and the resource itself, each at an address that 4 divides.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/formats/bytes.h"
#include "base/formats/resource_index.h"
#include "base/formats/resource_list.h"

namespace Oxa_1_1::formats
{

namespace
{

/// What stands before the type and behind the name.
constexpr std::size_t SIZES = 8;
constexpr std::size_t ATTRIBUTES = 16;
constexpr std::size_t LANGUAGE_IN_ATTRIBUTES = 6;

/// The header of an empty record, which every file begins with.
constexpr std::size_t EMPTY_RECORD = 32;

constexpr std::uint16_t NUMBER_FOLLOWS = 0xFFFF;

/// Takes the type and the name from the front of a record's header.
class HeaderReader
{
   public:
    HeaderReader(Bytes header, ResourceList& list) : m_header(header), m_list(list) {}

    std::optional<ResourceKey> readKey()
    {
        if (!holds(m_header, m_offset, 4)) return std::nullopt;
        if (load16(m_header, m_offset) == NUMBER_FOLLOWS)
        {
            m_offset += 4;
            return ResourceKey::number(load16(m_header, m_offset - 2));
        }
        const Bytes rest = m_header.subspan(m_offset);
        const std::size_t length = textBytes(rest);
        if (!holds(rest, length, sizeof(Char))) return std::nullopt;
        m_offset += length + sizeof(Char);
        return m_list.addName(copyText(rest.first(length)));
    }

    std::optional<std::uint16_t> readLanguage() const
    {
        const std::size_t attributes = alignUp4(m_offset);
        if (!holds(m_header, attributes, ATTRIBUTES)) return std::nullopt;
        return load16(m_header, attributes + LANGUAGE_IN_ATTRIBUTES);
    }

   private:
    Bytes m_header;
    ResourceList& m_list;
    std::size_t m_offset = SIZES;
};

std::optional<ResourceEntry> readHeader(Bytes header, ResourceList& list)
{
    HeaderReader reader(header, list);
    const auto type = reader.readKey();
    if (!type) return std::nullopt;
    const auto name = reader.readKey();
    if (!name) return std::nullopt;
    const auto language = reader.readLanguage();
    if (!language) return std::nullopt;
    return ResourceEntry{.type = *type, .name = *name, .language = *language, .bytes = {}, .strings = nullptr};
}

/// Joined files have empty records between them, too.
bool isEmptyRecord(const ResourceEntry& entry)
{
    return entry.bytes.empty() && !entry.type.isText() && entry.type.id == 0;
}

bool beginsWithEmptyRecord(Bytes bytes)
{
    return holds(bytes, 0, EMPTY_RECORD) && load32(bytes, 0) == 0 && load32(bytes, 4) == EMPTY_RECORD &&
           load32(bytes, 8) == NUMBER_FOLLOWS && load32(bytes, 12) == NUMBER_FOLLOWS;
}

}  // namespace

std::optional<ResourceList> readRes(Bytes bytes)
{
    if (!beginsWithEmptyRecord(bytes)) return std::nullopt;
    ResourceList list;
    for (std::size_t offset = EMPTY_RECORD; holds(bytes, offset, 1);)
    {
        const Bytes record = bytes.subspan(offset);
        if (!holds(record, 0, SIZES)) return std::nullopt;
        const std::size_t dataSize = load32(record, 0);
        const std::size_t headerSize = load32(record, 4);
        if (!holds(record, headerSize, dataSize)) return std::nullopt;

        auto entry = readHeader(record.first(headerSize), list);
        if (!entry) return std::nullopt;
        entry->bytes = record.subspan(headerSize, dataSize);
        if (!isEmptyRecord(*entry)) list.entries.push_back(*entry);
        offset += alignUp4(headerSize + dataSize);
    }
    return list;
}

}  // namespace Oxa_1_1::formats
