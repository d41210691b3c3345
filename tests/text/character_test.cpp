// Classes and lower case.

#include "base/text/character.h"

#include <gtest/gtest.h>

#include <cctype>

namespace Oxa_1_1::text
{

namespace
{

TEST(Character, AsciiIsThatOfTheCLocale)
{
    for (int i = 0; i < 0x80; ++i)
    {
        const auto c = static_cast<Char>(i);
        EXPECT_EQ(isAlpha(c), std::isalpha(i) != 0) << i;
        EXPECT_EQ(isAlphaNumeric(c), std::isalnum(i) != 0) << i;
        EXPECT_EQ(isDigit(c), std::isdigit(i) != 0) << i;
        EXPECT_EQ(isSpace(c), std::isspace(i) != 0) << i;
        EXPECT_EQ(isGraphic(c), std::isgraph(i) != 0) << i;
        EXPECT_EQ(toLower(c), std::tolower(i)) << i;
    }
}

TEST(Character, ClassesBeyondAscii)
{
    struct Expected
    {
        Char c;
        bool alpha;
        bool numeric;
        bool space;
        bool graphic;
    };
    const Expected cases[] = {
        {0x85, false, false, true, false},     // next line
        {0x9F, false, false, false, false},    // control
        {0xA0, false, false, true, false},     // no-break space
        {0xAD, false, false, false, false},    // soft hyphen
        {0xAA, true, true, false, true},       // feminine ordinal
        {0xB5, true, true, false, true},       // micro
        {0xD7, false, false, false, true},     // times
        {0xDF, true, true, false, true},       // sharp s
        {0x0301, true, true, false, true},     // combining acute
        {0x0416, true, true, false, true},     // Cyrillic
        {0x0663, false, false, false, true},   // Arabic digit
        {0x093F, true, true, false, true},     // Devanagari vowel sign
        {0x1680, false, false, true, false},   // Ogham space
        {0x2003, false, false, true, false},   // em space
        {0x200B, false, false, false, false},  // zero-width space
        {0x2028, false, false, true, false},   // line separator
        {0x20AC, false, false, false, true},   // euro
        {0x2160, true, true, false, true},     // Roman numeral
        {0x3000, false, false, true, false},   // ideographic space
        {0x4E2D, true, true, false, true},     // Chinese
        {0xAC00, true, true, false, true},     // Korean
        {0xD83D, false, false, false, true},   // high surrogate
        {0xDE00, false, false, false, true},   // low surrogate
        {0xE000, false, false, false, true},   // private use
        {0xF02A, false, false, false, true},   // private use
        {0xFEFF, false, false, false, false},  // byte order mark
        {0xFF21, true, true, false, true},     // full-width A
        {0xFFFF, false, false, false, true},   // never a character, but not a blank
    };
    for (const auto& [c, alpha, numeric, space, graphic] : cases)
    {
        EXPECT_EQ(isAlpha(c), alpha) << std::hex << int(c);
        EXPECT_EQ(isAlphaNumeric(c), numeric) << std::hex << int(c);
        EXPECT_EQ(isSpace(c), space) << std::hex << int(c);
        EXPECT_EQ(isGraphic(c), graphic) << std::hex << int(c);
        EXPECT_FALSE(isDigit(c));
    }
}

TEST(Character, LowerCase)
{
    const struct
    {
        Char upper;
        Char lower;
    } pairs[] = {{0xC4, 0xE4},     {0xDE, 0xFE},     {0xD7, 0xD7},     {0xDF, 0xDF},     {0x0100, 0x0101},
                 {0x0130, 'i'},    {0x0178, 0xFF},   {0x01C4, 0x01C6}, {0x01C5, 0x01C6}, {0x0386, 0x03AC},
                 {0x03A3, 0x03C3}, {0x03C2, 0x03C2}, {0x0416, 0x0436}, {0x0531, 0x0561}, {0x10A0, 0x2D00},
                 {0x13A0, 0xAB70}, {0x1C90, 0x10D0}, {0x1E9E, 0xDF},   {0x2126, 0x03C9}, {0x212A, 'k'},
                 {0x212B, 0xE5},   {0x2160, 0x2170}, {0xA64A, 0xA64B}, {0xFF21, 0xFF41}, {0xD800, 0xD800}};
    for (const auto& [upper, lower] : pairs) EXPECT_EQ(toLower(upper), lower) << std::hex << int(upper);
    for (int i = 0; i < 0x10000; ++i)
    {
        const Char lower = toLower(static_cast<Char>(i));
        EXPECT_EQ(toLower(lower), lower) << i;
    }
}

}  // namespace

}  // namespace Oxa_1_1::text
