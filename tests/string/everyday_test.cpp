// What one reaches for every day: parts, case, positions, shortening for display.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

// Where {fmt} is installed, without its library.
#define FMT_HEADER_ONLY

#include "base/string/command_line.h"
#include "base/string/fmt_formatter.h"
#include "base/string/std_formatter.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

/// As views that filter do, it has no elements while it is const.
struct Changing
{
    double* begin() { return values; }
    double* end() { return std::end(values); }
    double values[2] = {1.5, 2};
};

TEST(StringEveryday, SplitAndJoinAreInverse)
{
    const struct
    {
        String text;
        std::size_t parts;
    } cases[] = {{String::NIL, 0},       {String::EMPTY, 1},         {OXA_TEXT("a"), 1},
                 {OXA_TEXT("a, b"), 2},  {OXA_TEXT(", "), 2},        {OXA_TEXT("a, , b, "), 4},
                 {OXA_TEXT("a,b ,"), 1}, {OXA_TEXT("\u4E2D, b"), 2}, {test::literal(OXA_TEXT("a\0, b")), 2}};
    for (const auto& [text, parts] : cases)
    {
        const std::vector<String> split = text.split(OXA_TEXT(", "));
        EXPECT_EQ(split.size(), parts) << testing::PrintToString(text);
        EXPECT_EQ(String::join(split, OXA_TEXT(", ")).view(), text.view());
    }
    EXPECT_EQ(String(OXA_TEXT("a;b")).split(';').back(), OXA_TEXT("b"));
    EXPECT_EQ(String(OXA_TEXT("a;b")).split(String::EMPTY).size(), 1u);
    EXPECT_EQ(String::join({OXA_TEXT("a"), String::NIL}, u8"-"), OXA_TEXT("a-"));
    EXPECT_EQ(String::join(Changing(), u8" "), OXA_TEXT("1.5 2"));
    EXPECT_TRUE(String::join(std::vector<String>(), OXA_TEXT(",")).compareEquality(String::EMPTY));
}

TEST(StringEveryday, CaseIsMappedUnitByUnit)
{
    // Lower and upper case differ in more than an offset where a unit has several relatives or none.
    const String text(OXA_TEXT("aZ1\u00E4\u00C4\u00DF\u00FF\u0131\u017F\u01C5\u03C2\u1F80\u212A\U00010428"));
    EXPECT_EQ(text.toUpper(), OXA_TEXT("AZ1\u00C4\u00C4\u00DF\u0178IS\u01C4\u03A3\u1F88\u212A\U00010428"));
    EXPECT_EQ(text.toLower(), OXA_TEXT("az1\u00E4\u00E4\u00DF\u00FF\u0131\u017F\u01C6\u03C2\u1F80k\U00010428"));
    EXPECT_TRUE(String::NIL.toUpper().isNil() && String::NIL.toLower().isNil());
    // Whatever has an upper case comes back to it.
    for (unsigned int c = 0; c < 0x10000; ++c)
    {
        const String upper = String(static_cast<Char>(c), 1).toUpper();
        ASSERT_TRUE(upper.toUpper().compareEquality(upper)) << c;
    }
}

TEST(StringEveryday, HoldsAndBegins)
{
    const struct
    {
        String text;
        bool held;
        bool heldInAnyCase;
        bool first;
        bool firstInAnyCase;
    } cases[] = {{OXA_TEXT("Ab\u00C4"), true, true, true, true},
                 {OXA_TEXT("aB\u00E4"), false, true, false, true},
                 {OXA_TEXT("\u00E4C"), false, true, false, false},
                 {OXA_TEXT("c"), true, true, false, false},
                 {OXA_TEXT("Ab\u00C4cd"), false, false, false, false},
                 {String::EMPTY, true, true, true, true},
                 {String::NIL, true, true, true, true}};
    const String text(OXA_TEXT("Ab\u00C4c"));
    for (const auto& [part, held, heldInAnyCase, first, firstInAnyCase] : cases)
    {
        EXPECT_EQ(text.contains(part), held) << testing::PrintToString(part);
        EXPECT_EQ(text.contains(part, true), heldInAnyCase);
        EXPECT_EQ(text.startsWith(part, false), first);
        EXPECT_EQ(text.startsWith(part, true), firstInAnyCase);
    }
    EXPECT_TRUE(text.contains('b') && text.contains(U'\u00C4') && !text.contains(OXA_TEXT('B')));
    EXPECT_EQ(text[0], 'A');
    EXPECT_EQ(text[3u] + text[4] + text[-1], 'c');
    EXPECT_EQ(std::ranges::count(text, Char('c')), 1);
}

TEST(StringEveryday, PositionsNameArguments)
{
    const struct
    {
        String pattern;
        String expected;
    } cases[] = {
        {OXA_TEXT("{1} of {0}"), OXA_TEXT("b of 5")},
        {OXA_TEXT("{} {} {}"), OXA_TEXT("5 b true")},
        {OXA_TEXT("{{0}} {0}{0}"), OXA_TEXT("{0} 55")},
        {OXA_TEXT("{3} {-1} {0x} { 0} {99999999999999999999} {"),
         OXA_TEXT("{3} {-1} {0x} { 0} {99999999999999999999} {")},
        {OXA_TEXT("} {{1}}} {{{0}}}"), OXA_TEXT("} {1}} {5}")},
        {OXA_TEXT("{{}{}}"), OXA_TEXT("{}5}")},
        {String::EMPTY, String::EMPTY},
        {String::NIL, String::NIL},
    };
    for (const auto& [pattern, expected] : cases)
        EXPECT_TRUE(String::format(pattern, 5, OXA_TEXT("b"), true).compareEquality(expected))
            << testing::PrintToString(pattern)
            << testing::PrintToString(String::format(pattern, 5, OXA_TEXT("b"), true));
    EXPECT_EQ(String::format(u8"{0}{1}{2}", String::NIL, OXA_TEXT("{3}"), 'c', 1), OXA_TEXT("{3}c"));
    EXPECT_EQ(String::format(OXA_TEXT("{0}")), OXA_TEXT("{0}"));
    // Braces without their ends cost no look at all that follows each.
    const String braces = String::join(std::vector<String>(300000, OXA_TEXT("{ ")), String::EMPTY);
    EXPECT_EQ(String::format(braces, 1), braces);
}

TEST(StringEveryday, PathsAreShortenedAtBothSeparators)
{
    EXPECT_EQ(String(OXA_TEXT("projects\\2024/plant\\hall\\scan010.pts")).shortenPath(28, 10),
              OXA_TEXT("projects\\...\\scan010.pts"));
    EXPECT_EQ(String(OXA_TEXT("C:/projects/2024/plant/hall\\scan010.pts")).shortenPath(24),
              OXA_TEXT("C:/.../hall\\scan010.pts"));
    for (int length = -1; length < 40; ++length)
        EXPECT_LE(String(OXA_TEXT("C:\\projects\\2024/plant/hall/scan010.pts")).shortenPath(length).length(),
                  std::max(length, 0));
    EXPECT_TRUE(String::NIL.shortenPath(5).isNil());
}

TEST(StringEveryday, IsPrintedForTestsAndByOtherFormatters)
{
    EXPECT_EQ(testing::PrintToString(String::NIL), "NIL");
    EXPECT_EQ(testing::PrintToString(String(OXA_TEXT("a\"\u00E4"))), "\"a\\\"\\u00E4\"");
#ifdef FMT_VERSION
    EXPECT_EQ(fmt::format("{:>3}|{}", String(u8"\u00E4"), String::NIL), "  \xC3\xA4|");
#endif
#ifdef __cpp_lib_format
    EXPECT_EQ(std::format("{:>3}|{}", String(u8"\u00E4"), String::NIL), "  \xC3\xA4|");
#endif
}

TEST(StringEveryday, ArgumentsOfTheCommandLineBeginWithTheProgram)
{
    const std::vector<String> arguments = commandLineArguments();
    ASSERT_FALSE(arguments.empty());
    EXPECT_TRUE(arguments[0].contains(OXA_TEXT("string_test"), true));
}

}  // namespace

}  // namespace Oxa_1_1
