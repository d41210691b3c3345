#include "base/formats/symbol_file.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::formats
{

namespace
{

/// A seed of the fuzzer, without the two bytes before the file.
std::string sample(const std::string& name)
{
    return test::readData("../../fuzz/corpus/fuzz_symbol_file/" + name).substr(2);
}

std::string described(SymbolFile& file, std::uint64_t offset)
{
    std::vector<SourceFrame> frames;
    std::uint64_t functionOffset = 0;
    std::ostringstream text;
    file.find(offset, frames, functionOffset);
    for (const SourceFrame& frame : frames)
        text << frame.function << " " << frame.file.substr(frame.file.rfind('/') + 1) << ":" << frame.line << "; ";
    return text.str();
}

TEST(SymbolFile, FindsFunctionsAndWhatIsInlinedInEachForm)
{
    const struct
    {
        const char* name;
        std::uint64_t outer;
        bool hasCoffSymbols;
    } cases[] = {{"elf_dwarf5", 0x1B7, false},
                 {"elf_dwarf5_indexed", 0x1C0, false},
                 {"elf_dwarf4_packed", 0x1B7, false},
                 {"pe_coff", 0x1000, true}};
    for (const auto& c : cases)
    {
        const std::string bytes = sample(c.name);
        SymbolFile file(test::asBytes(bytes), {});
        EXPECT_TRUE(file.hasDebugInformation()) << c.name;
        EXPECT_EQ(file.hasCoffSymbols(), c.hasCoffSymbols) << c.name;
        std::set<std::string> places;
        for (std::uint64_t offset = c.outer; offset < c.outer + 16; ++offset) places.insert(described(file, offset));
        EXPECT_TRUE(places.contains("outer s.c:2; ")) << c.name;
        EXPECT_TRUE(places.contains("twice s.c:1; outer s.c:2; ")) << c.name;
        EXPECT_EQ(described(file, c.outer + 0x100000), "");
    }
}

TEST(SymbolFile, DamagedFilesTellLess)
{
    for (const char* const name : {"elf_dwarf5", "elf_dwarf5_indexed", "elf_dwarf4_packed", "pe_coff"})
    {
        const std::string whole = sample(name);
        for (std::size_t length = 0; length < whole.size(); length += 7)
        {
            // Behind a cut file nothing may be read, and every byte may be wrong.
            const test::ExactBuffer<char> cut(std::string_view(whole).substr(0, length));
            SymbolFile file(test::asBytes({cut.data(), length}), {});
            described(file, 0x1BA);
            std::string wrong = whole;
            wrong[length] = static_cast<char>(~wrong[length]);
            SymbolFile other(test::asBytes(wrong), {});
            described(other, name[0] == 'p' ? 0x1004 : 0x1BA);
        }
    }
}

}  // namespace

}  // namespace Oxa_1_1::formats
