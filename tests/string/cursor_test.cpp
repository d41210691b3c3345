// The trailing index and destructive extraction.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(StringIndex, StepsInPlace)
{
    const struct
    {
        String text;
        unsigned int index;
        String next;
        String previous;
    } cases[] = {
        {OXA_TEXT("scan012"), 12, OXA_TEXT("scan013"), OXA_TEXT("scan011")},
        {OXA_TEXT("scan"), 0, OXA_TEXT("scan1"), OXA_TEXT("scan1")},
        {String::NIL, 0, OXA_TEXT("1"), OXA_TEXT("1")},
        {OXA_TEXT(""), 0, OXA_TEXT("1"), OXA_TEXT("1")},
        {OXA_TEXT("2024"), 2024, OXA_TEXT("2025"), OXA_TEXT("2023")},
        {OXA_TEXT("scan009"), 9, OXA_TEXT("scan010"), OXA_TEXT("scan008")},
        {OXA_TEXT("name99"), 99, OXA_TEXT("name100"), OXA_TEXT("name98")},
        {OXA_TEXT("name010"), 10, OXA_TEXT("name011"), OXA_TEXT("name009")},
        {OXA_TEXT("name10"), 10, OXA_TEXT("name11"), OXA_TEXT("name09")},
        {OXA_TEXT("name000"), 0, OXA_TEXT("name001"), OXA_TEXT("name000")},
        {OXA_TEXT("v-1.5"), 5, OXA_TEXT("v-1.6"), OXA_TEXT("v-1.4")},
        {OXA_TEXT("2147483647"), INT_MAX, OXA_TEXT("2147483648"), OXA_TEXT("2147483646")},
        // Too long for a number: the digits themselves are stepped.
        {OXA_TEXT("at20261121235959"), INT_MAX, OXA_TEXT("at20261121235960"), OXA_TEXT("at20261121235958")},
        {OXA_TEXT("99999999999999999999"), INT_MAX, OXA_TEXT("100000000000000000000"),
         OXA_TEXT("99999999999999999998")},
        {OXA_TEXT("\u0661"), 0, OXA_TEXT("\u06611"), OXA_TEXT("\u06611")},
    };
    for (const auto& [text, index, next, previous] : cases)
    {
        EXPECT_EQ(text.getIndex(), index) << testing::PrintToString(text);
        String up = text;
        up.incrementIndex();
        EXPECT_EQ(up, next);
        String down = text;
        down.decrementIndex();
        EXPECT_EQ(down, previous);
    }
}

TEST(StringIndex, IsReplacedWithoutPadding)
{
    const struct
    {
        String text;
        unsigned int index;
        String expected;
    } cases[] = {
        {OXA_TEXT("scan012"), 5, OXA_TEXT("scan5")},
        {OXA_TEXT("scan012"), 0, OXA_TEXT("scan")},
        {OXA_TEXT("012"), 0, OXA_TEXT("0")},
        {OXA_TEXT("012"), 7, OXA_TEXT("7")},
        {String::NIL, 0, OXA_TEXT("0")},
        {String::EMPTY, 3, OXA_TEXT("3")},
        {OXA_TEXT("a"), UINT_MAX, OXA_TEXT("a4294967295")},
    };
    for (const auto& [text, index, expected] : cases)
    {
        String changed = text;
        changed.setIndex(index);
        EXPECT_EQ(changed, expected);
    }
}

template <class T>
struct ExtractCase
{
    String text;
    T value;
    String rest;
};

template <class T>
void expectExtracted(std::initializer_list<ExtractCase<T>> cases)
{
    for (const auto& [text, value, rest] : cases)
    {
        String cursor = text;
        T read = static_cast<T>(7);
        EXPECT_EQ(&(cursor >> read), &cursor);
        EXPECT_EQ(read, value) << testing::PrintToString(text);
        EXPECT_TRUE(cursor.compareEquality(rest)) << testing::PrintToString(text) << testing::PrintToString(cursor);
    }
}

TEST(StringExtract, SignedIntegers)
{
    expectExtracted<int>({
        {OXA_TEXT(" 12 34"), 12, OXA_TEXT(" 34")},
        {OXA_TEXT("-12,"), -12, OXA_TEXT(",")},
        {OXA_TEXT("abc"), 0, OXA_TEXT("abc")},
        {OXA_TEXT("  abc"), 0, OXA_TEXT("abc")},
        {OXA_TEXT("+5"), 5, OXA_TEXT("+5")},
        {OXA_TEXT(".5"), 0, OXA_TEXT(".5")},
        {OXA_TEXT("12-5 7"), 12, OXA_TEXT(" 7")},
        {OXA_TEXT("--5;"), 0, OXA_TEXT(";")},
        {OXA_TEXT("(9)"), 9, OXA_TEXT(")")},
        {OXA_TEXT("   "), 0, String::EMPTY},
        {String::NIL, 0, String::EMPTY},
        {String::EMPTY, 0, String::EMPTY},
        {OXA_TEXT("2147483648"), INT_MAX, String::EMPTY},
        {OXA_TEXT("-2147483648"), INT_MIN, String::EMPTY},
        {OXA_TEXT("-99999999999999999999 x"), INT_MIN, OXA_TEXT(" x")},
        // Digits of other scripts are none, and no letters either.
        {OXA_TEXT("\u0663"), 0, String::EMPTY},
        {OXA_TEXT("\u0663 5"), 5, String::EMPTY},
    });
    expectExtracted<long>({{OXA_TEXT("-99999999999999999999 1"), LONG_MIN, OXA_TEXT(" 1")}});
    expectExtracted<std::int64_t>({{OXA_TEXT("-81985529216486896"), -81985529216486896, String::EMPTY}});
    expectExtracted<long long>({{OXA_TEXT("99999999999 1"), 99999999999, OXA_TEXT(" 1")},
                                {OXA_TEXT("9223372036854775808"), LLONG_MAX, String::EMPTY},
                                {OXA_TEXT("-9223372036854775809"), LLONG_MIN, String::EMPTY}});
    expectExtracted<signed char>({{OXA_TEXT("200 1"), -56, OXA_TEXT(" 1")}});
    expectExtracted<unsigned char>({{OXA_TEXT("-1 1"), 255, OXA_TEXT(" 1")}});
    expectExtracted<short>({{OXA_TEXT("65535"), -1, String::EMPTY}});
    expectExtracted<unsigned short>({{OXA_TEXT("-2"), 65534, String::EMPTY}});
}

TEST(StringExtract, UnsignedIntegers)
{
    expectExtracted<unsigned int>({
        {OXA_TEXT(" 12 34"), 12, OXA_TEXT(" 34")},
        {OXA_TEXT("+5-"), 5, OXA_TEXT("-")},
        {OXA_TEXT("12-5"), 12, OXA_TEXT("-5")},
        {OXA_TEXT("-5"), 4294967291, String::EMPTY},
        {OXA_TEXT("  abc"), 0, OXA_TEXT("abc")},
        {OXA_TEXT("  -"), 0, OXA_TEXT("-")},
        {OXA_TEXT("4294967296 "), UINT_MAX, OXA_TEXT(" ")},
        {OXA_TEXT("-4294967296"), UINT_MAX, String::EMPTY},
        {OXA_TEXT("  "), 0, String::EMPTY},
        {String::NIL, 0, String::EMPTY},
    });
    expectExtracted<unsigned long>(
        {{OXA_TEXT("-1"), ULONG_MAX, String::EMPTY}, {OXA_TEXT("99999999999999999999"), ULONG_MAX, String::EMPTY}});
    expectExtracted<std::uint64_t>({{OXA_TEXT("81985529216486896"), 81985529216486896, String::EMPTY}});
    expectExtracted<unsigned long long>({{OXA_TEXT("18446744073709551615"), ULLONG_MAX, String::EMPTY},
                                         {OXA_TEXT("18446744073709551616"), ULLONG_MAX, String::EMPTY},
                                         {OXA_TEXT("-1"), ULLONG_MAX, String::EMPTY}});
}

TEST(StringExtract, FloatingPointNumbers)
{
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    expectExtracted<double>({
        {OXA_TEXT(" 1.5 2"), 1.5, OXA_TEXT(" 2")},
        {OXA_TEXT("-.5e1x"), -5, OXA_TEXT("x")},
        {OXA_TEXT("+2.e-1"), 0.2, String::EMPTY},
        {OXA_TEXT("1e"), 1, OXA_TEXT("e")},
        {OXA_TEXT("1e+"), 1, OXA_TEXT("e+")},
        {OXA_TEXT("1.2.3"), 1.2, OXA_TEXT(".3")},
        {OXA_TEXT("1,5"), 1, OXA_TEXT(",5")},
        {OXA_TEXT("."), 0, OXA_TEXT(".")},
        {OXA_TEXT("  word"), 0, OXA_TEXT("word")},
        {OXA_TEXT("0x1.8p1;"), 3, OXA_TEXT(";")},
        {OXA_TEXT("0xg"), 0, OXA_TEXT("xg")},
        {OXA_TEXT("+\x10x1F"), 0, OXA_TEXT("+\x10x1F")},
        {OXA_TEXT("-Infinity!"), -INFINITE, OXA_TEXT("!")},
        {OXA_TEXT("inf inf"), INFINITE, OXA_TEXT(" inf")},
        // Its lower case is an i, but only letters of ASCII count.
        {OXA_TEXT("\u0130nf"), 0, OXA_TEXT("\u0130nf")},
        {OXA_TEXT("1e400 "), INFINITE, OXA_TEXT(" ")},
        {OXA_TEXT("-1e400"), -INFINITE, String::EMPTY},
        {OXA_TEXT("1e-400"), 0, String::EMPTY},
        {OXA_TEXT("0.00000000000000000000000000000001e340"), 1e308, String::EMPTY},
        {OXA_TEXT("1e99999999999999999999"), INFINITE, String::EMPTY},
        {OXA_TEXT("1e-99999999999999999999"), 0, String::EMPTY},
        {OXA_TEXT("4.9e-324"), 5e-324, String::EMPTY},
        {OXA_TEXT("9007199254740993"), 9007199254740992.0, String::EMPTY},
        {OXA_TEXT("\t"), 0, String::EMPTY},
        {String::NIL, 0, String::EMPTY},
    });
    expectExtracted<float>({{OXA_TEXT("0.1 "), 0.1f, OXA_TEXT(" ")}});

    String nan(OXA_TEXT("nan(1) -NaN nan(;"));
    for (const TextView rest :
         {TextView(OXA_TEXT(" -NaN nan(;")), TextView(OXA_TEXT(" nan(;")), TextView(OXA_TEXT("(;"))})
    {
        double value = 0;
        nan >> value;
        EXPECT_TRUE(std::isnan(value));
        EXPECT_EQ(nan, rest);
    }
    // What appending writes, extraction reads.
    for (const double value : {0.5, -12345678.9, 1e-7, 5e-324, INFINITE, -INFINITE})
    {
        String text = String() << value;
        double back = 0;
        text >> back;
        EXPECT_EQ(back, value);
    }
}

TEST(StringExtract, TruthValues)
{
    expectExtracted<bool>({
        {OXA_TEXT("TRUE rest"), true, OXA_TEXT(" rest")},
        {OXA_TEXT(" falsehood"), false, OXA_TEXT("hood")},
        {OXA_TEXT("  maybe"), false, OXA_TEXT("  maybe")},
        {OXA_TEXT("tru"), false, OXA_TEXT("tru")},
        {OXA_TEXT("1 0"), true, OXA_TEXT(" 0")},
        {OXA_TEXT("0 1"), false, OXA_TEXT(" 1")},
        {OXA_TEXT("-3"), true, String::EMPTY},
        {OXA_TEXT(" "), false, String::EMPTY},
        {String::NIL, false, String::EMPTY},
    });
}

TEST(StringExtract, Characters)
{
    expectExtracted<Char>({
        {OXA_TEXT(" \tab"), 'a', OXA_TEXT("b")},
        {OXA_TEXT("\u00A0\u4E2D"), 0x4E2D, String::EMPTY},
        {OXA_TEXT("  "), 0, String::EMPTY},
        {String::NIL, 0, String::EMPTY},
    });
    expectExtracted<ForeignChar>({{OXA_TEXT(" ab"), 'a', OXA_TEXT("b")}});
    // The whole character where the type has room for it, else its first half.
    String pair(OXA_TEXT("\U0001F600\U0001F600"));
    ForeignChar first = 0;
    pair >> first;
    EXPECT_EQ(pair.length(), sizeof(ForeignChar) == 4 ? 2 : 3);
    EXPECT_EQ(static_cast<std::uint32_t>(first), sizeof(ForeignChar) == 4 ? 0x1F600u : 0xD83Du);
    expectExtracted<ForeignChar>({{String(Char(0xD83D), 1) + OXA_TEXT("a"), ForeignChar(0xD83D), OXA_TEXT("a")}});
}

TEST(StringExtract, Texts)
{
    const struct
    {
        String text;
        String value;
        String rest;
    } cases[] = {
        {OXA_TEXT("line one\nline two"), OXA_TEXT("line one"), OXA_TEXT("line two")},
        {OXA_TEXT("last line"), OXA_TEXT("last line"), String::EMPTY},
        {OXA_TEXT("\n"), String::EMPTY, String::EMPTY},
        {OXA_TEXT(" \"a\""), OXA_TEXT(" \"a\""), String::EMPTY},
        {OXA_TEXT("\"a \\\"b\\\" c\" rest"), OXA_TEXT("a \\\"b\\\" c"), OXA_TEXT(" rest")},
        {OXA_TEXT("\"a\nb\"c"), OXA_TEXT("a\nb"), OXA_TEXT("c")},
        {OXA_TEXT("\"a\\\\\"b"), OXA_TEXT("a\\\\"), OXA_TEXT("b")},
        {OXA_TEXT("\"\"x"), String::EMPTY, OXA_TEXT("x")},
        {OXA_TEXT("\"open \\\""), OXA_TEXT("open \\\""), String::EMPTY},
        {String::EMPTY, String::EMPTY, String::EMPTY},
        {String::NIL, String::EMPTY, String::EMPTY},
    };
    for (const auto& [text, value, rest] : cases)
    {
        String cursor = text;
        String read;
        cursor >> read;
        EXPECT_TRUE(read.compareEquality(value)) << testing::PrintToString(text) << testing::PrintToString(read);
        EXPECT_TRUE(cursor.compareEquality(rest)) << testing::PrintToString(text) << testing::PrintToString(cursor);
        String self = text;
        self >> self;
        EXPECT_TRUE(self.compareEquality(value));
    }
}

TEST(StringExtract, EatwhiteKeepsATextOfBlanks)
{
    const struct
    {
        String text;
        String expected;
    } cases[] = {
        {OXA_TEXT(" \t\r\n\u00A0\u200B\uFEFFa b "), OXA_TEXT("a b ")},
        {OXA_TEXT("   "), OXA_TEXT("   ")},
        {OXA_TEXT("a"), OXA_TEXT("a")},
        {OXA_TEXT(" \U0001F600"), OXA_TEXT("\U0001F600")},
        {String::NIL, String::NIL},
        {String::EMPTY, String::EMPTY},
    };
    for (const auto& [text, expected] : cases)
    {
        String eaten = text;
        eaten.eatwhite();
        EXPECT_TRUE(eaten.compareEquality(expected)) << testing::PrintToString(text);
    }
}

}  // namespace

}  // namespace Oxa_1_1
