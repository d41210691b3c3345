// Code pages, with the same expectations on every system.

#include "base/platform/code_page.h"

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
        // The same at any place of the blocks that are converted as a whole.
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
        {1253, "\xE1\x81\xD2", OXA_TEXT("\u03B1\u0081\uF8FA")},
        {20866, "\xED", OXA_TEXT("\u041C")},
        {28592, "\xB1", OXA_TEXT("\u0105")},
        {65000, "+AOQ-a",
         OXA_TEXT("\u00E4"
                  "a")},
    };
    for (const auto& [codePage, bytes, text] : cases)
    {
        EXPECT_EQ(decodeCodePage(codePage, bytes), text) << codePage;
        if (codePage == 1253) continue;
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
    EXPECT_EQ(decodeCodePage(932, longBytes), longText);
    EXPECT_EQ(encodeCodePage(932, longText), longBytes);
}

TEST(CodePage, BytesThatDoNotMapAreReplaced)
{
    EXPECT_EQ(decodeCodePage(932, "a\x81"), OXA_TEXT("a\u30FB"));
    EXPECT_EQ(decodeCodePage(936, "a\x81"), OXA_TEXT("a?"));
    EXPECT_EQ(decodeCodePage(949,
                             "\xFF"
                             "b")
                  .back(),
              Char('b'));
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
