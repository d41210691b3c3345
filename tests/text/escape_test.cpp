// Every kind of kernel that this processor has, beside a plain loop.

#include "base/text/escape.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "base/text/vector/kernels.h"
#include "tests/text/exact_buffer.h"

namespace Oxa_1_1::text
{

namespace
{

using Buffer = test::ExactBuffer<Char>;

class TextEscape : public testing::TestWithParam<const TextKernels*>
{
};

Text plainlyEscaped(TextView text, bool unicode)
{
    Text result;
    for (const Char c : text)
    {
        if (c == '\n' || c == '\r' || c == '"' || c == '\\')
        {
            result += '\\';
            result += c == '\n' ? Char('n') : c == '\r' ? Char('r') : c;
        }
        else if (unicode && c >= 0x80)
        {
            char digits[8];
            std::snprintf(digits, sizeof digits, "\\u%04X", static_cast<unsigned>(c));
            result.append(digits, digits + 6);
        }
        else
        {
            result += c;
        }
    }
    return result;
}

/// Into memory of exactly the length that was told.
Text escaped(const TextKernels& kernels, TextView text, bool unicode)
{
    const Buffer source{text};
    const std::size_t length = kernels.escapedLength(source.data(), source.size(), unicode);
    const auto out = std::make_unique<Char[]>(length);
    kernels.escape(source.data(), source.size(), unicode, out.get());
    return Text(out.get(), length);
}

TEST_P(TextEscape, EscapesAUnitAtEveryPlaceOfATextOfAnyLength)
{
    for (std::size_t length = 1; length <= 70; ++length)
    {
        for (std::size_t place = 0; place < length; ++place)
        {
            Text text(length, Char('x'));
            for (const Char c : {Char('\n'), Char('\r'), Char('"'), Char('\\'), Char(0x80), Char(0xFFFF)})
            {
                text[place] = c;
                for (const bool unicode : {false, true})
                    ASSERT_EQ(escaped(*GetParam(), text, unicode), plainlyEscaped(text, unicode))
                        << length << ", " << place;
            }
        }
    }
}

TEST_P(TextEscape, LeavesEveryOtherUnit)
{
    Text all;
    for (unsigned c = 0; c <= 0xFFFF; ++c) all += static_cast<Char>(c);
    EXPECT_EQ(escaped(*GetParam(), all, false), plainlyEscaped(all, false));
    EXPECT_EQ(escaped(*GetParam(), all, true), plainlyEscaped(all, true));
    EXPECT_EQ(escaped(*GetParam(), {}, true), Text());
}

TEST_P(TextEscape, EscapesManyUnitsOfABlockLikeThePlainLoop)
{
    std::mt19937 random(11);
    constexpr Char ALPHABET[] = {'a', 0, 0x7F, 'b', 'c', '\n', '\r', '"', '\\', 0x80, 0xE4, 0x7FFF, 0x8000, 0xD83D};
    for (int round = 0; round < 5000; ++round)
    {
        // The first few units are plain.
        const std::size_t variety = 1 + random() % std::size(ALPHABET);
        Text text(random() % 120, Char(0));
        for (Char& c : text) c = ALPHABET[random() % variety];
        const bool unicode = round % 2 == 0;
        ASSERT_EQ(escaped(*GetParam(), text, unicode), plainlyEscaped(text, unicode));
    }
}

TEST(TextEscapeService, EscapesByTheKernelsOfThisProcessor)
{
    const Text text = OXA_TEXT("a\nb\u00E9");
    ASSERT_EQ(escapedLength(text, true), 10u);
    ASSERT_EQ(escapedLength(text, false), 5u);
    Text out(10, Char(0));
    escape(text, true, out.data());
    EXPECT_EQ(out, OXA_TEXT("a\\nb\\u00E9"));
}

INSTANTIATE_TEST_SUITE_P(Kernels, TextEscape,
                         testing::ValuesIn(availableTextKernels().begin(), availableTextKernels().end()),
                         [](const auto& kernels) { return std::string(kernels.param->name); });

}  // namespace

}  // namespace Oxa_1_1::text
