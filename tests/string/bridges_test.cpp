// What C++ users expect of a text type: standard texts, views, literals of every kind, containers.

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <unordered_set>
#include <vector>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(StringBridges, LiteralsOfEitherWidthAreTheSameText)
{
    EXPECT_EQ(String(L"abc"), String(u"abc"));
    EXPECT_EQ(String(L"abc", 2), String(u"ab"));
    EXPECT_EQ(String(std::wstring(L"a\0b", 3)).length(), 3);
    EXPECT_EQ(String(std::u16string(u"a\0b", 3)).length(), 3);
    EXPECT_EQ(String(std::wstring_view(L"ab")), String(std::u16string_view(u"ab")));
    EXPECT_EQ(String(L"\U0001F600"), String(u"\U0001F600"));
    EXPECT_EQ(String(L'x', 2), String(u'x', 2));
    EXPECT_TRUE(String(static_cast<const wchar_t*>(nullptr)).isNil());
    EXPECT_TRUE(String(static_cast<const char16_t*>(nullptr)).isNil());
    EXPECT_TRUE(String(nullptr).isNil());

    String text(u"scan");
    text += L"_";
    text << u"a" << L"b" << L'c' << u'd';
    EXPECT_EQ(text, L"scan_abcd");
    EXPECT_EQ(text.find(L"abc"), 5);
    EXPECT_EQ(text.find(u"abc"), 5);
    EXPECT_EQ(text.findLastOf(L"a"), 5);
    EXPECT_EQ(text.replace(L"abcd", L"x"), 1);
    EXPECT_EQ(text.replace(u"x", L"yz"), 1);
    EXPECT_EQ(text.compare(L"scan_yz"), 0);
    EXPECT_EQ(text.compareIgnoreCase(L"SCAN_YZ"), 0);
    EXPECT_TRUE(text.startsWith(L"scan"));
    EXPECT_TRUE(text.endsWith(L"YZ", true));
    text.write(L"hello", 2);
    EXPECT_EQ(L"<" + text + L">", u"<scan_yzhe>");
    EXPECT_EQ(String(u"a") + L'b' + u'c', u"abc");
    EXPECT_EQ(L'a' + String(u"b"), u"ab");
    EXPECT_EQ(String(u"a").compare(L'a') + String(u"A").compareIgnoreCase(u'a'), 0);
    EXPECT_EQ(String(u"ab").find(L'b') + String(u"ab").find(u'b'), 2);
    EXPECT_EQ((String(u"x") += TextView(OXA_TEXT("a\0b"), 3)).length(), 2);
}

TEST(StringBridges, TextThatIsUtf8ByItsTypeIsTakenWhereverTextIs)
{
    String text(u8"Stra\u00DFe");
    text = text + u8"!" + std::u8string_view(u8"?");
    text << u8"\u20AC";
    text.write(u8"abc", 2);
    EXPECT_EQ(text, u8"Stra\u00DFe!?\u20ACab");
    EXPECT_EQ(text.find(u8"\u00DF") + text.findLastOf(u8"?") + text.replace(u8"ab", u8""), 4 + 7 + 1);
    EXPECT_TRUE(text.startsWith(u8"STRA\u00DF", true) && text.endsWith(u8"\u20AC") && text < u8"T" && u8"A" < text);
    const std::map<String, int, StringLess2> map{{u8"\u00C4", 1}};
    EXPECT_EQ(map.count(u8"\u00E4"), 1u);
}

TEST(StringBridges, PointersNeverTurnIntoTruthValues)
{
    const wchar_t* const wide = L"wide";
    const char* const narrow = "narrow";
    String text;
    text << wide << OXA_TEXT(' ') << narrow << OXA_TEXT(' ') << true;
    EXPECT_EQ(text, L"wide narrow true");
}

TEST(StringBridges, ComparesWithStandardTextsBothWaysRound)
{
    const String text(OXA_TEXT("abc"));
    const Text standard = OXA_TEXT("abc");
    const TextView view = standard;
    EXPECT_TRUE(text == standard && standard == text && text == view && view == text);
    EXPECT_TRUE(text == OXA_TEXT("abc") && OXA_TEXT("abc") == text && text == "abc");
    EXPECT_TRUE(text != OXA_TEXT("abd") && text < OXA_TEXT("abd") && view <= text);
    EXPECT_TRUE(String::NIL == nullptr && String::NIL != OXA_TEXT("") && text != nullptr);
    EXPECT_TRUE(String::NIL < String::EMPTY && String::EMPTY < text);
    EXPECT_EQ(text.compare(view), 0);
    EXPECT_EQ(text.compare(TextView(OXA_TEXT("abcd")).substr(0, 3)), 0);
    EXPECT_EQ(text.compareIgnoreCase(TextView(OXA_TEXT("ABCD"))), -1);
    // A view has no zero behind it, and a zero within ends the text of both.
    EXPECT_EQ(test::literal(OXA_TEXT("ab\0x")).compare(TextView(OXA_TEXT("ab"))), 0);
    EXPECT_EQ(String(OXA_TEXT("ab")).compare(TextView(OXA_TEXT("ab\0x"), 4)), 0);
    EXPECT_EQ(test::literal(OXA_TEXT("a\0b")).compare(TextView(OXA_TEXT("a\0bc"), 4)), 0);
    const TextView given = text;
    EXPECT_EQ(given, view);
}

TEST(StringBridges, MapsAreBlindToCaseAndLookedUpWithoutACopy)
{
    std::map<String, int, StringLess2> map{{OXA_TEXT("Key"), 1}, {String::NIL, 2}, {OXA_TEXT("\u00C4\u0416"), 3}};
    EXPECT_FALSE(map.emplace(OXA_TEXT("KEY"), 9).second);
    EXPECT_EQ(map.begin()->second, 2);
    EXPECT_EQ(map.find(OXA_TEXT("kEY"))->first.compare(OXA_TEXT("Key")), 0);
    EXPECT_EQ(map.find(TextView(OXA_TEXT("KEY")))->second, 1);
    EXPECT_EQ(map.find(Text(OXA_TEXT("\u00E4\u0436")))->second, 3);
    EXPECT_EQ(map.find(L"key")->second, 1);
    EXPECT_EQ(map.find(u"key")->second, 1);
    EXPECT_EQ(map.find(nullptr)->second, 2);
    EXPECT_EQ(map.count(OXA_TEXT("ke")), 0u);
    EXPECT_EQ(map.count(TextView(OXA_TEXT("keys"))), 0u);

    std::set<String> exact{OXA_TEXT("b"), OXA_TEXT("B"), String::NIL};
    EXPECT_EQ(exact.size(), 3u);
    EXPECT_TRUE(exact.begin()->isNil());
}

TEST(StringBridges, EqualTextsHaveEqualHashes)
{
    std::unordered_set<String, StringHashIgnoreCase, StringEqualIgnoreCase> blind{String::NIL, String::EMPTY,
                                                                                  OXA_TEXT("\u00C4b")};
    EXPECT_FALSE(blind.insert(OXA_TEXT("\u00E4B")).second);
    EXPECT_TRUE(blind.contains(OXA_TEXT("\u00E4b")) && blind.contains(TextView(OXA_TEXT("\u00C4B\0x"), 4)));
    EXPECT_EQ(blind.size(), 3u);
    std::unordered_set<String> set{String::NIL, String::EMPTY, OXA_TEXT("a")};
    EXPECT_EQ(set.size(), 3u);
    EXPECT_TRUE(set.contains(test::literal(OXA_TEXT("a\0b"))));
    EXPECT_FALSE(set.contains(OXA_TEXT("A")));
}

/// The interface of the host framework's text class.
struct HostText
{
    const Char* GetString() const { return text; }
    int GetLength() const { return length; }
    const Char* text;
    int length;
};

/// The same, where it turns into a pointer by itself.
struct PointingHostText : HostText
{
    operator const Char*() const { return text; }
};

TEST(StringBridges, TextOfTheHostFrameworkThatIsAPointerToo)
{
    const PointingHostText b{{OXA_TEXT("b"), 1}};
    const PointingHostText nil{{nullptr, 0}};
    String text(OXA_TEXT("a"));
    text += b;
    text << b << nil;
    EXPECT_EQ(b + text + b, OXA_TEXT("babbb"));
    EXPECT_TRUE(text == OXA_TEXT("abb") && text != b && b != text && text < b && b > text && String::NIL == nil);
    EXPECT_EQ(text.compare(b) + text.compareIgnoreCase(b), -2);
    EXPECT_EQ(text.find(b) + text.find(b, 2) + text.findLastOf(b), 1 + 2 + 2);
    EXPECT_TRUE(StringLess2()(text, b) && !StringLess2()(b, text) && StringLess2()(nil, text));
    EXPECT_EQ(text.replace(b, L"c") + text.replace(OXA_TEXT("c"), b) + text.replace(b, b), 6);
    EXPECT_EQ(String(b), OXA_TEXT("b"));
    const std::unordered_set<String, StringHashIgnoreCase, StringEqualIgnoreCase> set{OXA_TEXT("B"), String::NIL};
    EXPECT_EQ(set.count(b) + set.count(nil) + set.count(HostText(b)), 3u);
}

TEST(StringBridges, TakesTheHostFrameworksText)
{
    EXPECT_TRUE(String(HostText{nullptr, 0}).isNil());
    EXPECT_TRUE(String(HostText{OXA_TEXT(""), 0}).compareEquality(String::EMPTY));
    EXPECT_EQ(String(HostText{OXA_TEXT("abc"), 2}), OXA_TEXT("ab"));
}

}  // namespace

}  // namespace Oxa_1_1
