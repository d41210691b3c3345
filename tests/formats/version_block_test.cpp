// Values of version resources, of a compiler's making and of other shapes that occur.

#include "base/formats/version_block.h"

#include <gtest/gtest.h>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::formats
{

namespace
{

using test::asBytes;
using test::Writer;

std::optional<Text> textAt(std::span<const std::byte> block, TextView query)
{
    const auto value = queryVersionValue(block, query);
    if (!value) return std::nullopt;
    return test::textOf(*value);
}

/// A block whose lengths can be told wrongly.
struct Node
{
    TextView key;
    std::string value;
    unsigned kind = 1;
    std::string children;
    std::optional<std::size_t> valueLength;
    std::optional<std::size_t> length;

    std::string bytes() const
    {
        Writer content;
        content.number16(valueLength.value_or(kind == 1 ? value.size() / 2 : value.size())).number16(kind).text(key);
        // The length of the block is before this.
        content.number16(0).padTo((content.size() + 5) / 4 * 4 - 2).raw(value);
        if (!children.empty()) content.padTo((content.size() + 5) / 4 * 4 - 2).raw(children);
        Writer whole;
        whole.number16(length.value_or(content.size() + 2)).raw(content.bytes());
        return length ? whole.bytes() : whole.align().bytes();
    }
};

std::string valueOf(TextView text) { return Writer().text(text).number16(0).bytes(); }

/// A version with one text, in the table `T`.
std::string versionOf(const Node& text)
{
    const Node table{.key = OXA_TEXT("T"), .value = {}, .children = text.bytes(), .valueLength = {}, .length = {}};
    const Node kind{
        .key = OXA_TEXT("StringFileInfo"), .value = {}, .children = table.bytes(), .valueLength = {}, .length = {}};
    const Node version{.key = OXA_TEXT("VS_VERSION_INFO"),
                       .value = {},
                       .kind = 0,
                       .children = kind.bytes(),
                       .valueLength = {},
                       .length = {}};
    return version.bytes();
}

class VersionSample : public testing::Test
{
   protected:
    std::string m_file = test::readData("resources/sample.res");
    std::optional<ResourceIndex> m_index = ResourceIndex::fromRes(asBytes(m_file));
    std::span<const std::byte> m_block = m_index->find(ResourceKey::number(16), ResourceKey::number(1)).front().bytes;
};

TEST_F(VersionSample, Texts)
{
    struct Case
    {
        TextView query;
        std::optional<Text> value;
    };
    const Case cases[] = {
        {OXA_TEXT("\\StringFileInfo\\040904b0\\CompanyName"), OXA_TEXT("Oxa")},
        {OXA_TEXT("\\stringfileinfo\\040904B0\\COMPANYNAME"), OXA_TEXT("Oxa")},
        {OXA_TEXT("StringFileInfo\\040904b0\\FileDescription"), OXA_TEXT("A sample of resources")},
        {OXA_TEXT("\\StringFileInfo\\\\040904b0\\FileVersion\\"), OXA_TEXT("1.2.3.4")},
        {OXA_TEXT("\\StringFileInfo\\040904b0\\Empty"), Text()},
        {OXA_TEXT("\\StringFileInfo\\040704b0\\CompanyName"), OXA_TEXT("Oxa \u00DC")},
        {OXA_TEXT("\\StringFileInfo\\040904b0"), Text()},
        {OXA_TEXT("\\StringFileInfo\\040704b0\\FileVersion"), std::nullopt},
        {OXA_TEXT("\\StringFileInfo\\040904b0\\CompanyNam"), std::nullopt},
        {OXA_TEXT("\\StringFileInfo\\040904b0\\CompanyName\\x"), std::nullopt},
        {OXA_TEXT("\\StringFileInfo\\040c04b0\\CompanyName"), std::nullopt},
        {OXA_TEXT("\\CompanyName"), std::nullopt},
    };
    for (const Case& c : cases) EXPECT_EQ(textAt(m_block, c.query), c.value) << text::encodeUtf8(c.query);
}

TEST_F(VersionSample, Binary)
{
    for (const TextView query : {OXA_TEXT("\\"), OXA_TEXT("")})
    {
        const auto fixed = queryVersionValue(m_block, query);
        ASSERT_TRUE(fixed);
        ASSERT_EQ(fixed->size(), 52u);
        const Text units = test::textOf(*fixed);
        EXPECT_EQ(units.substr(0, 2), (Text{Char(0x04BD), Char(0xFEEF)}));
        EXPECT_EQ(units.substr(4, 8), (Text{2, 1, 4, 3, 6, 5, 8, 7}));
    }
    EXPECT_EQ(textAt(m_block, OXA_TEXT("\\VarFileInfo\\Translation")), (Text{0x409, 1200, 0x407, 1200}));
}

TEST_F(VersionSample, IsCutAnywhere)
{
    const auto* const bytes = reinterpret_cast<const char*>(m_block.data());
    for (std::size_t size = 0; size < m_block.size(); ++size)
    {
        const test::ExactBuffer<char> buffer(std::string_view(bytes, size));
        for (const TextView query : {OXA_TEXT("\\"), OXA_TEXT("\\VarFileInfo\\Translation"),
                                     OXA_TEXT("\\StringFileInfo\\040704b0\\CompanyName")})
        {
            const auto value = queryVersionValue(asBytes(buffer.view()), query);
            EXPECT_TRUE(!value || value->size() <= size);
        }
    }
}

TEST(VersionBlock, LengthsOfTexts)
{
    struct Case
    {
        const char* what;
        Node text;
        std::optional<Text> value;
    };
    const std::string abc = valueOf(OXA_TEXT("abc"));
    const Case cases[] = {
        {"in units", {OXA_TEXT("K"), abc, 1, {}, {}, {}}, OXA_TEXT("abc")},
        {"in bytes", {OXA_TEXT("K"), abc, 1, {}, 8, {}}, OXA_TEXT("abc")},
        {"without the zero", {OXA_TEXT("K"), abc, 1, {}, 3, {}}, OXA_TEXT("abc")},
        {"no zero", {OXA_TEXT("K"), abc.substr(0, 6), 1, {}, {}, {}}, OXA_TEXT("abc")},
        {"none", {OXA_TEXT("K"), {}, 1, {}, {}, {}}, Text()},
        {"too large", {OXA_TEXT("K"), abc, 1, {}, 0xFFFF, {}}, OXA_TEXT("abc")},
        {"binary", {OXA_TEXT("K"), abc, 0, {}, {}, {}}, Text(OXA_TEXT("abc")) + Char(0)},
        {"binary, too large", {OXA_TEXT("K"), abc, 0, {}, 0xFFFF, {}}, Text(OXA_TEXT("abc")) + Char(0)},
        {"block too long", {OXA_TEXT("K"), abc, 1, {}, {}, 0xFFFF}, OXA_TEXT("abc")},
        {"block too short", {OXA_TEXT("K"), abc, 1, {}, {}, 12}, Text()},
        {"block cuts the value", {OXA_TEXT("K"), abc, 1, {}, {}, 16}, OXA_TEXT("ab")},
        {"block of no length", {OXA_TEXT("K"), abc, 1, {}, {}, 0}, std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(textAt(asBytes(versionOf(c.text)), OXA_TEXT("\\StringFileInfo\\T\\K")), c.value) << c.what;
}

TEST(VersionBlock, IsNoVersion)
{
    const std::string noSignature = Node{OXA_TEXT("V"), std::string(52, 'x'), 0, {}, {}, {}}.bytes();
    for (const std::string& block : {std::string(), std::string("abcde"), std::string(100, '\0'), noSignature})
        EXPECT_FALSE(queryVersionValue(asBytes(block), OXA_TEXT("\\")));
}

}  // namespace

}  // namespace Oxa_1_1::formats
