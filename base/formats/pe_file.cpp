#include "base/formats/pe_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::uint16_t DOS_SIGNATURE = 0x5A4D;
constexpr std::size_t DOS_HEADER = 64;
constexpr std::size_t PE_HEADER_OFFSET = 60;

constexpr std::uint32_t PE_SIGNATURE = 0x4550;
constexpr std::size_t PE_HEADER = 24;
constexpr std::size_t SECTION_COUNT = 6;
constexpr std::size_t OPTIONAL_HEADER_SIZE = 20;

constexpr std::uint16_t MAGIC_32 = 0x10B;
constexpr std::uint16_t MAGIC_64 = 0x20B;
/// Where the count of the directories stands; they follow it.
constexpr std::size_t DIRECTORIES_32 = 92;
constexpr std::size_t DIRECTORIES_64 = 108;
constexpr std::uint32_t RESOURCE_DIRECTORY = 2;
constexpr std::size_t DIRECTORY_SIZE = 8;

constexpr std::size_t SECTION_HEADER = 40;
constexpr std::size_t SECTION_ADDRESS = 12;
constexpr std::size_t SECTION_SIZE = 16;
constexpr std::size_t SECTION_OFFSET = 20;

}  // namespace

std::optional<PeFile> PeFile::read(Bytes bytes)
{
    PeFile file;
    if (!file.readHeaders(bytes)) return std::nullopt;
    return file;
}

Bytes PeFile::from(std::uint32_t address) const
{
    const auto behind = std::upper_bound(m_sections.begin(), m_sections.end(), address,
                                         [](std::uint32_t a, const Section& section) { return a < section.address; });
    if (behind == m_sections.begin()) return {};
    const Section& section = *(behind - 1);
    const std::size_t offset = address - section.address;
    return offset < section.bytes.size() ? section.bytes.subspan(offset) : Bytes();
}

bool PeFile::readHeaders(Bytes bytes)
{
    if (!holds(bytes, 0, DOS_HEADER) || load16(bytes, 0) != DOS_SIGNATURE) return false;
    const std::size_t header = load32(bytes, PE_HEADER_OFFSET);
    if (!holds(bytes, header, PE_HEADER) || load32(bytes, header) != PE_SIGNATURE) return false;

    const std::size_t optionalHeader = header + PE_HEADER;
    const std::size_t optionalSize = load16(bytes, header + OPTIONAL_HEADER_SIZE);
    const std::size_t tableSize = load16(bytes, header + SECTION_COUNT) * SECTION_HEADER;
    if (!holds(bytes, optionalHeader, optionalSize + tableSize)) return false;

    const Bytes optional = bytes.subspan(optionalHeader, optionalSize);
    if (!holds(optional, 0, 2)) return false;
    const std::uint16_t magic = load16(optional, 0);
    if (magic != MAGIC_32 && magic != MAGIC_64) return false;
    readResourceAddress(optional.subspan(std::min(optionalSize, magic == MAGIC_32 ? DIRECTORIES_32 : DIRECTORIES_64)));
    readSections(bytes, bytes.subspan(optionalHeader + optionalSize, tableSize));
    return true;
}

void PeFile::readResourceAddress(Bytes directories)
{
    const std::size_t directory = 4 + RESOURCE_DIRECTORY * DIRECTORY_SIZE;
    if (!holds(directories, directory, DIRECTORY_SIZE) || load32(directories, 0) <= RESOURCE_DIRECTORY) return;
    m_resources = load32(directories, directory);
}

void PeFile::readSections(Bytes bytes, Bytes table)
{
    for (; !table.empty(); table = table.subspan(SECTION_HEADER))
    {
        const std::size_t offset = load32(table, SECTION_OFFSET);
        const std::size_t size = load32(table, SECTION_SIZE);
        if (size == 0 || offset >= bytes.size()) continue;
        // A cut file keeps what is there of its last section.
        m_sections.push_back(
            {load32(table, SECTION_ADDRESS), bytes.subspan(offset, std::min(size, bytes.size() - offset))});
    }
    std::stable_sort(m_sections.begin(), m_sections.end(),
                     [](const Section& a, const Section& b) { return a.address < b.address; });
}

}  // namespace Oxa_1_1::formats
