// Resources of compiled scripts and of libraries: what is found, and what broken files come to.

#include "base/formats/resource_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::formats
{

namespace
{

using test::asBytes;
using test::describe;
using test::Writer;
using Lines = std::vector<std::string>;

// ---- Files of the tests' own making.

std::string emptyRecord()
{
    return Writer().number32(0).number32(32).number32(0xFFFF).number32(0xFFFF).padTo(32).bytes();
}

/// A record whose type and name are given as they lie.
std::string record(const std::string& type, const std::string& name, unsigned language, const std::string& data)
{
    Writer header;
    header.raw(type).raw(name).align().number32(0).number16(0x30).number16(language).number32(0).number32(0);
    return Writer().number32(data.size()).number32(header.size() + 8).raw(header.bytes()).raw(data).align().bytes();
}

std::string number(unsigned id) { return Writer().number16(0xFFFF).number16(id).bytes(); }
std::string text(TextView name) { return Writer().text(name).number16(0).bytes(); }

constexpr unsigned SECTION_ADDRESS = 0x3000;
constexpr unsigned HIGH = 0x80000000;

/// A library with one section, which begins with the resource directory.
std::string library(const std::string& section, bool wide, unsigned directory = SECTION_ADDRESS)
{
    const unsigned optionalSize = wide ? 240 : 224;
    Writer file;
    file.raw("MZ").padTo(60).number32(64).raw(std::string_view("PE\0\0", 4));
    file.number16(0x8664).number16(1).padTo(84).number16(optionalSize).number16(0x2000);
    file.number16(wide ? 0x20B : 0x10B).padTo(88 + optionalSize - 132).number32(16);
    file.padTo(file.size() + 16).number32(directory).number32(section.size()).padTo(88 + optionalSize);
    file.raw(".rsrc").padTo(file.size() + 3).number32(section.size()).number32(SECTION_ADDRESS);
    file.number32(section.size()).number32(512).padTo(512);
    return file.raw(section).bytes();
}

Writer& directory(Writer& writer, unsigned names, unsigned numbers)
{
    return writer.padTo(writer.size() + 12).number16(names).number16(numbers);
}

/// What a directory for one resource is made of. Tests spoil it part by part.
struct OneResource
{
    unsigned typeCount = 1;
    std::size_t typeKey = 10;
    std::size_t typeTarget = HIGH | 24;
    std::size_t nameKey = 5;
    std::size_t nameTarget = HIGH | 48;
    std::size_t languageKey = 1033;
    std::size_t languageTarget = 72;
    std::size_t address = SECTION_ADDRESS + 100;
    std::size_t size = 4;
};

std::string sectionOf(const OneResource& one)
{
    Writer writer;
    directory(writer, 0, one.typeCount).number32(one.typeKey).number32(one.typeTarget);
    directory(writer, 0, 1).number32(one.nameKey).number32(one.nameTarget);
    directory(writer, 0, 1).number32(one.languageKey).number32(one.languageTarget);
    writer.number32(one.address).number32(one.size).number32(0).number32(0);
    // At 88 and, at an odd address, at 95: names.
    writer.number16(2).text(OXA_TEXT("AB")).raw("x").number16(1).raw("D").padTo(100);
    return writer.raw("data").bytes();
}

std::optional<Lines> linesOf(const std::optional<ResourceIndex>& index)
{
    if (!index) return std::nullopt;
    return describe(index->entries());
}

std::optional<Lines> readLibrary(const OneResource& one, bool wide = true)
{
    const std::string file = library(sectionOf(one), wide);
    return linesOf(ResourceIndex::fromPortableExecutable(asBytes(file)));
}

std::optional<Lines> readRecords(const std::string& records)
{
    const std::string file = emptyRecord() + records;
    return linesOf(ResourceIndex::fromRes(asBytes(file)));
}

// ---- The sample, compiled.

struct Sample
{
    explicit Sample(bool isLibrary)
        : bytes(test::readData(isLibrary ? "resources/sample.dll" : "resources/sample.res")),
          index(isLibrary ? ResourceIndex::fromPortableExecutable(asBytes(bytes))
                          : ResourceIndex::fromRes(asBytes(bytes)))
    {
    }

    std::string bytes;
    std::optional<ResourceIndex> index;
};

class ResourceSample : public testing::TestWithParam<bool>
{
};

INSTANTIATE_TEST_SUITE_P(Kinds, ResourceSample, testing::Bool(),
                         [](const auto& kind) { return kind.param ? "Library" : "Script"; });

TEST_P(ResourceSample, Entries)
{
    const Sample sample(GetParam());
    ASSERT_TRUE(sample.index);
    EXPECT_EQ(describe(sample.index->entries()),
              (Lines{"#6 #1 0: 48", "#6 #1 1031: 54", "#6 #1 1033: 102", "#6 #1 1041: 38", "#6 #2 0: 50",
                     "#6 #2 1031: 48", "#6 #31 1041: 36", "#6 #4096 0: 48", "#10 #7 0: 4", "#10 SAMPLE 0: 9",
                     "#10 SAMPLE 1033: 7", "#16 #1 1033: 488", "SHAPE #5 0: 9", "SHAPE NAMED 0: 21"}));
}

TEST_P(ResourceSample, Find)
{
    const Sample sample(GetParam());
    const auto find = [&](const ResourceKey& type, const ResourceKey& name)
    { return describe(sample.index->find(type, name)); };
    const auto name = [](TextView text) { return ResourceKey::text(text); };
    const auto id = ResourceKey::number;

    EXPECT_EQ(find(id(10), name(OXA_TEXT("SAMPLE"))), (Lines{"#10 SAMPLE 0: 9", "#10 SAMPLE 1033: 7"}));
    EXPECT_EQ(find(id(10), name(OXA_TEXT("sAmple"))), (Lines{"#10 SAMPLE 0: 9", "#10 SAMPLE 1033: 7"}));
    EXPECT_EQ(find(id(10), id(7)), Lines{"#10 #7 0: 4"});
    EXPECT_EQ(find(name(OXA_TEXT("shape")), name(OXA_TEXT("named"))), Lines{"SHAPE NAMED 0: 21"});
    EXPECT_EQ(find(name(OXA_TEXT("Shape")), id(5)), Lines{"SHAPE #5 0: 9"});
    EXPECT_EQ(find(id(10), name(OXA_TEXT("SAMPL"))), Lines());
    EXPECT_EQ(find(id(10), name({})), Lines());
    EXPECT_EQ(find(id(10), id(8)), Lines());
    EXPECT_EQ(find(id(11), id(7)), Lines());
    EXPECT_EQ(find(name(OXA_TEXT("10")), id(7)), Lines());

    const auto found = sample.index->find(name(OXA_TEXT("SHAPE")), id(5));
    EXPECT_TRUE(std::ranges::equal(found[0].bytes, asBytes("by number")));
}

TEST_P(ResourceSample, Strings)
{
    struct Case
    {
        unsigned id;
        std::vector<std::pair<unsigned, Text>> texts;
    };
    const Case cases[] = {
        {0, {{0, {}}, {1031, {}}, {1033, {}}, {1041, {}}}},
        {1,
         {{0, OXA_TEXT("One")},
          {1031, OXA_TEXT("Eins, \u00DCbung")},
          {1033, OXA_TEXT("One in English")},
          {1041, OXA_TEXT("\u65E5\u672C\u8A9E")}}},
        {3, {{0, OXA_TEXT("Three")}, {1031, {}}, {1033, {}}, {1041, {}}}},
        {15, {{0, {}}, {1031, {}}, {1033, OXA_TEXT("The last of its block")}, {1041, {}}}},
        {16, {{0, {}}, {1031, OXA_TEXT("Sechzehn")}}},
        {17, {{0, OXA_TEXT("Seventeen")}, {1031, {}}}},
        {32, {}},
        {480, {{1041, OXA_TEXT("\U0001F600")}}},
        {65519, {}},
        {65535, {{0, OXA_TEXT("The last")}}},
        {65536, {}},
        {0xFFFFFFFF, {}},
    };
    Sample sample(GetParam());
    const ResourceIndex moved = std::move(*sample.index);
    for (const Case& c : cases)
    {
        std::vector<std::pair<unsigned, Text>> texts;
        for (const ResourceEntry& entry : moved.stringBlock(c.id))
            texts.emplace_back(entry.language, ResourceIndex::stringAt(entry, c.id));
        EXPECT_EQ(texts, c.texts) << c.id;
    }
}

/// What is left of a file after any cut is read, or not, without harm.
TEST_P(ResourceSample, IsCutAnywhere)
{
    const Sample sample(GetParam());
    for (std::size_t size = 0; size < sample.bytes.size(); ++size)
    {
        const test::ExactBuffer<char> buffer(std::string_view(sample.bytes).substr(0, size));
        const auto whole = asBytes(buffer.view());
        const auto index = GetParam() ? ResourceIndex::fromPortableExecutable(whole) : ResourceIndex::fromRes(whole);
        if (!index) continue;
        ASSERT_LE(index->entries().size(), sample.index->entries().size());
        for (const ResourceEntry& entry : index->entries())
            ASSERT_LE(entry.bytes.data() + entry.bytes.size(), whole.data() + whole.size());
    }
}

TEST_P(ResourceSample, IsOfItsKind)
{
    const Sample sample(GetParam());
    EXPECT_FALSE(GetParam() ? ResourceIndex::fromRes(asBytes(sample.bytes))
                            : ResourceIndex::fromPortableExecutable(asBytes(sample.bytes)));
}

// ---- Compiled scripts.

TEST(ResourceRecords, OrderAndDuplicates)
{
    const std::string records =
        record(number(10), text(OXA_TEXT("b")), 9, "1") + record(text(OXA_TEXT("SHAPE")), number(1), 0, "12") +
        record(number(10), text(OXA_TEXT("AB")), 9, "123") + record(number(10), text(OXA_TEXT("B")), 9, "duplicate") +
        record(number(10), text(OXA_TEXT("A")), 9, "1234") + emptyRecord() +
        record(number(10), number(300), 7, "12345") + record(number(10), number(300), 2, "") +
        record(number(2), number(0xFFFF), 0, "1");
    EXPECT_EQ(readRecords(records), (Lines{"#2 #65535 0: 1", "#10 #300 2: 0", "#10 #300 7: 5", "#10 A 9: 4",
                                           "#10 AB 9: 3", "#10 b 9: 1", "SHAPE #1 0: 2"}));
}

TEST(ResourceRecords, Broken)
{
    const std::string good = record(number(10), number(1), 0, "data");
    const auto patched = [&](std::size_t offset, std::size_t value)
    {
        std::string broken = good;
        return broken.replace(offset, 4, Writer().number32(value).bytes());
    };
    EXPECT_EQ(readRecords(good), Lines{"#10 #1 0: 4"});
    EXPECT_EQ(readRecords({}), Lines());
    EXPECT_EQ(readRecords(good + "rest"), std::nullopt);
    for (const std::size_t size : {0u, 8u, 31u, 37u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(readRecords(patched(4, size)), std::nullopt) << size;
    for (const std::size_t size : {8u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        EXPECT_EQ(readRecords(patched(0, size)), std::nullopt) << size;
    // A name that does not end within its header.
    EXPECT_EQ(readRecords(record(number(10), Writer().text(OXA_TEXT("ABCDEFGHIJKLMN")).bytes(), 0xFFFF, "data")),
              std::nullopt);
    EXPECT_FALSE(ResourceIndex::fromRes({}));
    EXPECT_FALSE(ResourceIndex::fromRes(asBytes(good)));
}

TEST(ResourceRecords, BrokenStrings)
{
    struct Case
    {
        std::string block;
        unsigned id;
        Text text;
    };
    const std::string tooLong = Writer().number16(1).text(OXA_TEXT("A")).number16(2).text(OXA_TEXT("B")).bytes();
    const std::string far = Writer().number16(0xFFFF).padTo(0x20000).number16(1).text(OXA_TEXT("C")).bytes();
    const std::string odd = Writer().number16(0).number16(1).text(OXA_TEXT("D")).raw("x").bytes();
    const Case cases[] = {
        {"", 0, {}},
        {"x", 0, {}},
        {tooLong, 0, OXA_TEXT("A")},
        {tooLong, 1, {}},
        {tooLong, 2, {}},
        {tooLong, 15, {}},
        {far, 0, Text(0xFFFF, Char(0))},
        {far, 1, OXA_TEXT("C")},
        {far, 2, {}},
        {odd, 1, OXA_TEXT("D")},
        {odd, 2, {}},
    };
    for (const Case& c : cases)
    {
        const std::string file = emptyRecord() + record(number(6), number(1), 0, c.block);
        const auto index = ResourceIndex::fromRes(asBytes(file));
        ASSERT_TRUE(index);
        ASSERT_EQ(index->stringBlock(c.id).size(), 1u);
        EXPECT_EQ(ResourceIndex::stringAt(index->stringBlock(c.id)[0], c.id), c.text) << c.id;
    }
}

TEST(ResourceRecords, BlocksWithImpossibleNames)
{
    const std::string file = emptyRecord() + record(number(6), number(0), 0, "") +
                             record(number(6), number(4097), 0, "") + record(number(6), text(OXA_TEXT("1")), 0, "") +
                             record(text(OXA_TEXT("6")), number(1), 0, "");
    const auto index = ResourceIndex::fromRes(asBytes(file));
    ASSERT_TRUE(index);
    EXPECT_EQ(index->entries().size(), 4u);
    for (const unsigned id : {0u, 15u, 16u, 65535u, 65536u, 65552u}) EXPECT_TRUE(index->stringBlock(id).empty()) << id;
}

// ---- Libraries.

TEST(ResourceLibrary, Widths)
{
    EXPECT_EQ(readLibrary({}, true), Lines{"#10 #5 1033: 4"});
    EXPECT_EQ(readLibrary({}, false), Lines{"#10 #5 1033: 4"});
}

TEST(ResourceLibrary, WithoutResources)
{
    const std::string file = library(sectionOf({}), true, 0);
    EXPECT_EQ(linesOf(ResourceIndex::fromPortableExecutable(asBytes(file))), Lines());
}

TEST(ResourceLibrary, BrokenDirectory)
{
    const std::optional<Lines> none;
    const Lines empty;
    struct Case
    {
        const char* what;
        std::function<void(OneResource&)> spoil;
        std::optional<Lines> expected;
    };
    const Case cases[] = {
        {"name", [](auto& r) { r.nameKey = HIGH | 88; }, Lines{"#10 AB 1033: 4"}},
        {"odd name", [](auto& r) { r.nameKey = HIGH | 95; }, Lines{"#10 D 1033: 4"}},
        {"type with a name", [](auto& r) { r.typeKey = HIGH | 88; }, Lines{"AB #5 1033: 4"}},
        {"large number", [](auto& r) { r.nameKey = 0x10007; }, Lines{"#10 #7 1033: 4"}},
        {"name outside", [](auto& r) { r.nameKey = HIGH | 103; }, none},
        {"name ends outside", [](auto& r) { r.nameKey = HIGH | 100; }, none},
        {"type without directory", [](auto& r) { r.typeTarget = 72; }, none},
        {"name without directory", [](auto& r) { r.nameTarget = 72; }, none},
        {"directory outside", [](auto& r) { r.typeTarget = HIGH | 100; }, none},
        {"directory far outside", [](auto& r) { r.typeTarget = 0xFFFFFFFF; }, none},
        {"cycle", [](auto& r) { r.nameTarget = HIGH; }, none},
        {"fourth level", [](auto& r) { r.languageTarget = HIGH | 48; }, none},
        {"language with a name", [](auto& r) { r.languageKey = HIGH | 88; }, none},
        {"count", [](auto& r) { r.typeCount = 0xFFFF; }, none},
        {"description outside", [](auto& r) { r.languageTarget = 96; }, none},
        {"data before", [](auto& r) { r.address = SECTION_ADDRESS - 1; }, empty},
        {"data behind", [](auto& r) { r.address = SECTION_ADDRESS + 101; }, empty},
        {"data far behind", [](auto& r) { r.address = 0xFFFFFFFF; }, empty},
        {"data too long", [](auto& r) { r.size = 5; }, empty},
        {"data far too long", [](auto& r) { r.size = 0xFFFFFFFF; }, empty},
        {"data of no length", [](auto& r) { r.size = 0; }, Lines{"#10 #5 1033: 0"}},
    };
    for (const Case& c : cases)
    {
        OneResource resource;
        c.spoil(resource);
        EXPECT_EQ(readLibrary(resource), c.expected) << c.what;
    }
    const std::string outside = library(sectionOf({}), true, SECTION_ADDRESS + 4096);
    EXPECT_FALSE(ResourceIndex::fromPortableExecutable(asBytes(outside)));
}

/// Shared directories would come to more entries than the file has bytes.
TEST(ResourceLibrary, SharedDirectories)
{
    constexpr unsigned COUNT = 1000;
    constexpr unsigned SIZE = 16 + 8 * COUNT;
    Writer writer;
    for (unsigned level = 0; level < 3; ++level)
    {
        directory(writer, 0, COUNT);
        const unsigned target = (level + 1) * SIZE;
        for (unsigned i = 0; i < COUNT; ++i) writer.number32(i).number32(level < 2 ? HIGH | target : target);
    }
    writer.number32(SECTION_ADDRESS).number32(1).number32(0).number32(0);
    const std::string file = library(writer.bytes(), true);
    EXPECT_FALSE(ResourceIndex::fromPortableExecutable(asBytes(file)));
}

/// Names that overlap would take more memory than the file has.
TEST(ResourceLibrary, OverlappingNames)
{
    constexpr unsigned COUNT = 1000;
    constexpr unsigned NAMES = 16 + 8 * COUNT;
    Writer writer;
    directory(writer, COUNT, 0);
    for (unsigned i = 0; i < COUNT; ++i) writer.number32(HIGH | (NAMES + 2 * i)).number32(HIGH | NAMES);
    for (unsigned i = 0; i < 4 * COUNT; ++i) writer.number16(2 * COUNT);
    const std::string file = library(writer.bytes(), true);
    EXPECT_FALSE(ResourceIndex::fromPortableExecutable(asBytes(file)));
}

TEST(ResourceLibrary, RandomDamage)
{
    const std::string good = test::readData("resources/sample.dll");
    std::mt19937 random(1);
    for (int i = 0; i < 5000; ++i)
    {
        std::string bad = good;
        for (int n = 0; n < 4; ++n) bad[random() % bad.size()] = static_cast<char>(random() & 0xFF);
        const auto index = ResourceIndex::fromPortableExecutable(asBytes(bad));
        if (!index) continue;
        for (const ResourceEntry& entry : index->entries()) ASSERT_FALSE(index->find(entry.type, entry.name).empty());
        for (unsigned id = 0; id < 32; ++id)
            for (const ResourceEntry& entry : index->stringBlock(id))
                ASSERT_LE(ResourceIndex::stringAt(entry, id).size(), bad.size());
    }
}

}  // namespace

}  // namespace Oxa_1_1::formats
