// Parts, replacement, shortening and escapes.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(StringEdit, SubstrTakesAnEndAndClampsBoth)
{
    const String text(OXA_TEXT("abcdef"));
    const struct
    {
        int start;
        int end;
        const Char* expected;
    } cases[] = {
        {2, 4, OXA_TEXT("cd")},     {4, 2, OXA_TEXT("")},    {0, -1, OXA_TEXT("abcdef")},
        {3, -1, OXA_TEXT("def")},   {-5, 2, OXA_TEXT("ab")}, {9, -1, OXA_TEXT("")},
        {9, 12, OXA_TEXT("")},      {2, 2, OXA_TEXT("")},    {1, 99, OXA_TEXT("bcdef")},
        {0, 6, OXA_TEXT("abcdef")}, {0, 0, OXA_TEXT("")},    {INT_MIN, INT_MAX, OXA_TEXT("abcdef")},
    };
    for (const auto& [start, end, expected] : cases)
        EXPECT_TRUE(text.substr(start, end).compareEquality(expected)) << start << ' ' << end;
    EXPECT_EQ(text.substr(4), OXA_TEXT("ef"));
    EXPECT_TRUE(String::NIL.substr(0, -1).isNil());
    EXPECT_TRUE(String::EMPTY.substr(1, 0).compareEquality(String::EMPTY));
}

TEST(StringEdit, TrimTakesEitherSide)
{
    const String text(OXA_TEXT(" \t\u00A0a b\u3000\r\n"));
    EXPECT_EQ(text.trim(true, true), OXA_TEXT("a b"));
    EXPECT_EQ(text.trim(true, false), OXA_TEXT("a b\u3000\r\n"));
    EXPECT_EQ(text.trim(false, true), OXA_TEXT(" \t\u00A0a b"));
    EXPECT_EQ(text.trim(false, false), text);
    EXPECT_EQ(String(OXA_TEXT("\u200Ba")).trim(), OXA_TEXT("\u200Ba"));
    EXPECT_TRUE(String(OXA_TEXT("   ")).trim(true, false).compareEquality(String::EMPTY));
    EXPECT_TRUE(String(OXA_TEXT("   ")).trim(false, true).compareEquality(String::EMPTY));
    EXPECT_TRUE(String::NIL.trim(true, true).isNil());
    EXPECT_TRUE(String::EMPTY.trim(true, true).compareEquality(String::EMPTY));
}

TEST(StringEdit, PrefixesAndSuffixesDifferForTheEmptyText)
{
    const String text(OXA_TEXT("Report.TXT"));
    EXPECT_TRUE(text.startsWith(OXA_TEXT("Rep")) && text.startsWith(text));
    EXPECT_FALSE(text.startsWith(OXA_TEXT("rep")) || text.startsWith(OXA_TEXT("Report.TXTs")));
    EXPECT_TRUE(text.startsWith(String::EMPTY) && text.startsWith(String::NIL) && String::NIL.startsWith(String::NIL));
    EXPECT_TRUE(text.endsWith(OXA_TEXT(".TXT")) && text.endsWith(OXA_TEXT(".txt"), true) && text.endsWith(text));
    EXPECT_FALSE(text.endsWith(OXA_TEXT(".txt")) || text.endsWith(OXA_TEXT(".txt"), false));
    EXPECT_FALSE(text.endsWith(OXA_TEXT("a Report.TXT"), true) || text.endsWith(OXA_TEXT("XTX"), true));
    EXPECT_FALSE(text.endsWith(String::EMPTY) || text.endsWith(String::NIL, true) || String::NIL.endsWith(text));
}

TEST(StringEdit, ReplacesUnitsUpToTheFirstZero)
{
    String text(OXA_TEXT("banana"));
    EXPECT_EQ(text.replace(Char('a'), Char('b')), 3);
    EXPECT_EQ(text, OXA_TEXT("bbnbnb"));
    EXPECT_EQ(text.replace(Char('x'), Char('y')), 0);
    String zeros = test::literal(OXA_TEXT("aa\0aa"));
    EXPECT_EQ(zeros.replace(Char('a'), Char('b')), 2);
    EXPECT_EQ(zeros.view(), TextView(OXA_TEXT("bb\0aa"), 5));
    String nil;
    EXPECT_EQ(nil.replace(Char('a'), Char('b')), 0);
    EXPECT_TRUE(nil.isNil());
}

TEST(StringEdit, ReplacesTextsWithoutScanningTheInsertion)
{
    const struct
    {
        String text;
        String from;
        String to;
        int count;
        String expected;
    } cases[] = {
        {OXA_TEXT("a.b.c"), OXA_TEXT("."), OXA_TEXT(".."), 2, OXA_TEXT("a..b..c")},
        {OXA_TEXT("aaaa"), OXA_TEXT("aa"), OXA_TEXT("a"), 2, OXA_TEXT("aa")},
        {OXA_TEXT("abc"), OXA_TEXT("abc"), String::NIL, 1, String::EMPTY},
        {OXA_TEXT("one two one"), OXA_TEXT("one"), OXA_TEXT("three"), 2, OXA_TEXT("three two three")},
        {OXA_TEXT("abc"), OXA_TEXT("x"), OXA_TEXT("y"), 0, OXA_TEXT("abc")},
        {OXA_TEXT("abc"), String::EMPTY, OXA_TEXT("y"), 0, OXA_TEXT("abc")},
        {OXA_TEXT("abc"), String::NIL, OXA_TEXT("y"), 0, OXA_TEXT("abc")},
        {String::NIL, OXA_TEXT("a"), OXA_TEXT("b"), 0, String::NIL},
    };
    for (const auto& [text, from, to, count, expected] : cases)
    {
        String byStrings = text;
        EXPECT_EQ(byStrings.replace(from, to), count);
        EXPECT_TRUE(byStrings.compareEquality(expected)) << testing::PrintToString(byStrings);
        String byPointers = text;
        const Char* const pattern = from.isNil() ? nullptr : from.stringPath();
        const Char* const replacement = to.isNil() ? nullptr : to.stringPath();
        EXPECT_EQ(byPointers.replace(pattern, replacement), count);
        EXPECT_TRUE(byPointers.compareEquality(expected));
        EXPECT_EQ(String(text).replace(pattern, to), count);
        EXPECT_EQ(String(text).replace(from, replacement), count);
    }
    String zeros = test::literal(OXA_TEXT("a\0a"));
    EXPECT_EQ(zeros.replace(OXA_TEXT("a"), OXA_TEXT("bc")), 1);
    EXPECT_EQ(zeros.view(), TextView(OXA_TEXT("bc\0a"), 4));
    String self(OXA_TEXT("ab"));
    EXPECT_EQ(self.replace(self.stringPath() + 1, self.stringPath()), 1);
    EXPECT_EQ(self, OXA_TEXT("aab"));
}

TEST(StringEdit, ReverseTurnsUnits)
{
    String text(OXA_TEXT("abc\U0001F600"));
    text.reverse();
    const Text expected{0xDE00, 0xD83D, 'c', 'b', 'a'};
    EXPECT_EQ(text.view(), expected);
    String nil;
    nil.reverse();
    EXPECT_TRUE(nil.isNil());
}

TEST(StringEdit, ShortenedTexts)
{
    const String path(OXA_TEXT("/home/user/scans/hall/floor2/scan009.txt"));
    const struct
    {
        int maxLength;
        int headLength;
        const Char* expected;
    } cases[] = {
        {40, 5, path.stringPath()},
        {30, 0, OXA_TEXT(".../hall/floor2/scan009.txt")},
        {30, 8, OXA_TEXT("/home/.../floor2/scan009.txt")},
        {30, 6, OXA_TEXT("/home/.../floor2/scan009.txt")},
        {15, 1, OXA_TEXT("/...scan009.txt")},
        {25, 3, OXA_TEXT("/ho.../floor2/scan009.txt")},
        {10, 20, OXA_TEXT("/home/u...")},
        {3, 5, OXA_TEXT("...")},
        {2, 5, OXA_TEXT("..")},
        {0, 5, OXA_TEXT("")},
        {-4, -5, OXA_TEXT("")},
    };
    for (const auto& [maxLength, headLength, expected] : cases)
        EXPECT_EQ(path.shortenString(maxLength, headLength), expected) << maxLength << ' ' << headLength;
    EXPECT_TRUE(String::NIL.shortenString(3, 0).isNil() && String::NIL.shortenString(-1, 0).isNil());

    // Whatever is asked for: it fits, begins like the text or with the ellipsis, and ends like the text.
    for (int maxLength = 0; maxLength < 45; ++maxLength)
    {
        for (int headLength = -1; headLength < 45; ++headLength)
        {
            const String result = path.shortenString(maxLength, headLength);
            ASSERT_LE(result.length(), maxLength);
            const int ellipsis = result.find(OXA_TEXT("..."));
            if (maxLength < 3 || maxLength >= path.length()) continue;
            ASSERT_GE(ellipsis, 0);
            ASSERT_TRUE(path.startsWith(result.substr(0, ellipsis)));
            const String tail = result.substr(ellipsis + 3);
            ASSERT_TRUE(tail.isEmpty() || path.endsWith(tail));
        }
    }
}

TEST(StringEscape, ControlsBecomeEscapes)
{
    const struct
    {
        String text;
        bool unicode;
        String escaped;
    } cases[] = {
        {OXA_TEXT("a\nb\u00E9"), true, OXA_TEXT("a\\nb\\u00E9")},
        {OXA_TEXT("a\nb\u00E9"), false, OXA_TEXT("a\\nb\u00E9")},
        {OXA_TEXT("\r\"\\\t"), true, OXA_TEXT("\\r\\\"\\\\\t")},
        {OXA_TEXT("\U0001F600"), true, OXA_TEXT("\\uD83D\\uDE00")},
        {OXA_TEXT("\uFFFF\x7F\x80"), true, OXA_TEXT("\\uFFFF\x7F\\u0080")},
        {test::literal(OXA_TEXT("\n\0\n")), true, test::literal(OXA_TEXT("\\n\0\\n"))},
        {OXA_TEXT("plain"), true, OXA_TEXT("plain")},
        {String::EMPTY, true, String::EMPTY},
        {String::NIL, true, String::NIL},
    };
    for (const auto& [text, unicode, escaped] : cases)
    {
        String changed = text;
        changed.controlsToEsc(unicode);
        EXPECT_TRUE(changed.compareEquality(escaped) && changed.view() == escaped.view())
            << testing::PrintToString(text) << testing::PrintToString(changed);
    }
}

TEST(StringEscape, EscapesBecomeControlsUpToTheFirstUnknownOne)
{
    const struct
    {
        String text;
        bool unicode;
        int count;
        String expected;
    } cases[] = {
        {OXA_TEXT("a\\nb\\r\\\"\\\\c"), false, 4, OXA_TEXT("a\nb\r\"\\c")},
        {OXA_TEXT("\\u00e9\\u4E2D"), true, 2, OXA_TEXT("\u00E9\u4E2D")},
        {OXA_TEXT("\\n\\u00e9\\n"), false, 1, OXA_TEXT("\n\\u00e9\\n")},
        {OXA_TEXT("\\n\\t\\n"), true, 1, OXA_TEXT("\n\\t\\n")},
        {OXA_TEXT("\\u00eg\\n"), true, 0, OXA_TEXT("\\u00eg\\n")},
        {OXA_TEXT("\\n\\u00e"), true, 1, OXA_TEXT("\n\\u00e")},
        {OXA_TEXT("\\\\n"), true, 1, OXA_TEXT("\\n")},
        {OXA_TEXT("\\"), true, 0, OXA_TEXT("\\")},
        {OXA_TEXT("a\\n\\"), true, 1, OXA_TEXT("a\n\\")},
        {OXA_TEXT("plain"), true, -1, OXA_TEXT("plain")},
        {String::EMPTY, true, -1, String::EMPTY},
        {String::NIL, true, -1, String::NIL},
    };
    for (const auto& [text, unicode, count, expected] : cases)
    {
        String changed = text;
        EXPECT_EQ(changed.escToControls(unicode), count) << testing::PrintToString(text);
        EXPECT_TRUE(changed.compareEquality(expected)) << testing::PrintToString(changed);
    }
}

TEST(StringEscape, WhatWasEscapedComesBack)
{
    std::mt19937 random(4);
    constexpr Char ALPHABET[] = {'\n', '\r', '"', '\\', 'n', 'u', '0', 0, 0xE4, 0xD83D, 0xFFFF};
    for (int round = 0; round < 5000; ++round)
    {
        Text text(random() % 30, Char(0));
        for (Char& c : text) c = ALPHABET[random() % std::size(ALPHABET)];
        String changed(text);
        changed.controlsToEsc(true);
        EXPECT_TRUE(std::all_of(changed.view().begin(), changed.view().end(), [](Char c) { return c < 0x80; }));
        changed.escToControls(true);
        ASSERT_EQ(changed.view(), TextView(text));
    }
}

}  // namespace

}  // namespace Oxa_1_1
