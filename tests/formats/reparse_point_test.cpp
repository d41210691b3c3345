// What Windows writes into links and junctions.

#include "base/formats/reparse_point.h"

#include <gtest/gtest.h>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::formats
{

namespace
{

using test::asBytes;
using test::Writer;

constexpr std::size_t JUNCTION = 0xA0000003;
constexpr std::size_t LINK = 0xA000000C;

/// As the system lays it out: the name to be shown stands before its own one in links.
std::string markOf(std::size_t tag, TextView systemName, TextView shown)
{
    Writer body;
    body.number16(shown.size() * 2).number16(systemName.size() * 2).number16(0).number16(shown.size() * 2);
    if (tag == LINK) body.number32(1);
    body.text(shown).text(systemName);
    return Writer().number32(tag).number16(body.size()).number16(0).raw(body.bytes()).bytes();
}

TEST(ReparsePoint, LeadsWhereProgramsSayIt)
{
    const struct
    {
        std::size_t tag;
        TextView systemName;
        TextView target;
    } cases[] = {{JUNCTION, OXA_TEXT("\\??\\C:\\scans"), OXA_TEXT("C:\\scans")},
                 {LINK, OXA_TEXT("\\??\\C:\\a b"), OXA_TEXT("C:\\a b")},
                 {LINK, OXA_TEXT("\\??\\UNC\\server\\share\\a"), OXA_TEXT("\\\\server\\share\\a")},
                 {JUNCTION, OXA_TEXT("\\??\\Volume{12}\\"), OXA_TEXT("\\\\?\\Volume{12}\\")},
                 {LINK, OXA_TEXT("..\\a"), OXA_TEXT("..\\a")}};
    for (const auto& c : cases)
    {
        const std::string mark = markOf(c.tag, c.systemName, OXA_TEXT("shown"));
        EXPECT_EQ(readReparsePoint(asBytes(mark)), c.target);
        EXPECT_EQ(readReparsePoint(asBytes(markOf(c.tag, {}, c.target))), c.target);
        for (std::size_t size = 0; size < mark.size(); ++size)
            EXPECT_EQ(readReparsePoint(asBytes(mark.substr(0, size))), std::nullopt);
    }
    EXPECT_EQ(readReparsePoint(asBytes(markOf(0xA000001D, OXA_TEXT("a"), OXA_TEXT("a")))), std::nullopt);
    EXPECT_EQ(readReparsePoint(asBytes(markOf(LINK, {}, {}))), std::nullopt);
}

TEST(ReparsePoint, OfJunctionsIsMadeForDrives)
{
    EXPECT_EQ(readReparsePoint(makeJunction(OXA_TEXT("C:\\scans")).value()), OXA_TEXT("C:\\scans"));
    for (const TextView target :
         {TextView(OXA_TEXT("a\\b")), TextView(OXA_TEXT("\\\\s\\t\\a")), TextView(OXA_TEXT("C:"))})
        EXPECT_FALSE(makeJunction(target));
    EXPECT_TRUE(makeJunction(Text(OXA_TEXT("C:\\")).append(4000, 'a')));
    EXPECT_FALSE(makeJunction(Text(OXA_TEXT("C:\\")).append(4100, 'a')));
}

}  // namespace

}  // namespace Oxa_1_1::formats
