// Searches.

#include <gtest/gtest.h>

#include <climits>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(StringSearch, TextsAreFoundBeforeTheFirstZero)
{
    const String text(OXA_TEXT("banana bandana"));
    const struct
    {
        const Char* pattern;
        int start;
        int expected;
    } cases[] = {
        {OXA_TEXT("ban"), 0, 0},
        {OXA_TEXT("ban"), 1, 7},
        {OXA_TEXT("ana"), 2, 3},
        {OXA_TEXT("ana"), 4, 11},
        {OXA_TEXT("banana bandana"), 0, 0},
        {OXA_TEXT("banana bandanas"), 0, -1},
        {OXA_TEXT("a"), 13, 13},
        {OXA_TEXT("Ban"), 0, -1},
        {OXA_TEXT(""), 0, -1},
        {nullptr, 0, -1},
        {OXA_TEXT("a"), -1, -1},
        {OXA_TEXT("a"), 14, -1},
        {OXA_TEXT("a"), INT_MAX, -1},
        {OXA_TEXT("a"), INT_MIN, -1},
    };
    for (const auto& [pattern, start, expected] : cases) EXPECT_EQ(text.find(pattern, start), expected) << start;

    const String zeros = test::literal(OXA_TEXT("ab\0ab\0c"));
    EXPECT_EQ(zeros.find(OXA_TEXT("c"), 0), -1);
    EXPECT_EQ(zeros.find(OXA_TEXT("ab"), 1), -1);
    EXPECT_EQ(zeros.find(OXA_TEXT("ab"), 3), 3);
    EXPECT_EQ(zeros.find(OXA_TEXT("c"), 6), 6);
    EXPECT_EQ(zeros.find(Char('c')), 6);
    EXPECT_EQ(zeros.find(Char(0), 3), 5);
    EXPECT_EQ(zeros.findLastOf(OXA_TEXT("ab")), 0);
    EXPECT_EQ(zeros.findLastOf(Char('a'), 0), 3);
}

TEST(StringSearch, LastOccurrencesMayOverlap)
{
    EXPECT_EQ(String(OXA_TEXT("aaa")).findLastOf(OXA_TEXT("aa")), 1);
    EXPECT_EQ(String(OXA_TEXT("banana")).findLastOf(OXA_TEXT("ana")), 3);
    EXPECT_EQ(String(OXA_TEXT("banana")).findLastOf(OXA_TEXT("x")), -1);
    EXPECT_EQ(String(OXA_TEXT("banana")).findLastOf(OXA_TEXT("")), -1);
    EXPECT_EQ(String(OXA_TEXT("banana")).findLastOf(static_cast<const Char*>(nullptr)), -1);
    const struct
    {
        Char c;
        int start;
        int expected;
    } cases[] = {{'a', 0, 5}, {'a', 5, 5}, {'b', 0, 0}, {'b', 1, -1}, {'a', 6, -1}, {'a', -1, -1}, {'x', 0, -1}};
    for (const auto& [c, start, expected] : cases) EXPECT_EQ(String(OXA_TEXT("banana")).findLastOf(c, start), expected);
}

TEST(StringSearch, NothingIsFoundInNothing)
{
    for (const String& none : {String::NIL, String::EMPTY})
    {
        EXPECT_EQ(none.find(OXA_TEXT("a"), 0), -1);
        EXPECT_EQ(none.find(Char(0), 0), -1);
        EXPECT_EQ(none.findLastOf(OXA_TEXT("a")), -1);
        EXPECT_EQ(none.findLastOf(Char(0), 0), -1);
        EXPECT_EQ(none.findNonAlpha(0), -1);
        EXPECT_EQ(none.findWS(0), -1);
    }
}

using ClassSearch = int (String::*)(int) const noexcept;

TEST(StringSearch, ClassesOfCharacters)
{
    const struct
    {
        ClassSearch find;
        String text;
        int start;
        int expected;
    } cases[] = {
        {&String::findAlpha, OXA_TEXT("1_ab"), 0, 2},
        {&String::findAlpha, OXA_TEXT("1 \u00E4"), 0, 2},
        {&String::findAlpha, OXA_TEXT("\U0001F600x"), 0, 2},
        {&String::findAlpha, OXA_TEXT("ab1"), 2, -1},
        {&String::findNonAlpha, OXA_TEXT("ab\u00DF9"), 0, 3},
        {&String::findNonAlpha, OXA_TEXT("@"), 0, 0},
        {&String::findAlphaNum, OXA_TEXT(" \"(a"), 0, 3},
        {&String::findAlphaNum, OXA_TEXT("  -1"), 0, 2},
        {&String::findAlphaNum, OXA_TEXT("  .5"), 0, 2},
        {&String::findAlphaNum, OXA_TEXT("  +5"), 0, 2},
        {&String::findAlphaNum, OXA_TEXT("_/:`{"), 0, -1},
        {&String::findNonAlphaNum, OXA_TEXT("a1-.+\u00E4 "), 0, 6},
        {&String::findNonDigit, OXA_TEXT("0129/"), 0, 4},
        {&String::findNonDigit, OXA_TEXT("12\u0663"), 0, 2},
        {&String::findSignedDigit, OXA_TEXT("a+-1"), 0, 2},
        {&String::findNonSignedDigit, OXA_TEXT("-1-2+"), 0, 4},
        {&String::findNumeric, OXA_TEXT("abcde"), 0, 4},
        {&String::findNumeric, OXA_TEXT("xyE"), 0, 2},
        {&String::findNumeric, OXA_TEXT("x+"), 0, 1},
        {&String::findNumeric, OXA_TEXT("xyz,;"), 0, -1},
        {&String::findWS, OXA_TEXT("ab c"), 0, 2},
        {&String::findWS, OXA_TEXT("ab\x7F"), 0, 2},
        {&String::findWS, OXA_TEXT("a\u2003"), 0, 1},
        {&String::findNonWS, OXA_TEXT(" \t\n\x01!"), 0, 4},
        {&String::findNonWS, OXA_TEXT(" a"), 2, -1},
        {&String::findNonWS, OXA_TEXT(" a"), -1, -1},
    };
    for (const auto& [find, text, start, expected] : cases)
        EXPECT_EQ((text.*find)(start), expected) << testing::PrintToString(text);

    EXPECT_EQ(String(OXA_TEXT("x0012")).findDigit(0, '0'), 3);
    EXPECT_EQ(String(OXA_TEXT("x0012")).findDigit(0, 'x'), 1);
    EXPECT_EQ(String(OXA_TEXT("x00")).findDigit(0, '0'), -1);
}

}  // namespace

}  // namespace Oxa_1_1
