#pragma once

#include <array>
#include <cstdint>

/// How the heads and tables of an ELF file of 64 bits lie, as its standard says, with the standard's names.
namespace Oxa_1_1::formats::elf
{

inline constexpr std::array<unsigned char, 4> MAGIC{0x7F, 'E', 'L', 'F'};
/// Which byte of the identification tells the class of the file.
inline constexpr std::size_t EI_CLASS = 4;
inline constexpr unsigned char ELFCLASS64 = 2;

struct Header
{
    std::array<unsigned char, 16> e_ident;
    std::uint16_t e_type;
    std::uint16_t e_machine;
    std::uint32_t e_version;
    std::uint64_t e_entry;
    std::uint64_t e_phoff;
    std::uint64_t e_shoff;
    std::uint32_t e_flags;
    std::uint16_t e_ehsize;
    std::uint16_t e_phentsize;
    std::uint16_t e_phnum;
    std::uint16_t e_shentsize;
    std::uint16_t e_shnum;
    std::uint16_t e_shstrndx;
};
static_assert(sizeof(Header) == 64);

struct SectionHeader
{
    std::uint32_t sh_name;
    std::uint32_t sh_type;
    std::uint64_t sh_flags;
    std::uint64_t sh_addr;
    std::uint64_t sh_offset;
    std::uint64_t sh_size;
    std::uint32_t sh_link;
    std::uint32_t sh_info;
    std::uint64_t sh_addralign;
    std::uint64_t sh_entsize;
};
static_assert(sizeof(SectionHeader) == 64);

/// The section begins with a head of its own, and is packed behind it.
inline constexpr std::uint64_t SHF_COMPRESSED = 0x800;

struct CompressionHeader
{
    std::uint32_t ch_type;
    std::uint32_t ch_reserved;
    std::uint64_t ch_size;
    std::uint64_t ch_addralign;
};
static_assert(sizeof(CompressionHeader) == 24);

inline constexpr std::uint32_t ELFCOMPRESS_ZLIB = 1;

inline constexpr std::uint32_t SHT_SYMTAB = 2;
inline constexpr std::uint32_t SHT_NOBITS = 8;
inline constexpr std::uint32_t SHT_DYNSYM = 11;

struct ProgramHeader
{
    std::uint32_t p_type;
    std::uint32_t p_flags;
    std::uint64_t p_offset;
    std::uint64_t p_vaddr;
    std::uint64_t p_paddr;
    std::uint64_t p_filesz;
    std::uint64_t p_memsz;
    std::uint64_t p_align;
};
static_assert(sizeof(ProgramHeader) == 56);

inline constexpr std::uint32_t PT_LOAD = 1;
inline constexpr std::uint32_t PT_GNU_EH_FRAME = 0x6474E550;

struct Symbol
{
    std::uint32_t st_name;
    unsigned char st_info;
    unsigned char st_other;
    std::uint16_t st_shndx;
    std::uint64_t st_value;
    std::uint64_t st_size;

    constexpr unsigned type() const { return st_info & 0xFU; }
};
static_assert(sizeof(Symbol) == 24);

inline constexpr unsigned STT_FUNC = 2;

struct NoteHeader
{
    std::uint32_t n_namesz;
    std::uint32_t n_descsz;
    std::uint32_t n_type;
};
static_assert(sizeof(NoteHeader) == 12);

}  // namespace Oxa_1_1::formats::elf
