// Registry texts in each of their encodings and notations.

#include "base/formats/registry_text.h"

#include <gtest/gtest.h>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::formats
{

namespace
{

constexpr TextView KEY = OXA_TEXT("HKEY_CURRENT_USER\\Software\\Oxa");
const std::string TITLE = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string SECTION = "[HKEY_CURRENT_USER\\Software\\Oxa]\n";

/// The type and the bytes, as "1: 41 00".
std::string describe(const std::optional<RegistryValue>& value)
{
    if (!value) return "none";
    std::string text = std::to_string(value->type) + ":";
    for (const std::byte byte : value->data)
    {
        constexpr std::string_view DIGITS = "0123456789abcdef";
        text += {' ', DIGITS[std::to_integer<unsigned>(byte) >> 4], DIGITS[std::to_integer<unsigned>(byte) & 15]};
    }
    return text;
}

std::string find(const std::string& file, TextView key = KEY, TextView name = OXA_TEXT("n"))
{
    const test::ExactBuffer<char> exact{std::string_view(file)};
    return describe(findRegistryValue(test::asBytes(exact.view()), key, name));
}

/// The file in UTF-16 with the mark for it.
std::string wide(const std::string& file) { return "\xFF\xFE" + test::Writer().text(text::decodeUtf8(file)).bytes(); }

TEST(RegistryText, Notations)
{
    struct Case
    {
        std::string lines;
        std::string value;
    };
    const Case cases[] = {
        {R"("n"="AB")", "1: 41 00 42 00 00 00"},
        {R"("n"="")", "1: 00 00"},
        {R"("N"="\\ \"")", "1: 5c 00 20 00 22 00 00 00"},
        {"\"n\"=\"a\r\nb\"", "1: 61 00 0d 00 0a 00 62 00 00 00"},
        {"\"n\"=\"\xC3\x9C\"", "1: dc 00 00 00"},
        {"  \"n\" =\t\"A\" ; comment", "1: 41 00 00 00"},
        {R"("n"=dword:0000002a)", "4: 2a 00 00 00"},
        {R"("n"=DWORD:fedCBA98 ; comment)", "4: 98 ba dc fe"},
        {R"("n"=hex:01,a2,FF)", "3: 01 a2 ff"},
        {R"("n"=hex:)", "3:"},
        {"\"n\"=hex:01,\\\r\n  02,\\\n  03\n", "3: 01 02 03"},
        {"\"n\"=hex:01\\\n,02", "3: 01 02"},
        {"\"n\"=hex:01,\\", "3: 01"},
        {R"("n"=hex(2):25,00,00,00)", "2: 25 00 00 00"},
        {R"("n"=hex(7):41,00,00,00,00,00)", "7: 41 00 00 00 00 00"},
        {R"("n"=hex(b):01,02,03,04,05,06,07,08)", "11: 01 02 03 04 05 06 07 08"},
        {R"("n"=hex(fffffff0):01)", "4294967280: 01"},
        {"; \"n\"=\"A\"", "none"},
        {R"(@="A")", "none"},
        {R"("nn"="A")", "none"},
    };
    for (const Case& c : cases)
    {
        EXPECT_EQ(find(TITLE + SECTION + c.lines), c.value) << c.lines;
        EXPECT_EQ(find("\xEF\xBB\xBF" + TITLE + SECTION + c.lines), c.value) << c.lines;
        EXPECT_EQ(find(wide(TITLE + SECTION + c.lines)), c.value) << c.lines;
    }
}

/// They take no more than their own line with them.
TEST(RegistryText, MalformedLines)
{
    const char* const lines[] = {
        R"("n")",
        R"("n"=)",
        R"("n"="open)",
        R"("n="A")",
        R"("n"="A" x)",
        R"("n"=dword:)",
        R"("n"=dword:123456789)",
        R"("n"=dword:12x)",
        R"("n"=hex:1g)",
        R"("n"=hex:123)",
        R"("n"=hex(:01)",
        R"("n"=hex(x):01)",
        R"("n"=hex:01,\ x)",
        R"("n"=word)",
        R"("n"=-x)",
        R"(n="A")",
        R"(")",
        R"(@)",
        R"(\)",
        "\xFF",
    };
    for (const std::string line : lines)
    {
        EXPECT_EQ(find(TITLE + SECTION + line + "\r\n\"m\"=\"A\"\r\n"), "none") << line;
        EXPECT_EQ(find(TITLE + SECTION + line + "\r\n\"n\"=\"A\"\r\n"), "1: 41 00 00 00") << line;
        EXPECT_EQ(find(TITLE + SECTION + "\"n\"=\"A\"\n" + line), "1: 41 00 00 00") << line;
    }
}

TEST(RegistryText, LaterLinesWin)
{
    struct Case
    {
        std::string lines;
        std::string value;
    };
    const std::string first = "\"n\"=hex:01\n";
    const Case cases[] = {
        {first + "\"N\"=hex:02", "3: 02"},
        {first + "\"n\"=-", "none"},
        {first + "\"n\"=-\n" + first, "3: 01"},
        {first + "\"n\"=- ; comment", "none"},
        {first + "[-HKEY_CURRENT_USER\\Software\\Oxa]", "none"},
        {first + "[-HKEY_CURRENT_USER\\SOFTWARE]", "none"},
        {first + "[-HKEY_CURRENT_USER]\n" + SECTION + first, "3: 01"},
        {first + "[-HKEY_CURRENT_USER\\Soft]", "3: 01"},
        {first + "[-HKEY_CURRENT_USER\\Software\\Oxa\\Below]", "3: 01"},
        {first + "[-HKEY_CURRENT_USER\\Software\\Oxa]\n\"n\"=hex:02", "none"},
        {first + "[HKEY_CURRENT_USER\\Software\\Oxa\\Below]\n\"n\"=hex:02", "3: 01"},
        {first + "[HKEY_CURRENT_USER\\Software]\n\"n\"=hex:02\n" + SECTION + "\"n\"=hex:03", "3: 03"},
        {first + "[broken\n\"n\"=hex:02", "3: 01"},
    };
    for (const Case& c : cases) EXPECT_EQ(find(TITLE + SECTION + c.lines), c.value) << c.lines;
}

TEST(RegistryText, Keys)
{
    const std::string file = TITLE +
                             "[HKEY_LOCAL_MACHINE\\A]\n@=hex:01\n[HKCU\\B]\n\"\"=hex:02\n"
                             "[HKEY_USERS\\a]b\\\xC3\x9C] ; x\n@=hex:03\n";
    const TextView own;
    EXPECT_EQ(find(file, OXA_TEXT("HKEY_LOCAL_MACHINE\\A"), own), "3: 01");
    EXPECT_EQ(find(file, OXA_TEXT("hklm\\a\\"), own), "3: 01");
    EXPECT_EQ(find(file, OXA_TEXT("HKEY_CURRENT_USER\\b"), own), "3: 02");
    EXPECT_EQ(find(file, OXA_TEXT("HKU\\A]B\\\u00FC"), own), "3: 03");
    EXPECT_EQ(find(file, OXA_TEXT("HKLM\\B"), own), "none");
    EXPECT_EQ(find(file, OXA_TEXT("HKLM"), own), "none");
    EXPECT_EQ(find(file, {}, own), "none");
}

TEST(RegistryText, Ansi)
{
    const std::string file = "REGEDIT4\n" + SECTION;
    EXPECT_EQ(find(file + "\"n\"=\"\xDC\""), "1: dc 00 00 00");
    EXPECT_EQ(find(file + "\"n\"=hex(2):25,dc,00"), "2: 25 00 dc 00 00 00");
    EXPECT_EQ(find(file + "\"n\"=hex(7):41,00,\\\n  42,00,00"), "7: 41 00 00 00 42 00 00 00 00 00");
    EXPECT_EQ(find(file + "\"n\"=hex(7):"), "7:");
    EXPECT_EQ(find(file + "\"n\"=hex:25,dc,00"), "3: 25 dc 00");
}

TEST(RegistryText, Titles)
{
    const std::string value = SECTION + "\"n\"=hex:01";
    EXPECT_EQ(find("  Windows Registry Editor Version 5.00 \n" + value), "3: 01");
    for (const char* const title :
         {"", "\n", "REGEDIT\n", "REGEDIT5\n", "Windows Registry Editor\n", "\xFF\xFE", "\xFF"})
        EXPECT_EQ(find(title + value), "none") << title;
    EXPECT_EQ(find({}), "none");
}

TEST(RegistryText, IsCutAnywhere)
{
    const std::string file = wide(TITLE + SECTION + "\"n\"=hex(2):01,\\\r\n  02\r\n\"m\"=\"A\\\\\"\r\n");
    for (std::size_t size = 0; size < file.size(); ++size) EXPECT_NO_FATAL_FAILURE(find(file.substr(0, size))) << size;
}

}  // namespace

}  // namespace Oxa_1_1::formats
