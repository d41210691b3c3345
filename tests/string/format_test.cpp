// Appending and concatenation.

#include <gtest/gtest.h>

#include <atomic>
#include <bit>
#include <bitset>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <limits>
#include <random>
#include <vector>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

template <class T>
std::string appended(T value)
{
    return (String() << value).stringAnsi();
}

template <class T>
void expectLimits()
{
    using Limits = std::numeric_limits<T>;
    EXPECT_EQ(appended(Limits::min()), std::to_string(Limits::min()));
    EXPECT_EQ(appended(Limits::max()), std::to_string(Limits::max()));
}

TEST(StringFormat, IntegersOfEverySizeAreDecimal)
{
    expectLimits<signed char>();
    expectLimits<unsigned char>();
    expectLimits<short>();
    expectLimits<unsigned short>();
    expectLimits<int>();
    expectLimits<unsigned int>();
    expectLimits<long>();
    expectLimits<unsigned long>();
    expectLimits<long long>();
    expectLimits<unsigned long long>();
    EXPECT_EQ(appended(static_cast<signed char>(65)), "65");
    // Every number of digits.
    for (std::uint64_t power = 1; power < 1000000000000000000u; power *= 10)
        for (const std::uint64_t value : {power - 1, power, power + 1})
            EXPECT_EQ(appended(value), std::to_string(value));
}

TEST(StringFormat, NilBecomesWhatIsAppended)
{
    EXPECT_EQ(String() << 7, OXA_TEXT("7"));
    EXPECT_EQ((String() += true) << false, OXA_TEXT("truefalse"));
    EXPECT_TRUE((String() += Char(0)).compareEquality(String::EMPTY));
    EXPECT_TRUE((String() += OXA_TEXT("")).compareEquality(String::EMPTY));
    EXPECT_TRUE((String() += String::EMPTY).compareEquality(String::EMPTY));
    EXPECT_TRUE((String() += String::NIL).isNil());
    EXPECT_TRUE((String() += static_cast<const Char*>(nullptr)).isNil());
    EXPECT_EQ(String(OXA_TEXT("a")) += static_cast<const Char*>(nullptr), OXA_TEXT("a"));
    EXPECT_EQ(String(OXA_TEXT("a")) += String::NIL, OXA_TEXT("a"));
    EXPECT_EQ(String(OXA_TEXT("a")) += Char(0), OXA_TEXT("a"));
}

TEST(StringFormat, WhatIsTrueOrFalseByNatureIsWrittenSo)
{
    std::vector<bool> bits{true, false};
    const std::atomic<bool> flag{true};
    const std::bitset<2> set(1);
    std::bitset<2> changing(1);
    bool plain = true;
    EXPECT_EQ(String() << bits[0] << bits[1] << flag << set[1], OXA_TEXT("truefalsetruefalse"));
    EXPECT_EQ(String() << changing[0] << std::true_type{} << std::ref(plain), OXA_TEXT("truetruetrue"));
    EXPECT_EQ((String() << std::atomic<int>{7} << std::integral_constant<int, 1>{}), OXA_TEXT("71"));
}

TEST(StringFormat, CharactersOfEveryTypeAreCharacters)
{
    EXPECT_EQ(String() << 'a' << '\xE4' << u8'b' << L'c' << u'd', OXA_TEXT("a\u00E4bcd"));
    EXPECT_EQ(String() << U'\u20AC' << U'\U0001F600' << char32_t(0x110000), OXA_TEXT("\u20AC\U0001F600\uFFFD"));
    EXPECT_TRUE((String() += '\0').compareEquality(String::EMPTY));
    EXPECT_EQ(String('\x80', 2) + String(U'\U0001F600', 2), OXA_TEXT("\u20AC\u20AC\U0001F600\U0001F600"));

    // Searches and replacements keep both halves together.
    String text(OXA_TEXT("\U0001F600a\U0001F600b\U0001F601"));
    EXPECT_EQ(text.findLastOf(U'\U0001F600'), 3);
    EXPECT_EQ(text.findLastOf(U'\U0001F600', 4), -1);
    EXPECT_EQ(text.findLastOf(L'b') + text.find(U'\U0001F600', 1) + text.find('a'), 5 + 3 + 2);
    EXPECT_EQ(text.replace(U'\U0001F600', L'x'), 2);
    EXPECT_EQ(text.replace('x', U'\U0001F602'), 2);
    EXPECT_EQ(text, OXA_TEXT("\U0001F602a\U0001F602b\U0001F601"));
    EXPECT_EQ(String(OXA_TEXT("\u00E4")).compare('\xE4') + String(OXA_TEXT("B")).compareIgnoreCase(u8'b'), 0);
}

TEST(StringFormat, OnlyTheTextBeforeTheFirstZeroIsAppended)
{
    const String zero = test::literal(OXA_TEXT("b\0c"));
    EXPECT_EQ((String(OXA_TEXT("a")) += zero).length(), 2);
    EXPECT_EQ((String() += zero).length(), 3);
    EXPECT_EQ((String() += zero.view()).length(), 1);
    EXPECT_EQ((String() += Text(zero.view())).length(), 3);
    String self(OXA_TEXT("abcdefgh"));
    self += self;
    self += self.stringPath() + 8;
    EXPECT_EQ(self, OXA_TEXT("abcdefghabcdefghabcdefgh"));
}

TEST(StringFormat, WhatIsAppendedIsTheSameWithRoomAndWithout)
{
    for (int length = 0; length < 100; ++length)
    {
        String text(Char('x'), length);
        std::string expected(static_cast<std::size_t>(length), 'x');
        const auto append = [&](auto value)
        {
            text << value;
            expected += appended(value);
        };
        for (int i = 0; i < 3; ++i)
        {
            append(std::numeric_limits<long long>::min());
            append(7U);
            append(-999999999999999872.5);
            append(-123456789.123456789F);
            append(-1.2345678e-300);
            append(1e300);
            append(String(OXA_TEXT("0123456789abcdef")));
        }
        ASSERT_EQ(text.stringAnsi(), expected);
        ASSERT_EQ(text.stringPath()[text.length()], 0);
    }
}

enum Enumeration
{
    ENUMERATOR = 7
};

TEST(StringFormat, ConcatenationLeavesItsOperands)
{
    const String a(OXA_TEXT("a"));
    const String nil;
    const Char* const noText = nullptr;
    EXPECT_EQ(a + String(OXA_TEXT("b")), OXA_TEXT("ab"));
    EXPECT_EQ(a + OXA_TEXT("b"), OXA_TEXT("ab"));
    EXPECT_EQ(a + Char('b'), OXA_TEXT("ab"));
    EXPECT_EQ(OXA_TEXT("b") + a, OXA_TEXT("ba"));
    EXPECT_EQ(Char('b') + a, OXA_TEXT("ba"));
    EXPECT_EQ(Char(0) + a, OXA_TEXT("a"));
    EXPECT_EQ(noText + a, OXA_TEXT("a"));
    EXPECT_EQ(a + noText, OXA_TEXT("a"));
    EXPECT_EQ(nil + a, OXA_TEXT("a"));
    EXPECT_EQ(a + nil, OXA_TEXT("a"));
    EXPECT_TRUE((nil + nil).isNil() && (noText + nil).isNil() && (nil + noText).isNil());
    EXPECT_TRUE((Char(0) + nil).compareEquality(String::EMPTY));
    EXPECT_EQ(a + OXA_TEXT("b") + Char('c') + a + OXA_TEXT("a text long enough to be allocated"),
              OXA_TEXT("abcaa text long enough to be allocated"));
    // Numbers are written as += writes them, on either side.
    EXPECT_EQ(a + 5 + 1.5 + true + ENUMERATOR + std::true_type{} + 'b' + U'c', OXA_TEXT("a51.5true7truebc"));
    EXPECT_EQ(5 + a + -1L, OXA_TEXT("5a-1"));
    EXPECT_EQ(true + a + (1.5f + a) + ('b' + a), OXA_TEXT("truea1.5aba"));
    EXPECT_EQ(a, OXA_TEXT("a"));
}

TEST(StringFormat, FloatingPointTexts)
{
    constexpr double INFINITE = std::numeric_limits<double>::infinity();
    const struct
    {
        double value;
        const char* text;
    } doubles[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1, "1"},
        {0.5, "0.5"},
        {10, "10"},
        {-1234.5, "-1234.5"},
        {12345678.9, "12345678.9"},
        {1.0 / 3, "0.33333333"},
        {2.0 / 3, "0.66666667"},
        {1000.0 / 3, "333.333333333"},
        {0.999999999, "1"},
        {9.9999999999, "10"},
        {0.0001, "0.0001"},
        {0.00009999999999, "0.0001"},
        {0.000012345678912, "1.2345679e-05"},
        {1e-5, "1e-05"},
        {1e-100, "1e-100"},
        {5e-324, "4.9406565e-324"},
        {0.1 + 0.2, "0.3"},
        {2.5e-9, "2.5e-09"},
        {1e15, "1000000000000000"},
        {1e23, "99999999999999991611392"},
        {18446744073709551616.0, "18446744073709551616"},
        {9007199254740993.0, "9007199254740992"},
        {0.0000000005 + 1, "1.000000001"},
        {1.0000000005, "1.000000001"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {INFINITE, "inf"},
        {-INFINITE, "-inf"},
    };
    for (const auto& [value, text] : doubles) EXPECT_EQ(appended(value), text);
    EXPECT_EQ(appended(std::numeric_limits<double>::max()).size(), 309u);

    const struct
    {
        float value;
        const char* text;
    } floats[] = {
        {123.456f, "123.456"},     {3.14159265f, "3.14159"},    {0.5f, "0.5"},
        {1234567.0f, "1234567"},   {0.000012345f, "1.234e-05"}, {0.1f, "0.1"},
        {16777216.0f, "16777216"}, {1.0f / 3, "0.3333"},        {1e10f, "10000000000"},
    };
    for (const auto& [value, text] : floats) EXPECT_EQ(appended(value), text);
    EXPECT_EQ(appended(1.5L), "1.5");
}

/// The texts of the run-time library, with a precision that a table of powers of ten gives.
std::string printed(double value, int decimals, int digitsBelowOne)
{
    const double magnitude = std::fabs(value);
    int precision = digitsBelowOne;
    if (magnitude == 0) precision = 1;
    if (magnitude >= 1)
    {
        int power = 0;
        while (power < 309 && std::strtod(("1e" + std::to_string(power)).c_str(), nullptr) < magnitude) ++power;
        precision = power + decimals;
    }
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.*g", precision, value);
    return buffer;
}

TEST(StringFormat, RandomFloatingPointNumbersPrintLikeTheRunTimeLibrary)
{
    std::mt19937_64 random(1);
    const auto check = [](double value)
    {
        ASSERT_EQ(appended(value), printed(value, 9, 8));
        const auto single = static_cast<float>(value);
        if (!std::isfinite(single)) return;
        ASSERT_EQ(appended(single), printed(single, 5, 4));
    };
    for (int i = 0; i < 10000; ++i)
    {
        // Any bits, common magnitudes, decimal fractions, and ties.
        const auto anyBits = std::bit_cast<double>(random());
        if (std::isfinite(anyBits)) check(anyBits);
        check(std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 120) - 110));
        check(static_cast<double>(random() % 20000000) / 1000);
        check(static_cast<double>(random() % 65536) / (1 << random() % 20));
    }
}

}  // namespace

}  // namespace Oxa_1_1
