// A small module's file, whole, cut short and with fields that are wrong.

#include "base/formats/elf_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "base/formats/elf_layout.h"
#include "tests/text/exact_buffer.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::uint64_t UNWIND_INDEX = 0x3000;
constexpr std::string_view SECTION_NAMES{"\0.text\0.bss\0.symtab\0.note.gnu.build-id\0", 39};
constexpr std::string_view SYMBOL_NAMES{"\0data\0first\0second\0", 19};

struct Image
{
    elf::Header head{};
    std::array<elf::ProgramHeader, 2> segments{};
    std::array<elf::Symbol, 3> symbols{};
    elf::NoteHeader note{};
    std::array<char, 4> maker{'G', 'N', 'U', 0};
    std::array<unsigned char, 4> id{0xDE, 0xAD, 0x00, 0x0F};
    std::array<char, SECTION_NAMES.size() + SYMBOL_NAMES.size()> names{};
    std::array<elf::SectionHeader, 6> sections{};
};
constexpr std::size_t SYMBOL_NAMES_AT = offsetof(Image, names) + SECTION_NAMES.size();

/// The sections come last, so that a shorter file lacks some of them.
Image makeImage()
{
    Image image;
    std::copy(elf::MAGIC.begin(), elf::MAGIC.end(), image.head.e_ident.begin());
    image.head.e_ident[elf::EI_CLASS] = elf::ELFCLASS64;
    image.head.e_phoff = offsetof(Image, segments);
    image.head.e_phentsize = sizeof(elf::ProgramHeader);
    image.head.e_phnum = 2;
    image.head.e_shoff = offsetof(Image, sections);
    image.head.e_shentsize = sizeof(elf::SectionHeader);
    image.head.e_shnum = 5;
    image.segments[0] = {.p_type = elf::PT_LOAD,
                         .p_flags = 0,
                         .p_offset = 0,
                         .p_vaddr = 0x400123,
                         .p_paddr = 0,
                         .p_filesz = 0,
                         .p_memsz = 0,
                         .p_align = 0};
    image.segments[1] = {.p_type = elf::PT_GNU_EH_FRAME,
                         .p_flags = 0,
                         .p_offset = offsetof(Image, names),
                         .p_vaddr = UNWIND_INDEX,
                         .p_paddr = 0,
                         .p_filesz = 0,
                         .p_memsz = 0,
                         .p_align = 0};
    const auto symbol = [](std::uint32_t name, unsigned char type, std::uint64_t value)
    {
        return elf::Symbol{
            .st_name = name, .st_info = type, .st_other = 0, .st_shndx = 1, .st_value = value, .st_size = 16};
    };
    image.symbols = {symbol(1, 1, 0x1000), symbol(6, elf::STT_FUNC, 0x1000), symbol(12, elf::STT_FUNC, 0x1010)};
    image.note = {.n_namesz = 4, .n_descsz = 4, .n_type = 3};
    std::copy(SECTION_NAMES.begin(), SECTION_NAMES.end(), image.names.begin());
    std::copy(SYMBOL_NAMES.begin(), SYMBOL_NAMES.end(), image.names.begin() + SECTION_NAMES.size());
    const auto section = [](std::uint32_t name, std::uint32_t type, std::uint64_t offset, std::uint64_t size)
    {
        elf::SectionHeader made{};
        made.sh_name = name, made.sh_type = type, made.sh_offset = offset, made.sh_size = size;
        made.sh_link = 5;
        return made;
    };
    image.sections = {section(0, 3, offsetof(Image, names), SECTION_NAMES.size()),
                      section(1, 1, 0, 64),
                      section(7, elf::SHT_NOBITS, 0, 64),
                      section(12, elf::SHT_SYMTAB, offsetof(Image, symbols), sizeof image.symbols),
                      section(20, 7, offsetof(Image, note), sizeof image.note + 8),
                      section(0, 3, SYMBOL_NAMES_AT, SYMBOL_NAMES.size())};
    return image;
}

test::ExactBuffer<char> bytesOf(const Image& image, std::size_t size = sizeof(Image))
{
    std::string bytes(sizeof image, '\0');
    std::memcpy(bytes.data(), &image, sizeof image);
    return test::ExactBuffer<char>(std::string_view(bytes).substr(0, size));
}

std::span<const std::uint8_t> asFile(const test::ExactBuffer<char>& bytes)
{
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

/// All that a file tells, in one line.
std::string describe(const Image& image, std::size_t size = sizeof(Image))
{
    const auto bytes = bytesOf(image, size);
    const ElfFile elf(asFile(bytes));
    std::uint64_t offset = 0;
    std::uint64_t address = 0;
    std::uint64_t begin = 0;
    std::string told = elf.isValid() ? "valid" : "nothing";
    if (elf.firstAddress() == 0x400000) told += " load";
    if (elf.findUnwindIndex(offset, address) && offset == offsetof(Image, names) && address == UNWIND_INDEX)
        told += " unwind";
    for (const char* const name : {".text", ".bss", ".symtab", ".none"})
        if (elf.hasSection(name)) told.append(" ").append(name);
    for (const std::uint64_t at : {0xFFFU, 0x1000U, 0x100FU, 0x1010U, 0x101FU, 0x1020U})
        if (const auto name = elf.functionAt(at, begin); !name.empty())
            told.append(" ").append(name).append(begin == (at & ~std::uint64_t{0xF}) ? "" : "?");
    return told + " " + elf.buildId();
}

constexpr const char* WHOLE = "valid load unwind .text .symtab first first second second dead000f";

TEST(ElfFile, TellsSectionsSegmentsFunctionsAndTheBuild) { EXPECT_EQ(describe(makeImage()), WHOLE); }

TEST(ElfFile, ShortenedFilesAreReadWithinTheirBounds)
{
    const Image image = makeImage();
    constexpr std::size_t SECTIONS = offsetof(Image, sections);
    for (std::size_t size = 0; size < sizeof image; ++size)
    {
        const std::string told = describe(image, size);
        EXPECT_EQ(told.starts_with("valid"), size >= sizeof(elf::Header)) << size;
        EXPECT_EQ(told.find(" load") != std::string::npos,
                  size >= offsetof(Image, segments) + sizeof(elf::ProgramHeader))
            << size;
        EXPECT_EQ(told.find(" .text") != std::string::npos, size >= SECTIONS + 2 * sizeof(elf::SectionHeader)) << size;
        EXPECT_EQ(told.find(" first"), std::string::npos) << size;
    }
}

TEST(ElfFile, FieldsThatAreWrongLeadNowhere)
{
    const auto changed = [](auto change)
    {
        Image image = makeImage();
        change(image);
        return describe(image);
    };
    constexpr auto FAR = ~std::uint64_t{0};
    EXPECT_EQ(changed([](Image& i) { i.head.e_ident[elf::EI_CLASS] = 1; }), "nothing ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_ident[0] = 0; }), "nothing ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_phentsize = 55; }), "nothing ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_shentsize = 63; }), "valid load unwind ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_shoff = FAR; }), "valid load unwind ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_shstrndx = 0xFFFF; }), "valid load unwind ");
    EXPECT_EQ(changed([](Image& i) { i.head.e_shnum = 0xFFFF; }), WHOLE);
    EXPECT_EQ(changed([](Image& i) { i.head.e_phoff = FAR - 8; }),
              "valid .text .symtab first first second second dead000f");
    EXPECT_EQ(changed([](Image& i) { i.segments[1].p_offset = FAR; }),
              "valid load .text .symtab first first second second dead000f");
    EXPECT_EQ(changed([](Image& i) { i.sections[3].sh_offset = FAR; }), "valid load unwind .text .symtab dead000f");
    EXPECT_EQ(changed([](Image& i) { i.sections[3].sh_size = FAR; }), WHOLE);
    EXPECT_EQ(changed([](Image& i) { i.sections[3].sh_link = ~0U; }), "valid load unwind .text .symtab dead000f");
    EXPECT_EQ(changed([](Image& i) { i.sections[4].sh_offset = FAR; }),
              "valid load unwind .text .symtab first first second second ");
    EXPECT_EQ(changed([](Image& i) { i.note.n_namesz = ~0U; }).substr(0, 10), "valid load");
    EXPECT_EQ(changed([](Image& i) { i.symbols[1].st_name = ~0U; }),
              "valid load unwind .text .symtab second second dead000f");
}

}  // namespace

}  // namespace Oxa_1_1::formats
