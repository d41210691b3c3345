#include "base/platform/linux/elf_file.h"

#include <elf.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace Oxa_1_1::platform
{

namespace
{

std::span<const std::uint8_t> mapFile(const std::string& name)
{
    const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return {};
    struct stat status = {};
    void* memory = MAP_FAILED;
    if (::fstat(file, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0)
        memory = ::mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_PRIVATE, file, 0);
    ::close(file);
    if (memory == MAP_FAILED) return {};
    return {static_cast<const std::uint8_t*>(memory), static_cast<std::size_t>(status.st_size)};
}

}  // namespace

MappedFile::MappedFile(const std::string& file) : m_bytes(mapFile(file)) {}

MappedFile::MappedFile(MappedFile&& other) noexcept : m_bytes(std::exchange(other.m_bytes, {})) {}

MappedFile::~MappedFile()
{
    if (!m_bytes.empty()) ::munmap(const_cast<std::uint8_t*>(m_bytes.data()), m_bytes.size());
}

ElfFile::ElfFile(std::span<const std::uint8_t> bytes) : m_bytes(bytes)
{
    Elf64_Ehdr head{};
    m_isValid = read(0, head) && std::memcmp(head.e_ident, ELFMAG, SELFMAG) == 0 &&
                head.e_ident[EI_CLASS] == ELFCLASS64 && head.e_phentsize == sizeof(Elf64_Phdr);
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
    return {begin, ::strnlen(begin, m_bytes.size() - offset)};
}

template <class Visit>
void ElfFile::forEachSection(Visit visit) const
{
    Elf64_Ehdr head{};
    Elf64_Shdr names{};
    if (!m_isValid || !read(0, head) || head.e_shentsize != sizeof(Elf64_Shdr)) return;
    if (!read(head.e_shoff + std::uint64_t{head.e_shstrndx} * sizeof names, names)) return;
    for (std::uint64_t i = 0; i < head.e_shnum; ++i)
    {
        Elf64_Shdr section{};
        if (!read(head.e_shoff + i * sizeof section, section)) return;
        if (!visit(section, textAt(names.sh_offset + section.sh_name))) return;
    }
}

template <class Visit>
void ElfFile::forEachSegment(Visit visit) const
{
    Elf64_Ehdr head{};
    if (!m_isValid || !read(0, head)) return;
    for (std::uint64_t i = 0; i < head.e_phnum; ++i)
    {
        Elf64_Phdr segment{};
        if (!read(head.e_phoff + i * sizeof segment, segment)) return;
        if (!visit(segment)) return;
    }
}

bool ElfFile::hasSection(std::string_view name) const
{
    bool isThere = false;
    forEachSection(
        [&](const Elf64_Shdr& section, std::string_view sectionName)
        {
            isThere = sectionName == name && section.sh_type != SHT_NOBITS && section.sh_size > 0;
            return !isThere;
        });
    return isThere;
}

std::string ElfFile::buildId() const
{
    std::string id;
    const auto readNote = [&](const Elf64_Shdr& section, std::string_view name)
    {
        Elf64_Nhdr note{};
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
        [&](const Elf64_Phdr& segment)
        {
            if (segment.p_type != PT_LOAD) return true;
            first = segment.p_vaddr / PAGE * PAGE;
            return false;
        });
    return first;
}

bool ElfFile::findUnwindIndex(std::uint64_t& offset, std::uint64_t& address) const
{
    bool isThere = false;
    forEachSegment(
        [&](const Elf64_Phdr& segment)
        {
            isThere = segment.p_type == PT_GNU_EH_FRAME && segment.p_offset < m_bytes.size();
            offset = segment.p_offset;
            address = segment.p_vaddr;
            return !isThere;
        });
    return isThere;
}

std::string_view ElfFile::functionAt(std::uint64_t address, std::uint64_t& begin) const
{
    std::string_view name;
    const auto search = [&](const Elf64_Shdr& section, std::string_view)
    {
        Elf64_Ehdr head{};
        Elf64_Shdr names{};
        if (section.sh_type != SHT_SYMTAB && section.sh_type != SHT_DYNSYM) return true;
        if (!read(0, head) || !read(head.e_shoff + section.sh_link * sizeof names, names)) return true;
        Elf64_Sym symbol{};
        const std::uint64_t size = std::min<std::uint64_t>(section.sh_size, m_bytes.size());
        for (std::uint64_t at = 0; at + sizeof symbol <= size && read(section.sh_offset + at, symbol);
             at += sizeof symbol)
        {
            if (ELF64_ST_TYPE(symbol.st_info) != STT_FUNC || address < symbol.st_value ||
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

}  // namespace Oxa_1_1::platform
