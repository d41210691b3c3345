#include "base/formats/elf_file.h"

#include <algorithm>
#include <cstring>

#include "base/formats/elf_layout.h"
#include "base/formats/inflate.h"

namespace Oxa_1_1::formats
{

ElfFile::ElfFile(std::span<const std::uint8_t> bytes) : m_bytes(bytes)
{
    elf::Header head{};
    m_isValid = read(0, head) && std::equal(elf::MAGIC.begin(), elf::MAGIC.end(), head.e_ident.begin()) &&
                head.e_ident[elf::EI_CLASS] == elf::ELFCLASS64 && head.e_phentsize == sizeof(elf::ProgramHeader);
}

template <class T>
bool ElfFile::read(std::uint64_t offset, T& value) const
{
    if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof value) return false;
    std::memcpy(&value, m_bytes.data() + offset, sizeof value);
    return true;
}

std::string_view ElfFile::textAt(std::uint64_t offset) const
{
    if (offset >= m_bytes.size()) return {};
    const auto* const begin = reinterpret_cast<const char*>(m_bytes.data() + offset);
    const std::string_view rest(begin, m_bytes.size() - offset);
    return rest.substr(0, rest.find('\0'));
}

template <class Visit>
void ElfFile::forEachSection(Visit visit) const
{
    elf::Header head{};
    elf::SectionHeader names{};
    if (!m_isValid || !read(0, head) || head.e_shentsize != sizeof(elf::SectionHeader)) return;
    if (!read(head.e_shoff + std::uint64_t{head.e_shstrndx} * sizeof names, names)) return;
    for (std::uint64_t i = 0; i < head.e_shnum; ++i)
    {
        elf::SectionHeader section{};
        if (!read(head.e_shoff + i * sizeof section, section)) return;
        if (!visit(section, textAt(names.sh_offset + section.sh_name))) return;
    }
}

template <class Visit>
void ElfFile::forEachSegment(Visit visit) const
{
    elf::Header head{};
    if (!m_isValid || !read(0, head)) return;
    for (std::uint64_t i = 0; i < head.e_phnum; ++i)
    {
        elf::ProgramHeader segment{};
        if (!read(head.e_phoff + i * sizeof segment, segment)) return;
        if (!visit(segment)) return;
    }
}

bool ElfFile::hasSection(std::string_view name) const
{
    bool isThere = false;
    forEachSection(
        [&](const elf::SectionHeader& section, std::string_view sectionName)
        {
            isThere = sectionName == name && section.sh_type != elf::SHT_NOBITS && section.sh_size > 0;
            return !isThere;
        });
    return isThere;
}

Bytes ElfFile::section(std::string_view name, std::vector<std::byte>& unpacked) const
{
    Bytes found;
    bool isPacked = false;
    const auto take = [&](const elf::SectionHeader& section, std::string_view sectionName)
    {
        if (sectionName != name || section.sh_type == elf::SHT_NOBITS) return true;
        if (section.sh_offset > m_bytes.size() || section.sh_size > m_bytes.size() - section.sh_offset) return false;
        found = std::as_bytes(m_bytes.subspan(section.sh_offset, section.sh_size));
        isPacked = (section.sh_flags & elf::SHF_COMPRESSED) != 0;
        return false;
    };
    forEachSection(take);
    if (!isPacked) return found;
    elf::CompressionHeader head{};
    if (found.size() < sizeof head) return {};
    std::memcpy(&head, found.data(), sizeof head);
    if (head.ch_type != elf::ELFCOMPRESS_ZLIB) return {};
    unpacked = inflate(found.subspan(sizeof head), head.ch_size);
    return unpacked;
}

std::string ElfFile::buildId() const
{
    std::string id;
    const auto readNote = [&](const elf::SectionHeader& section, std::string_view name)
    {
        elf::NoteHeader note{};
        if (name != ".note.gnu.build-id" || !read(section.sh_offset, note)) return true;
        const std::uint64_t begin = section.sh_offset + sizeof note + (note.n_namesz + 3U) / 4 * 4;
        constexpr std::string_view DIGITS = "0123456789abcdef";
        std::uint8_t byte = 0;
        for (std::uint64_t i = 0; i < std::min(note.n_descsz, 64U) && read(begin + i, byte); ++i)
            id.append({DIGITS[byte >> 4], DIGITS[byte & 0xF]});
        return false;
    };
    forEachSection(readNote);
    return id;
}

std::uint64_t ElfFile::firstAddress() const
{
    constexpr std::uint64_t PAGE = 4096;
    std::uint64_t first = 0;
    forEachSegment(
        [&](const elf::ProgramHeader& segment)
        {
            if (segment.p_type != elf::PT_LOAD) return true;
            first = segment.p_vaddr / PAGE * PAGE;
            return false;
        });
    return first;
}

bool ElfFile::findUnwindIndex(std::uint64_t& offset, std::uint64_t& address) const
{
    bool isThere = false;
    forEachSegment(
        [&](const elf::ProgramHeader& segment)
        {
            isThere = segment.p_type == elf::PT_GNU_EH_FRAME && segment.p_offset < m_bytes.size();
            offset = segment.p_offset;
            address = segment.p_vaddr;
            return !isThere;
        });
    return isThere;
}

std::string_view ElfFile::functionAt(std::uint64_t address, std::uint64_t& begin) const
{
    std::string_view name;
    const auto search = [&](const elf::SectionHeader& section, std::string_view)
    {
        elf::Header head{};
        elf::SectionHeader names{};
        if (section.sh_type != elf::SHT_SYMTAB && section.sh_type != elf::SHT_DYNSYM) return true;
        if (!read(0, head) || !read(head.e_shoff + section.sh_link * sizeof names, names)) return true;
        elf::Symbol symbol{};
        const std::uint64_t size = std::min<std::uint64_t>(section.sh_size, m_bytes.size());
        for (std::uint64_t at = 0; at + sizeof symbol <= size && read(section.sh_offset + at, symbol);
             at += sizeof symbol)
        {
            if (symbol.type() != elf::STT_FUNC || address < symbol.st_value ||
                address - symbol.st_value >= symbol.st_size)
                continue;
            name = textAt(names.sh_offset + symbol.st_name);
            begin = symbol.st_value;
            return false;
        }
        return true;
    };
    forEachSection(search);
    return name;
}

}  // namespace Oxa_1_1::formats
