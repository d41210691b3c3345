#include "base/formats/coff_file.h"

#include <algorithm>
#include <charconv>

#include "base/formats/byte_reader.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::uint16_t DOS_SIGNATURE = 0x5A4D;
constexpr std::size_t PE_HEADER_OFFSET = 60;
constexpr std::uint32_t PE_SIGNATURE = 0x4550;
constexpr std::uint16_t MAGIC_64 = 0x20B;
constexpr std::size_t IMAGE_BASE = 24;

constexpr std::uint32_t SECTION_HOLDS_CODE = 0x20;

constexpr std::size_t SYMBOL = 18;
constexpr std::size_t SHORT_NAME = 8;
constexpr std::uint16_t FUNCTION_TYPE = 0x20;
constexpr std::uint8_t EXTERNAL = 2;

std::string_view shortName(Bytes bytes)
{
    const std::string_view name(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return name.substr(0, name.find('\0'));
}

}  // namespace

std::optional<CoffFile> CoffFile::read(Bytes bytes)
{
    ByteReader reader(bytes);
    if (reader.read<std::uint16_t>() != DOS_SIGNATURE) return std::nullopt;
    reader.moveTo(PE_HEADER_OFFSET);
    reader.moveTo(reader.read<std::uint32_t>());
    if (reader.read<std::uint32_t>() != PE_SIGNATURE) return std::nullopt;
    reader.skip(2);
    const auto sectionCount = reader.read<std::uint16_t>();
    reader.skip(4);
    const auto symbols = reader.read<std::uint32_t>();
    const auto symbolCount = reader.read<std::uint32_t>();
    const auto optionalSize = reader.read<std::uint16_t>();
    reader.skip(2);
    ByteReader optional(reader.take(optionalSize));
    if (!reader.ok() || optional.read<std::uint16_t>() != MAGIC_64) return std::nullopt;

    CoffFile file;
    optional.moveTo(IMAGE_BASE);
    file.m_imageBase = optional.read<std::uint64_t>();
    // Names of sections may stand behind the symbols.
    file.readSymbolTable(bytes, symbols, symbolCount);
    file.readSections(bytes, reader.offset(), sectionCount);
    return file;
}

void CoffFile::readSymbolTable(Bytes bytes, std::uint32_t offset, std::uint32_t count)
{
    const std::uint64_t size = std::uint64_t{count} * SYMBOL;
    ByteReader reader(bytes, offset);
    if (offset == 0 || !reader.ok() || size > reader.left()) return;
    m_symbols = reader.take(size);
    const std::size_t names = reader.offset();
    // The length of the names counts itself.
    const auto length = reader.read<std::uint32_t>();
    m_names = bytes.subspan(names, std::min<std::size_t>(length, bytes.size() - names));
}

void CoffFile::readSections(Bytes bytes, std::size_t offset, std::size_t count)
{
    ByteReader reader(bytes, offset);
    for (std::size_t i = 0; i < count; ++i)
    {
        Section section{};
        section.name = shortName(reader.take(SHORT_NAME));
        const auto size = reader.read<std::uint32_t>();
        section.address = reader.read<std::uint32_t>();
        const auto sizeInFile = reader.read<std::uint32_t>();
        const auto place = reader.read<std::uint32_t>();
        reader.skip(12);
        section.isCode = (reader.read<std::uint32_t>() & SECTION_HOLDS_CODE) != 0;
        if (!reader.ok()) return;
        std::uint64_t longNameAt = 0;
        if (section.name.starts_with('/'))
        {
            const std::string_view digits = section.name.substr(1);
            std::from_chars(digits.data(), digits.data() + digits.size(), longNameAt);
            section.name = longName(longNameAt);
        }
        section.size = std::max(size, sizeInFile);
        // In the file sections are filled up with zeros.
        if (place < bytes.size())
            section.bytes = bytes.subspan(
                place,
                std::min<std::size_t>(size == 0 ? sizeInFile : std::min(size, sizeInFile), bytes.size() - place));
        m_sections.push_back(section);
    }
}

std::string_view CoffFile::longName(std::uint64_t offset) const { return ByteReader(m_names, offset).text(); }

Bytes CoffFile::section(std::string_view name) const
{
    const auto found = std::find_if(m_sections.begin(), m_sections.end(),
                                    [name](const Section& section) { return section.name == name; });
    return found == m_sections.end() ? Bytes() : found->bytes;
}

std::string_view CoffFile::functionAt(std::uint32_t address, std::uint32_t& begin) const
{
    const auto section = std::find_if(m_sections.begin(), m_sections.end(),
                                      [address](const Section& s)
                                      { return s.isCode && address >= s.address && address - s.address < s.size; });
    if (section == m_sections.end()) return {};
    const auto number = static_cast<std::uint16_t>(section - m_sections.begin() + 1);
    const std::uint32_t offset = address - section->address;
    // Functions have no length here: the last one that begins at or before the address is the one.
    std::string_view name;
    std::uint32_t best = 0;
    for (ByteReader reader(m_symbols); !reader.atEnd();)
    {
        const Bytes nameBytes = reader.take(SHORT_NAME);
        const auto value = reader.read<std::uint32_t>();
        const bool isHere = reader.read<std::uint16_t>() == number;
        const bool isFunction = reader.read<std::uint16_t>() == FUNCTION_TYPE;
        const bool isExternal = reader.read<std::uint8_t>() == EXTERNAL;
        reader.skip(std::uint64_t{reader.read<std::uint8_t>()} * SYMBOL);
        if (!isHere || !(isFunction || isExternal) || value > offset || (value < best && !name.empty())) continue;
        const std::string_view found =
            load32(nameBytes, 0) == 0 ? longName(load32(nameBytes, 4)) : shortName(nameBytes);
        if (found.empty() || (value == best && !name.empty() && !isFunction)) continue;
        name = found;
        best = value;
    }
    begin = section->address + best;
    return name;
}

}  // namespace Oxa_1_1::formats
