// The reader beside `>>` of String, and numbers beside the standard library's.

#include "base/string/text_reader.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cstdint>
#include <random>
#include <type_traits>
#include <vector>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

static_assert(!std::is_constructible_v<TextReader, String> && !std::is_constructible_v<TextReader, Text>,
              "it would read what is gone");
static_assert(std::is_constructible_v<TextReader, const String&>);
static_assert(std::is_constructible_v<TextReader, TextView> && std::is_constructible_v<TextReader, const Text&>);

template <class T>
auto bitsOf(const T& value)
{
    // So that a NaN is equal to itself, and zeros of both signs differ.
    if constexpr (std::is_same_v<T, double>)
        return std::bit_cast<std::uint64_t>(value);
    else if constexpr (std::is_same_v<T, float>)
        return std::bit_cast<std::uint32_t>(value);
    else
        return value;
}

/// One read of both, after which both have the same rest.
template <class T>
void readBoth(String& cursor, TextReader& reader)
{
    T expected{};
    T value{};
    cursor >> expected;
    EXPECT_EQ(&(reader >> value), &reader);
    EXPECT_EQ(bitsOf(value), bitsOf(expected));
}

constexpr int KINDS = 17;

void readBoth(int kind, String& cursor, TextReader& reader)
{
    switch (kind)
    {
        case 0:
            return readBoth<signed char>(cursor, reader);
        case 1:
            return readBoth<unsigned char>(cursor, reader);
        case 2:
            return readBoth<short>(cursor, reader);
        case 3:
            return readBoth<unsigned short>(cursor, reader);
        case 4:
            return readBoth<int>(cursor, reader);
        case 5:
            return readBoth<long>(cursor, reader);
        case 6:
            return readBoth<long long>(cursor, reader);
        case 7:
            return readBoth<unsigned int>(cursor, reader);
        case 8:
            return readBoth<unsigned long>(cursor, reader);
        case 9:
            return readBoth<unsigned long long>(cursor, reader);
        case 10:
            return readBoth<float>(cursor, reader);
        case 11:
            return readBoth<double>(cursor, reader);
        case 12:
            return readBoth<bool>(cursor, reader);
        case 13:
            return readBoth<Char>(cursor, reader);
        case 14:
            return readBoth<ForeignChar>(cursor, reader);
        case 15:
            return readBoth<String>(cursor, reader);
        default:
            cursor.eatwhite();
            reader.eatwhite();
    }
}

TEST(TextReader, ReadsWhatExtractionDoes)
{
    constexpr TextView PARTS[] = {OXA_TEXT("0"),
                                  OXA_TEXT("12"),
                                  OXA_TEXT("99999999999999999999"),
                                  OXA_TEXT("-"),
                                  OXA_TEXT("+"),
                                  OXA_TEXT("."),
                                  OXA_TEXT("e"),
                                  OXA_TEXT("E-3"),
                                  OXA_TEXT("0x"),
                                  OXA_TEXT("inf"),
                                  OXA_TEXT("NaN("),
                                  OXA_TEXT("True"),
                                  OXA_TEXT("false"),
                                  OXA_TEXT("x"),
                                  OXA_TEXT(" "),
                                  OXA_TEXT(" "),
                                  OXA_TEXT("\t"),
                                  OXA_TEXT("\n"),
                                  OXA_TEXT("\""),
                                  OXA_TEXT("\\"),
                                  OXA_TEXT("\u00E4"),
                                  OXA_TEXT("\u0663"),
                                  OXA_TEXT("\u0130"),
                                  OXA_TEXT("\U0001F600"),
                                  TextView(OXA_TEXT("\xDC00\0"), 2)};
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round)
    {
        Text text;
        for (auto count = random() % 12; count > 0; --count) text += PARTS[random() % std::size(PARTS)];
        const String whole(text);
        String cursor(whole);
        TextReader reader(whole);
        for (int reads = 0; reads < 8; ++reads)
        {
            readBoth(static_cast<int>(random() % KINDS), cursor, reader);
            ASSERT_EQ(reader.rest(), cursor.view()) << testing::PrintToString(whole);
            ASSERT_EQ(reader.rest(), whole.view().substr(reader.position()));
            ASSERT_EQ(reader.isAtEnd(), cursor.isEmpty());
        }
    }
}

template <class T>
void expectFound(TextView text, bool found)
{
    TextReader reader(text);
    EXPECT_FALSE(reader);
    T value{};
    EXPECT_EQ((reader >> value).hasRead(), found) << testing::PrintToString(String(text));
}

TEST(TextReader, TellsWhetherSomethingWasRead)
{
    for (const TextView text : {OXA_TEXT(" 0"), OXA_TEXT("(-1)"), OXA_TEXT("00x")}) expectFound<int>(text, true);
    for (const TextView text : {OXA_TEXT(""), OXA_TEXT("  "), OXA_TEXT("abc"), OXA_TEXT("--5"), OXA_TEXT("+5")})
        expectFound<int>(text, false);
    expectFound<unsigned>(OXA_TEXT("+5"), true);
    expectFound<unsigned>(OXA_TEXT(" -"), false);
    expectFound<double>(OXA_TEXT("-.5"), true);
    expectFound<double>(OXA_TEXT("."), false);
    expectFound<bool>(OXA_TEXT("FALSE"), true);
    expectFound<bool>(OXA_TEXT("0"), true);
    expectFound<bool>(OXA_TEXT("fals"), false);
    expectFound<Char>(OXA_TEXT(" a"), true);
    expectFound<Char>(OXA_TEXT(" "), false);
    expectFound<String>(OXA_TEXT("\n"), true);
    expectFound<String>(OXA_TEXT("\"\""), true);
    expectFound<String>(OXA_TEXT(""), false);

    TextReader reader(OXA_TEXT("1 2 +3"));
    reader.setPosition(2);
    int value = 0;
    EXPECT_TRUE(reader >> value);
    EXPECT_EQ(value, 2);
    reader.setPosition(reader.position() + 2);
    EXPECT_TRUE(reader >> value);
    EXPECT_EQ(value, 3);
    EXPECT_TRUE(reader.isAtEnd());
    reader.setPosition(100);
    EXPECT_EQ(reader.position(), 6U);
    EXPECT_TRUE(TextReader(nullptr).isAtEnd());
}

TEST(TextReader, DigitsEndWhereAnythingElseStands)
{
    // Each would pass for a digit when four units at a time were looked at without care.
    constexpr Char OTHERS[] = {'/', ':', 0, ' ', 0x0130, 0x3000, 0x3039, 0x7FFF, 0x8030, 0x803A, 0xFF30, 0xFFFF};
    std::mt19937 random(17);
    for (int round = 0; round < 100000; ++round)
    {
        // Without a zero behind it.
        std::vector<Char> text(1 + random() % 14);
        for (Char& c : text) c = static_cast<Char>('0' + random() % 10);
        for (std::size_t i = random() % 12 + 1; i < text.size(); i += 1 + random() % 3)
            text[i] = OTHERS[random() % std::size(OTHERS)];
        unsigned long long expected = 0;
        std::size_t length = 0;
        for (; length < text.size() && text[length] >= '0' && text[length] <= '9'; ++length)
            expected = expected * 10 + static_cast<unsigned long long>(text[length] - '0');

        TextReader reader(TextView(text.data(), text.size()));
        unsigned long long value = 0;
        reader >> value;
        ASSERT_EQ(value, expected);
        ASSERT_EQ(reader.position(), length);
    }
}

TEST(TextReader, DoublesAreTheNearestOnes)
{
    std::mt19937_64 random(13);
    for (int round = 0; round < 100000; ++round)
    {
        // Of every length, point and exponent, just within and beyond what one operation rounds right.
        std::string digits = std::to_string(random() >> random() % 64);
        if (random() % 8 == 0) digits.insert(0, random() % 6, '0');
        if (random() % 4 != 0) digits.insert(random() % (digits.size() + 1), 1, '.');
        if (random() % 4 == 0) digits += "e" + std::to_string(static_cast<int>(random() % 60) - 30);
        double expected = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), expected);

        const Text text(digits.begin(), digits.end());
        double value = 0;
        TextReader reader(text);
        reader >> value;
        ASSERT_EQ(value, expected) << digits;
        ASSERT_TRUE(reader.isAtEnd()) << digits;
    }
}

}  // namespace

}  // namespace Oxa_1_1
