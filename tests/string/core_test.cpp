// Construction, conversion and comparison.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

class CodePage : public CodePageInterface
{
   public:
    CodePage(const char* data, std::uint32_t codePage) : CodePageInterface(data, codePage) {}
};

bool isPresentAndEmpty(const String& text) { return text.compareEquality(String::EMPTY); }

TEST(StringCore, NullIsNilAndEmptyIsPresent)
{
    constexpr const Char* NO_TEXT = nullptr;
    constexpr const char* NO_BYTES = nullptr;
    for (const String& nil : {String(), String(NO_TEXT), String(NO_TEXT, 3), String(NO_BYTES), String(NO_BYTES, 3),
                              String(UTF8Interface(nullptr)), String(CodePage(nullptr, 1252)), String(String::NIL)})
        EXPECT_TRUE(nil.isNil() && nil.compareEquality(String::NIL));
    for (const String& empty :
         {String(OXA_TEXT("")), String(OXA_TEXT(""), 3), String(OXA_TEXT("abc"), 0), String(""), String("abc", 0),
          String(std::string()), String(Text()), String(Char('x'), 0), String(UTF8Interface("")),
          String(CodePage("", 1252)), String(CodePage("abc", 99999)), String(String::EMPTY)})
        EXPECT_TRUE(isPresentAndEmpty(empty));
}

TEST(StringCore, LengthsAreClampedToTheTextAndToZero)
{
    EXPECT_EQ(String(OXA_TEXT("abc"), 10), OXA_TEXT("abc"));
    EXPECT_EQ(String(OXA_TEXT("abc"), INT_MAX), OXA_TEXT("abc"));
    EXPECT_EQ(String(OXA_TEXT("abc"), 2), OXA_TEXT("ab"));
    EXPECT_EQ(String("abc", INT_MAX), OXA_TEXT("abc"));
    EXPECT_EQ(String("abc", 2), OXA_TEXT("ab"));
    EXPECT_TRUE(isPresentAndEmpty(String(OXA_TEXT("abc"), -1)));
    EXPECT_TRUE(isPresentAndEmpty(String("abc", INT_MIN)));
    EXPECT_TRUE(isPresentAndEmpty(String(Char('x'), -5)));
    EXPECT_EQ(String(Char('x'), 12), OXA_TEXT("xxxxxxxxxxxx"));
}

TEST(StringCore, StandardTextsKeepTheirZeros)
{
    EXPECT_EQ(test::literal(OXA_TEXT("a\0b")).length(), 3);
    for (const String& text : {String(std::string("a\0b", 3)), String(std::string_view("a\0bc", 3))})
        EXPECT_EQ(text.view(), TextView(OXA_TEXT("a\0b"), 3));
    EXPECT_EQ(String() << 1 << std::string_view("\xE4?").substr(0, 1), String("1\xE4"));
    EXPECT_EQ(String("a\0b").length(), 1);
    EXPECT_EQ(test::literal(OXA_TEXT("a\0b")).stringAnsi(), std::string("a\0b", 3));
    EXPECT_EQ(test::literal(OXA_TEXT("a\0b")).stringUTF8(), std::string("a\0b", 3));
}

TEST(StringCore, MovingLeavesNil)
{
    for (const int length : {0, 3, 50})
    {
        String source(Char('x'), length);
        String target(std::move(source));
        EXPECT_TRUE(source.isNil() && source.isEmpty());
        EXPECT_EQ(target.length(), length);
        String assigned(OXA_TEXT("old"));
        assigned = std::move(target);
        EXPECT_TRUE(target.isNil() && target.isEmpty());
        EXPECT_EQ(assigned.length(), length);
        EXPECT_FALSE(assigned.isNil());
        auto& same = assigned;
        assigned = std::move(same);
        EXPECT_EQ(assigned.length(), length);
    }
    String text(OXA_TEXT("text"));
    text = String::NIL;
    EXPECT_TRUE(text.isNil() && text.isEmpty());
}

TEST(StringCore, NarrowTextIsAnsiUnlessTagged)
{
    EXPECT_EQ(String(UTF8Interface("\xC3\xA4")), OXA_TEXT("\u00E4"));
    EXPECT_EQ(String("\xC3\xA4"), OXA_TEXT("\u00C3\u00A4"));
    EXPECT_EQ(String("\x80\x81\xFF"), OXA_TEXT("\u20AC\u0081\u00FF"));
    EXPECT_EQ(String(CodePage("\xE4", 1251)), OXA_TEXT("\u0434"));
    EXPECT_EQ(String(UTF8Interface("\xF0\x9F\x98\x80|\xED\xA0\x80")), OXA_TEXT("\U0001F600|\uFFFD\uFFFD\uFFFD"));

    const String text(OXA_TEXT("\u20AC\u00E4\u4E2D\U0001F600"));
    EXPECT_EQ(text.stringAnsi(), "\x80\xE4???");
    EXPECT_EQ(text.stringUTF8(), "\xE2\x82\xAC\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80");
    EXPECT_EQ(String(Char(0xD800), 1).stringUTF8(), "\xEF\xBF\xBD");
    for (const String& none : {String::NIL, String::EMPTY})
    {
        EXPECT_EQ(none.stringAnsi(), "");
        EXPECT_EQ(none.stringUTF8(), "");
        ASSERT_NE(none.stringPath(), nullptr);
        EXPECT_EQ(*none.stringPath(), 0);
    }
}

TEST(StringCore, Utf8KeepsZerosAndIsExactOnRequest)
{
    const std::string bytes("\xC3\xA4\0b", 4);
    const std::u8string typed(u8"\u00E4\0b", 4);
    const String expected = test::literal(OXA_TEXT("\u00E4\0b"));
    for (const String& text :
         {String::fromUTF8(bytes), String::fromUTF8(typed), String(typed), String(std::u8string_view(typed)),
          String::fromUTF8Exactly(bytes).value(), String::fromUTF8Exactly(typed).value()})
        EXPECT_TRUE(text.compareEquality(expected));
    EXPECT_EQ(String(UTF8Interface(bytes)).length() + String(u8"ab").length() + String(u8"abc", 2).length(), 5);
    EXPECT_TRUE(String::fromUTF8(static_cast<const char*>(nullptr)).isNil());
    EXPECT_TRUE(String(static_cast<const char8_t*>(nullptr), 3).isNil());
    EXPECT_TRUE(isPresentAndEmpty(String::fromUTF8("")) && isPresentAndEmpty(String::fromUTF8Exactly("").value()));
    for (const char* const illFormed : {"a\xFF", "\xC3", "\xED\xA0\x80", "\xC0\x80", "\xEF\xBF\xBD\x80"})
        EXPECT_FALSE(String::fromUTF8Exactly(illFormed)) << illFormed;
    EXPECT_EQ(String::fromUTF8Exactly("\xEF\xBF\xBD"), String(OXA_TEXT("\uFFFD")));
    EXPECT_EQ(String::fromUTF8("a\xFF"), OXA_TEXT("a\uFFFD"));
}

TEST(StringCore, CodePagesAreReachedBothWays)
{
    EXPECT_EQ(String::fromCodePage("\xE4", 1251), String(OXA_TEXT("\u0434")));
    EXPECT_EQ(String(OXA_TEXT("\u0434")).toCodePage(1251), "\xE4");
    EXPECT_EQ(String(OXA_TEXT("\u00E4")).toCodePage(65001), "\xC3\xA4");
    EXPECT_EQ(String::fromCodePage(std::string_view("a\0b", 3), 0)->length(), 3);
    EXPECT_TRUE(String::fromCodePage("", 850)->compareEquality(String::EMPTY));
    EXPECT_EQ(String::NIL.toCodePage(850), "");
    for (const std::uint32_t unknown : {1200u, 99999u})
    {
        EXPECT_FALSE(String::fromCodePage("a", unknown) || String::fromCodePage("", unknown)) << unknown;
        EXPECT_FALSE(String(OXA_TEXT("a")).toCodePage(unknown) || String::NIL.toCodePage(unknown)) << unknown;
    }
}

TEST(StringCore, ViewsCopyWithTheirCodePage)
{
    UTF8Interface view("a");
    const CodePageInterface copy = view;
    EXPECT_EQ(copy.codePage(), 65001u);
    EXPECT_STREQ(copy.data(), "a");
    view = UTF8Interface("b");
    EXPECT_STREQ(view.data(), "b");
    EXPECT_STREQ(copy.data(), "a");
}

TEST(StringCore, WriteAppendsAndNullWritesNothing)
{
    constexpr const Char* NO_TEXT = nullptr;
    String text;
    text.write(NO_TEXT, 3);
    EXPECT_TRUE(text.isNil());
    text.write(OXA_TEXT("hello"), 3);
    EXPECT_EQ(text, OXA_TEXT("hel"));
    text.write(OXA_TEXT("lo, world"), INT_MAX);
    EXPECT_EQ(text, OXA_TEXT("hello, world"));
    text.write(OXA_TEXT("x"), -1);
    text.write(NO_TEXT, 1);
    EXPECT_EQ(text, OXA_TEXT("hello, world"));
    text.write(text.stringPath() + 7, 5);
    EXPECT_EQ(text, OXA_TEXT("hello, worldworld"));
    String fromNil;
    fromNil.write(OXA_TEXT("x"), 0);
    EXPECT_TRUE(isPresentAndEmpty(fromNil));
}

TEST(StringCore, ComparesByUnsignedUnitWithNilFirst)
{
    // In ascending order; both comparisons must agree with it.
    const String ordered[] = {String::NIL,
                              OXA_TEXT(""),
                              OXA_TEXT("AB"),
                              OXA_TEXT("Ab"),
                              OXA_TEXT("aB"),
                              OXA_TEXT("ab"),
                              OXA_TEXT("abc"),
                              OXA_TEXT("abcdefghijkl"),
                              OXA_TEXT("abcdefghijkm"),
                              OXA_TEXT("\u00E4"),
                              OXA_TEXT("\u4E2D"),
                              String(Char(0xD83D), 1),
                              OXA_TEXT("\uE000"),
                              OXA_TEXT("\uFFFF")};
    for (std::size_t i = 0; i < std::size(ordered); ++i)
    {
        for (std::size_t k = 0; k < std::size(ordered); ++k)
        {
            const int expected = (i > k) - (i < k);
            const String& other = ordered[k];
            EXPECT_EQ(ordered[i].compare(other), expected) << i << ' ' << k;
            EXPECT_EQ(ordered[i].compare(other.isNil() ? nullptr : other.stringPath()), expected);
            EXPECT_EQ(ordered[i].compareEquality(other), expected == 0);
            if (other.length() != 1) continue;
            EXPECT_EQ(ordered[i].compare(other.view()[0]), expected);
        }
    }
    EXPECT_EQ(String::NIL.compare(Char('a')), -1);
    EXPECT_EQ(test::literal(OXA_TEXT("ab\0x")).compare(test::literal(OXA_TEXT("ab\0y"))), 0);
    EXPECT_EQ(test::literal(OXA_TEXT("ab\0x")).compare(OXA_TEXT("ab")), 0);
    EXPECT_FALSE(test::literal(OXA_TEXT("ab\0x")).compareEquality(OXA_TEXT("ab")));
    EXPECT_TRUE(test::literal(OXA_TEXT("ab\0x")).compareEquality(test::literal(OXA_TEXT("ab\0y"))));
}

TEST(StringCore, IgnoresCaseByTheLowerCaseOfEachUnit)
{
    const struct
    {
        String a;
        String b;
        int sign;
    } cases[] = {
        {OXA_TEXT("ab"), OXA_TEXT("AB"), 0},
        {OXA_TEXT("\u00C4\u0416\u03A9"), OXA_TEXT("\u00E4\u0436\u03C9"), 0},
        {OXA_TEXT("\u00DF"), OXA_TEXT("SS"), 1},
        // Between the cases of ASCII: after 'Z', before 'a'; lower case is what counts.
        {OXA_TEXT("_"), OXA_TEXT("A"), -1},
        {OXA_TEXT("[name"), OXA_TEXT("zName"), -1},
        {OXA_TEXT("longer names of FILES 009"), OXA_TEXT("LONGER Names of files 010"), -1},
        {OXA_TEXT("abc"), OXA_TEXT("AB"), 1},
        {String::NIL, OXA_TEXT(""), -1},
        {OXA_TEXT(""), String::NIL, 1},
        {String::NIL, String::NIL, 0},
    };
    for (const auto& [a, b, sign] : cases)
    {
        const int result = a.compareIgnoreCase(b);
        EXPECT_EQ((result > 0) - (result < 0), sign) << testing::PrintToString(a) << testing::PrintToString(b);
        const int byPointer = a.compareIgnoreCase(b.isNil() ? nullptr : b.stringPath());
        EXPECT_EQ((byPointer > 0) - (byPointer < 0), sign);
        EXPECT_EQ(StringLess2()(a, b), sign < 0);
    }
    EXPECT_EQ(String(OXA_TEXT("A")).compareIgnoreCase(Char('a')), 0);
    EXPECT_GT(String(OXA_TEXT("ab")).compareIgnoreCase(Char('A')), 0);
    EXPECT_EQ(String::NIL.compareIgnoreCase(Char('a')), -1);
}

}  // namespace

}  // namespace Oxa_1_1
