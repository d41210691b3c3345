// UTF-8 by every kind of kernel, beside a decoder that is written from the table of well-formed sequences.

#include "base/text/utf8.h"

#include <gtest/gtest.h>

#include <random>

#include "base/text/vector/kernels.h"
#include "tests/text/exact_buffer.h"

namespace Oxa_1_1::text
{

namespace
{

constexpr char32_t REPLACEMENT = 0xFFFD;

void appendUnits(Text& text, char32_t c)
{
    if (c > 0xFFFF)
    {
        text += static_cast<Char>(0xD800 + ((c - 0x10000) >> 10));
        c = 0xDC00 + (c & 0x3FF);
    }
    text += static_cast<Char>(c);
}

std::string encoded(char32_t c)
{
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<unsigned char>(value)); };
    if (c < 0x80) return {byte(c)};
    if (c < 0x800) return {byte(0xC0 | c >> 6), byte(0x80 | (c & 63))};
    if (c < 0x10000) return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 63)), byte(0x80 | (c & 63))};
    return {byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 63)), byte(0x80 | (c >> 6 & 63)), byte(0x80 | (c & 63))};
}

/// Whether `bytes` begin a well-formed character: all values whose encoding begins so are tried by their shape.
bool canBegin(std::string_view bytes)
{
    if (bytes.size() == 1)
    {
        const auto lead = static_cast<unsigned char>(bytes[0]);
        return lead >= 0xC2 && lead <= 0xF4;
    }
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const auto second = static_cast<unsigned char>(bytes[1]);
    if (second < 0x80 || second > 0xBF) return false;
    if (lead == 0xE0 && second < 0xA0) return false;
    if (lead == 0xED && second > 0x9F) return false;
    if (lead == 0xF0 && second < 0x90) return false;
    if (lead == 0xF4 && second > 0x8F) return false;
    for (const char c : bytes.substr(1))
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) return false;
    return true;
}

Text plainDecode(std::string_view bytes)
{
    Text text;
    while (!bytes.empty())
    {
        const auto lead = static_cast<unsigned char>(bytes[0]);
        if (lead < 0x80)
        {
            text += static_cast<Char>(lead);
            bytes.remove_prefix(1);
            continue;
        }
        const std::size_t whole = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        std::size_t good = 0;
        while (good < whole && good < bytes.size() && canBegin(bytes.substr(0, good + 1))) ++good;
        if (good < whole)
        {
            appendUnits(text, REPLACEMENT);
            bytes.remove_prefix(good == 0 ? 1 : good);
            continue;
        }
        char32_t c = lead & (0x7F >> whole);
        for (std::size_t i = 1; i < whole; ++i) c = c << 6 | (static_cast<unsigned char>(bytes[i]) & 0x3F);
        appendUnits(text, c);
        bytes.remove_prefix(whole);
    }
    return text;
}

/// A code point of one of the lengths that `kinds` allows: bit 0 for one byte up to bit 3 for four.
char32_t randomCodePoint(std::mt19937& random, unsigned kinds)
{
    constexpr char32_t FIRST[] = {0, 0x80, 0x800, 0x10000};
    constexpr char32_t LAST[] = {0x7F, 0x7FF, 0xFFFF, 0x10FFFF};
    auto kind = static_cast<unsigned>(random() % 4);
    while ((kinds >> kind & 1) == 0) kind = static_cast<unsigned>(random() % 4);
    const char32_t c = FIRST[kind] + static_cast<char32_t>(random() % (LAST[kind] - FIRST[kind] + 1));
    return c >= 0xD800 && c <= 0xDFFF ? c - 0x1000 : c;
}

/// What a kernel writes into room for `capacity`; it must not touch what lies behind. Returns how far it came.
template <class Source, class Target>
Progress convert(Progress (*kernel)(const Source*, std::size_t, Target*, std::size_t),
                 const test::ExactBuffer<Source>& source, std::size_t capacity, std::basic_string<Target>& written)
{
    constexpr std::size_t BEHIND = 80;
    constexpr Target UNTOUCHED = 0x55;
    written.assign(capacity + BEHIND, UNTOUCHED);
    const Progress progress = kernel(source.data(), source.size(), written.data(), capacity);
    EXPECT_EQ(written.substr(capacity), std::basic_string<Target>(BEHIND, UNTOUCHED));
    written.resize(progress.written);
    return progress;
}

/// The kernels by themselves, and what the library makes of them.
void expectSame(const std::string& bytes, const Text& text)
{
    const test::ExactBuffer<char> narrow{std::string_view(bytes)};
    const test::ExactBuffer<Char> wide{TextView(text)};
    ASSERT_EQ(decodeUtf8(narrow.view()), text) << testing::PrintToString(bytes);
    ASSERT_EQ(encodeUtf8(wide.view()), bytes);
    for (const TextKernels* const kernels : availableTextKernels())
    {
        ASSERT_EQ(kernels->countUnits(narrow.data(), narrow.size()), text.size()) << kernels->name;
        ASSERT_EQ(kernels->countBytes(wide.data(), wide.size()), bytes.size()) << kernels->name;

        Text units;
        const Progress decoded = convert(kernels->decodeUtf8, narrow, text.size(), units);
        ASSERT_EQ(units, text.substr(0, decoded.written)) << kernels->name;
        std::string back;
        const Progress encoded = convert(kernels->encodeUtf8, wide, bytes.size(), back);
        ASSERT_EQ(back, bytes.substr(0, encoded.written)) << kernels->name;
        if (!kernels->takesShort) continue;
        ASSERT_EQ(decoded.read, bytes.size());
        ASSERT_EQ(encoded.read, text.size());
    }
}

TEST(Utf8, EveryCodePointComesBack)
{
    Text text;
    std::string bytes;
    for (char32_t c = 0; c <= 0x10FFFF; ++c)
    {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        appendUnits(text, c);
        bytes += encoded(c);
    }
    EXPECT_TRUE(decodeUtf8(bytes) == text);
    EXPECT_TRUE(encodeUtf8(text) == bytes);
}

TEST(Utf8, MixesOfAllLengthsAtEveryOffset)
{
    std::mt19937 random(3);
    for (int round = 0; round < 3000; ++round)
    {
        const auto kinds = static_cast<unsigned>(1 + random() % 15);
        std::string bytes(random() % 40, 'a');
        Text text(bytes.size(), Char('a'));
        for (std::size_t count = random() % 120; count > 0; --count)
        {
            const char32_t c = randomCodePoint(random, random() % 4 == 0 ? 15 : kinds);
            bytes += encoded(c);
            appendUnits(text, c);
        }
        ASSERT_NO_FATAL_FAILURE(expectSame(bytes, text));
    }
}

TEST(Utf8, OneOtherCharacterAtEveryPlaceOfAnAsciiText)
{
    const struct
    {
        Text text;
        std::string bytes;
    } others[] = {{OXA_TEXT("\x7F"), "\x7F"},
                  {OXA_TEXT("\u0080"), "\xC2\x80"},
                  {OXA_TEXT("\u0100"), "\xC4\x80"},
                  {OXA_TEXT("\u8000"), "\xE8\x80\x80"}};
    for (const auto& other : others)
    {
        for (std::size_t length = 0; length <= 70; ++length)
        {
            for (std::size_t place = 0; place <= length; ++place)
            {
                const test::ExactBuffer<Char> wide{Text(length, 'a').insert(place, other.text)};
                const test::ExactBuffer<char> narrow{std::string(length, 'a').insert(place, other.bytes)};
                ASSERT_EQ(decodeUtf8(narrow.view()), wide.view()) << length << ", " << place;
                ASSERT_EQ(encodeUtf8(wide.view()), narrow.view()) << length << ", " << place;
            }
        }
    }
}

TEST(Utf8, EachMaximalIllFormedPartIsOneReplacement)
{
    const struct
    {
        std::string bytes;
        Text text;
    } cases[] = {
        {"\x80", OXA_TEXT("\uFFFD")},
        {"\xC0\x80", OXA_TEXT("\uFFFD\uFFFD")},
        {"\xC3", OXA_TEXT("\uFFFD")},
        {"\xE0\x80\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFD")},
        {"\xE2\x82", OXA_TEXT("\uFFFD")},
        {"\xE2\x82z", OXA_TEXT("\uFFFDz")},
        {"\xED\xA0\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFD")},
        {"\xF0\x80\x80\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFD\uFFFD")},
        {"\xF0\x9F\x98", OXA_TEXT("\uFFFD")},
        {"\xF0\x9F\x98\xE2\x82\xAC", OXA_TEXT("\uFFFD\u20AC")},
        {"\xF1\x80\xE1\x80\xC2\x62\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFD"
                                                  "b\uFFFD")},
        {"\xF4\x90\x80\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFD\uFFFD")},
        {"\xFF\xFE", OXA_TEXT("\uFFFD\uFFFD")},
    };
    for (const auto& [bytes, text] : cases)
    {
        EXPECT_EQ(decodeUtf8(bytes), text) << testing::PrintToString(bytes);
        // The same amid other text, wherever it lies in a vector.
        for (std::size_t offset = 0; offset < 70; ++offset)
        {
            const std::string around = std::string(offset, 'x') + "\xC3\xA4" + bytes + std::string(100, 'y');
            const Text expected = Text(offset, Char('x')) + OXA_TEXT("\u00E4") + text + Text(100, Char('y'));
            ASSERT_EQ(decodeUtf8(around), expected) << offset << testing::PrintToString(bytes);
        }
    }
}

TEST(Utf8, DamagedTextDecodesLikeThePlainDecoder)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round)
    {
        std::string bytes;
        for (std::size_t count = random() % 100; count > 0; --count) bytes += encoded(randomCodePoint(random, 15));
        for (std::size_t damage = 1 + random() % 3; damage > 0 && !bytes.empty(); --damage)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        if (!bytes.empty()) bytes.resize(random() % bytes.size());
        const test::ExactBuffer<char> narrow{std::string_view(bytes)};
        const Text expected = plainDecode(bytes);
        ASSERT_EQ(decodeUtf8(narrow.view()), expected) << testing::PrintToString(bytes);
        for (const TextKernels* const kernels : availableTextKernels())
        {
            Text units;
            const Progress progress = convert(kernels->decodeUtf8, narrow, expected.size(), units);
            ASSERT_EQ(units, plainDecode(narrow.view().substr(0, progress.read)))
                << kernels->name << testing::PrintToString(bytes);
        }
    }
}

TEST(Utf8, UnpairedSurrogatesAreReplaced)
{
    std::mt19937 random(5);
    constexpr Char ALPHABET[] = {0xD800, 0xDBFF, 0xDC00, 0xDFFF, 'a', 0xE4, 0x20AC};
    for (int round = 0; round < 20000; ++round)
    {
        Text text(random() % 60, Char(0));
        for (Char& c : text) c = ALPHABET[random() % std::size(ALPHABET)];

        std::string expected;
        for (std::size_t i = 0; i < text.size(); ++i)
        {
            const char32_t c = text[i];
            const bool pair = c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && (text[i + 1] & 0xFC00) == 0xDC00;
            if (pair)
                expected += encoded(0x10000 + ((c & 0x3FF) << 10) + (text[++i] & 0x3FFu));
            else
                expected += encoded((c & 0xF800) == 0xD800 ? REPLACEMENT : c);
        }
        const test::ExactBuffer<Char> wide{TextView(text)};
        ASSERT_EQ(encodeUtf8(wide.view()), expected);
        for (const TextKernels* const kernels : availableTextKernels())
        {
            std::string bytes;
            const Progress progress = convert(kernels->encodeUtf8, wide, expected.size(), bytes);
            ASSERT_EQ(bytes, encodeUtf8(wide.view().substr(0, progress.read))) << kernels->name;
        }
    }
}

}  // namespace

}  // namespace Oxa_1_1::text
