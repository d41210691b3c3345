// Windows spellings and the paths on disk that they stand for.

#include "base/platform/linux/files/native_path.h"

#include <gtest/gtest.h>

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <random>
#include <set>

#include "base/text/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

TEST(NativePath, Spellings)
{
    struct Case
    {
        std::string native;
        Text spelling;
    };
    const Case cases[]{
        {"/home/u/f.txt", u"\\home\\u\\f.txt"},
        {"a", u"a"},
        {"../.", u"..\\."},
        {"a/b/", u"a\\b\\"},
        {"/x:y*?\"<>|z", u"\\x\uF03Ay\uF02A\uF03F\uF022\uF03C\uF03E\uF07Cz"},
        {"back\\slash", u"back\uF05Cslash"},
        {"\x01\x1F\x7F", u"\uF001\uF01F\x7F"},
        {"blank /dot./in . side", u"blank\uF020\\dot\uF02E\\in . side"},
        {"...", u"..\uF02E"},
        {"\xC3\xA4\xF0\x9F\x98\x80", u"\u00E4\U0001F600"},
        {"\xFF\xC3/\x80", u"\xDCFF\xDCC3\\\xDC80"},
        {"\xED\xA0\x80", u"\xDCED\xDCA0\xDC80"},
        {"\xEF\x80\x81\xEF\x81\xBF", u"\xDCEF\xDC80\xDC81\xDCEF\xDC81\xDCBF"},
        {"\xEF\x80\x80\xEF\x82\x80", u"\uF000\uF080"},
    };
    for (const auto& [native, spelling] : cases)
    {
        EXPECT_EQ(spellingOf(native), spelling) << native;
        EXPECT_EQ(nativePathOf(spelling), native) << native;
    }
}

TEST(NativePath, WhatIsOneNameStaysOne)
{
    const std::pair<Text, std::string> cases[]{
        {u"a\uF02Fz", "a\xEF\x80\xAFz"},
        {u"\\a\\.\uF02E\\x", "/a/.\xEF\x80\xAE/x"},
        {u"x/\uF02E\uF02E", "x/\xEF\x80\xAE\xEF\x80\xAE"},
        {u"\uF02E", "\xEF\x80\xAE"},
        {u"..\uF02E/\uF02Ex", ".../.x"},
    };
    for (const auto& [spelling, native] : cases) EXPECT_EQ(nativePathOf(spelling), native);
    EXPECT_EQ(spellingOf("//home//u"), u"\\home\\\\u");
}

/// Names of a few bytes that come in all combinations, and of any bytes.
TEST(NativePath, EveryNameHasOneSpellingAndComesBack)
{
    constexpr std::string_view TRICKY = "a.: \\\x01\xC3\xA4\x80\xEF\x81\xBF\xED\xB2\xF0\x9F\xFF";
    std::mt19937 random(7);
    std::set<std::string> names;
    for (int i = 0; i < 50000; ++i)
    {
        std::string name(1 + random() % (i % 2 != 0 ? 6 : 40), '\0');
        for (char& byte : name) do
                byte = i % 2 != 0 ? TRICKY[random() % TRICKY.size()] : static_cast<char>(random());
            while (byte == '/' || byte == '\0');
        if (name != "." && name != "..") names.insert(name);
    }
    std::set<Text> spellings;
    Text spelling;
    for (const std::string& name : names)
    {
        spellName(name, spelling);
        ASSERT_EQ(spelling, spellingOf(name));
        ASSERT_EQ(nativePathOf(spelling), name);
        ASSERT_EQ(spelling.find_first_of(u"\\/:*?\"<>|"), Text::npos);
        ASSERT_TRUE(spelling.back() != u'.' && spelling.back() != u' ');
        ASSERT_TRUE(spellings.insert(spelling).second);
    }
}

class Drives : public testing::Test
{
   protected:
    Drives() { setenv("OXA_DRIVES", "/d", 1); }
    ~Drives() override { unsetenv("OXA_DRIVES"); }
};

TEST_F(Drives, Roots)
{
    struct Case
    {
        Text spelling;
        std::string native;
        std::string root;
        bool isOnShare = false;
    };
    const Case cases[]{
        {u"C:\\x\\y", "/d/c:/x/y", "/d/c:"},
        {u"c:/x", "/d/c:/x", "/d/c:"},
        {u"Z:\\", "/d/z:/", "/d/z:"},
        {u"c:x", "/d/c:/x", "/d/c:"},
        {u"c:", "/d/c:", "/d/c:"},
        {u"\\\\?\\C:\\x", "/d/c:/x", "/d/c:"},
        {u"\\\\?\\Volume{0A}\\x", "/d/volume{0a}/x", "/d/volume{0a}"},
        {u"Volume{0A}\\x", "Volume{0A}/x", ""},
        {u"\\\\srv\\sh\\x", "/d/unc/srv/sh/x", "/d/unc/srv/sh", true},
        {u"//srv/sh/x/y", "/d/unc/srv/sh/x/y", "/d/unc/srv/sh", true},
        {u"\\\\srv\\sh", "/d/unc/srv/sh", "/d/unc/srv/sh", true},
        {u"\\\\srv", "/d/unc/srv", "/d/unc/srv", true},
        {u"\\\\?\\unc\\srv\\sh\\x", "/d/unc/srv/sh/x", "/d/unc/srv/sh", true},
        {u"\\\\?\\UNC\\s\uF03A\\sh", "/d/unc/s:/sh", "/d/unc/s:/sh", true},
        {u"\\\\?\\\\home\\u", "/home/u", ""},
        {u"\\home", "/home", ""},
        {u"x", "x", ""},
        {u"", "", ""},
        {u"\u00E4:\\x", "\xC3\xA4:/x", ""},
    };
    for (const Case& each : cases)
    {
        EXPECT_EQ(nativePathOf(each.spelling), each.native) << text::encodeUtf8(each.spelling);
        EXPECT_EQ(nativeRootOf(each.spelling), each.root) << text::encodeUtf8(each.spelling);
        EXPECT_EQ(isOnShare(each.spelling), each.isOnShare) << text::encodeUtf8(each.spelling);
    }
}

TEST_F(Drives, FolderOfTheUser)
{
    setenv("OXA_DRIVES", "", 1);
    setenv("XDG_CONFIG_HOME", "/cfg", 1);
    EXPECT_EQ(nativePathOf(u"D:\\"), "/cfg/OxaBase/drives/d:/");
    unsetenv("XDG_CONFIG_HOME");
    // Without the variable the home is the one that the system knows.
    const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
    unsetenv("HOME");
    EXPECT_EQ(nativePathOf(u"D:\\"), getpwuid(geteuid())->pw_dir + std::string("/.config/OxaBase/drives/d:/"));
    setenv("HOME", home.c_str(), 1);
}

}  // namespace

}  // namespace Oxa_1_1::platform
