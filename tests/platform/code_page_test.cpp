// Code pages, with the same expectations on every system.

#include "base/platform/system/code_page.h"

#include <gtest/gtest.h>

namespace Oxa_1_1::platform
{

namespace
{

TEST(CodePage, EveryAnsiByteHasAUnitAndComesBack)
{
    std::string bytes;
    for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
    for (const std::uint32_t codePage : {0u, 1252u})
    {
        const Text text = decodeCodePage(codePage, bytes);
        ASSERT_EQ(text.size(), 256u);
        EXPECT_EQ(text.substr(0x80, 8), OXA_TEXT("\u20AC\u0081\u201A\u0192\u201E\u2026\u2020\u2021"));
        EXPECT_EQ(text.substr(0x9C), OXA_TEXT("\u0153\u009D\u017E\u0178\u00A0") + text.substr(0xA1));
        for (std::size_t i = 0xA0; i < 256; ++i) EXPECT_EQ(text[i], i);
        EXPECT_EQ(encodeCodePage(codePage, text), bytes);
        // The same far behind the front, and at any place of the blocks that are converted as a whole.
        std::string many;
        Text expected;
        for (int i = 0; i < 33; ++i)
        {
            many += bytes;
            expected += text;
        }
        EXPECT_EQ(decodeCodePage(codePage, many), expected);
        for (std::size_t offset = 0; offset < 256; offset += 7)
        {
            EXPECT_EQ(decodeCodePage(codePage, bytes.substr(offset)), text.substr(offset));
            EXPECT_EQ(encodeCodePage(codePage, TextView(text).substr(offset)), bytes.substr(offset));
        }
    }
}

TEST(CodePage, AnsiTakesTheNearestRelativeOrAQuestionMark)
{
    EXPECT_EQ(encodeCodePage(0, OXA_TEXT("\u0100\u0141\u2032\uFF21\u221E")), "AL'A8");
    EXPECT_EQ(encodeCodePage(0, OXA_TEXT("\u4E2D\u0416\uFFFD\uFFFF")), "????");
    EXPECT_EQ(encodeCodePage(0, OXA_TEXT("\U0001F600|")), "??|");
    EXPECT_EQ(encodeCodePage(0, Text(1, Char(0xD800))), "?");
}

TEST(CodePage, NumberedPagesBothWays)
{
    const struct
    {
        std::uint32_t codePage;
        std::string bytes;
        Text text;
    } cases[] = {
        {437, "\x81\xE1", OXA_TEXT("\u00FC\u00DF")},
        {850, "\x9B", OXA_TEXT("\u00F8")},
        {932, "\x8A\xBF\x8E\x9A \xB1", OXA_TEXT("\u6F22\u5B57 \uFF71")},
        {936, "\xBA\xBA\xD7\xD6", OXA_TEXT("\u6C49\u5B57")},
        {949, "\xC7\xD1", OXA_TEXT("\uD55C")},
        {950, "\xBA\x7E", OXA_TEXT("\u6F22")},
        {1250, "\xB9", OXA_TEXT("\u0105")},
        {1251, "\xCC\xE8\xF0", OXA_TEXT("\u041C\u0438\u0440")},
        {37, "\x81", OXA_TEXT("a")},
        {708, "\xC7", OXA_TEXT("\u0627")},
        {1253, "\xE1\x81\xD2", OXA_TEXT("\u03B1\u0081\uF8FA")},
        {20866, "\xED", OXA_TEXT("\u041C")},
        {28592, "\xB1", OXA_TEXT("\u0105")},
        {65000, "+AOQ-a",
         OXA_TEXT("\u00E4"
                  "a")},
        {65001, "\xC3\xA4", OXA_TEXT("\u00E4")},
        // Marks are not joined with their letters.
        {1255, "\xE0\xC7\xE9\xCA", OXA_TEXT("\u05D0\u05B7\u05D9\u05BA")},
        {1258, "a\xCC\x8D", OXA_TEXT("a\u0300\u008D")},
    };
    for (const auto& [codePage, bytes, text] : cases)
    {
        EXPECT_EQ(decodeCodePage(codePage, bytes), text) << codePage;
        EXPECT_EQ(encodeCodePage(codePage, text), bytes) << codePage;
    }
    EXPECT_EQ(decodeCodePage(1251, std::string("\xCC\0\xE8", 3)), Text(OXA_TEXT("\u041C\0\u0438"), 3));
    EXPECT_EQ(encodeCodePage(1251, OXA_TEXT("\u4E2D\U0001F600"
                                            "a")),
              "???a");
    // Longer than any buffer on the way.
    std::string longBytes;
    Text longText;
    for (int i = 0; i < 3000; ++i)
    {
        longBytes +=
            "\x8A\xBF"
            "a";
        longText += OXA_TEXT(
            "\u6F22"
            "a");
    }
    const Text decoded = decodeCodePage(932, longBytes);
    EXPECT_EQ(decoded, longText);
    EXPECT_EQ(decoded.capacity(), decoded.size());
    const std::string encoded = encodeCodePage(932, longText);
    EXPECT_EQ(encoded, longBytes);
    EXPECT_EQ(encoded.capacity(), encoded.size());
}

TEST(CodePage, EveryByteOfAWindowsPageHasAUnitAndComesBack)
{
    for (const std::uint32_t codePage : {874u, 1250u, 1251u, 1252u, 1253u, 1254u, 1255u, 1256u, 1257u, 1258u})
        for (int i = 0; i < 256; ++i)
        {
            const std::string byte(1, static_cast<char>(i));
            const Text text = decodeCodePage(codePage, byte);
            EXPECT_EQ(text.size(), 1u) << codePage << ' ' << i;
            EXPECT_EQ(encodeCodePage(codePage, text), byte) << codePage << ' ' << i;
        }
}

TEST(CodePage, BytesThatDoNotMapAreReplaced)
{
    const struct
    {
        std::uint32_t codePage;
        std::string bytes;
        Text text;
    } cases[] = {
        // Cut off at the end.
        {932, "a\x81", OXA_TEXT("a\u30FB")},
        {936, "a\x81", OXA_TEXT("a?")},
        {949, "\xC7\xD1\xC7", OXA_TEXT("\uD55C?")},
        {65001, "a\xE2\x82", OXA_TEXT("a\uFFFD")},
        // The second byte goes with the first, but a zero stays.
        {932, "\x81\"x", OXA_TEXT("\u30FBx")},
        {936, "\x81\"x", OXA_TEXT("?x")},
        {950, std::string("\x81\0x", 3), Text(OXA_TEXT("?\0x"), 3)},
        {949, "\xA2\xE8", OXA_TEXT("?")},
        {949, "\xA2\xE8x", OXA_TEXT("?x")},
        {949, "\x80\xFFx", OXA_TEXT("\u0080\uF8F7x")},
        {65000, std::string("a\0~\\\xE4", 5), Text(OXA_TEXT("a\0~\\\u00E4"), 5)},
        {65001, "\xF0\x80\x80z\xED\xA0\x80", OXA_TEXT("\uFFFD\uFFFD\uFFFDz\uFFFD\uFFFD\uFFFD")},
    };
    for (const auto& [codePage, bytes, text] : cases)
        EXPECT_EQ(decodeCodePage(codePage, bytes), text) << codePage << ' ' << bytes;
}

TEST(CodePage, TheQuestionMarkIsSpelledAsThePageDoes)
{
    EXPECT_EQ(encodeCodePage(37, OXA_TEXT("a\u4E2D")), "\x81\x6F");
    EXPECT_EQ(encodeCodePage(65001, Text(1, Char(0xD83D))), "\xEF\xBF\xBD");
}

// Some systems do not know these pages.
TEST(CodePage, PagesOfSomeSystems)
{
    const struct
    {
        std::uint32_t codePage;
        std::string bytes;
        Text text;
    } cases[] = {
        {50220, "\x1B$B\x34\x41\x1B(B?", OXA_TEXT("\u6F22?")},
        {51932, "\xB4\xC1", OXA_TEXT("\u6F22")},
        {54936, "\xD6\xD0\x94\x39\xFC\x36", OXA_TEXT("\u4E2D\U0001F600")},
    };
    for (const auto& [codePage, bytes, text] : cases)
    {
        const bool known = !decodeCodePage(codePage, "a").empty();
        EXPECT_EQ(decodeCodePage(codePage, bytes), known ? text : Text()) << codePage;
        EXPECT_EQ(encodeCodePage(codePage, text), known ? bytes : std::string()) << codePage;
    }
    // What ends in the middle of a sequence of four has one replacement.
    const Text cut = decodeCodePage(54936, "a\x81\x30\x81");
    EXPECT_TRUE(cut.empty() || cut.size() == 2);
    // After a replacement in a passage of two-byte characters the next character is read as one.
    const std::string shifted = encodeCodePage(50220, OXA_TEXT("\u6F22\u1234\u6F22"));
    EXPECT_TRUE(shifted.empty() || decodeCodePage(50220, shifted) == OXA_TEXT("\u6F22?\u6F22"));
}

TEST(CodePage, UnknownPagesGiveNothing)
{
    for (const std::uint32_t codePage : {1200u, 1201u, 12000u, 12001u, 7u, 99999u, 0xFFFFFFFFu})
    {
        EXPECT_TRUE(decodeCodePage(codePage, "abc").empty()) << codePage;
        EXPECT_TRUE(encodeCodePage(codePage, OXA_TEXT("abc")).empty()) << codePage;
    }
}

}  // namespace

}  // namespace Oxa_1_1::platform
