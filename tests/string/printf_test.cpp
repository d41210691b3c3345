// printf-style formatting.

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string_view>
#include <type_traits>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

template <class... T>
std::string printed(const Char* format, T... arguments)
{
    String text;
    text.printf_apply(format, arguments...);
    return text.isNil() ? "NIL" : text.stringUTF8();
}

TEST(StringPrintf, NumbersDependOnNoLocale)
{
    // Wherever there is one that writes a comma.
    for (const char* const name : {"German_Germany.1252", "de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
        if (std::setlocale(LC_ALL, name) != nullptr) break;
    const std::string text = printed(OXA_TEXT("%Lf %Lg %Le %f %g"), 1.5L, 2.5L, 1e10L, 1.5, 2.5);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(text, "1.500000 2.5 1.000000e+10 1.500000 2.5");
}

TEST(StringPrintf, TextsAndCharacters)
{
    const Char* const wide = OXA_TEXT("w\u00E4");
    EXPECT_EQ(printed(OXA_TEXT("%s|%ls|%ws"), wide, wide, wide), "w\xC3\xA4|w\xC3\xA4|w\xC3\xA4");
    EXPECT_EQ(printed(OXA_TEXT("%hs|%S|%hS"), "n\xE4", "n\xE4", "n\xE4"), "n\xC3\xA4|n\xC3\xA4|n\xC3\xA4");
    EXPECT_EQ(printed(OXA_TEXT("%lS"), wide), "w\xC3\xA4");
    EXPECT_EQ(printed(OXA_TEXT("%c%lc%hc%C"), 0x20AC, 'b', 0x80, 'd'),
              "\xE2\x82\xAC"
              "b\xE2\x82\xAC"
              "d");
    EXPECT_EQ(printed(OXA_TEXT("[%6s|%-6s|%.1s|%6.1s|%.0s]"), OXA_TEXT("abc"), OXA_TEXT("abc"), OXA_TEXT("abc"),
                      OXA_TEXT("abc"), OXA_TEXT("abc")),
              "[   abc|abc   |a|     a|]");
    EXPECT_EQ(printed(OXA_TEXT("[%3c|%-3c]"), 'a', 'b'), "[  a|b  ]");
    EXPECT_EQ(printed(OXA_TEXT("%s %hs %.3s"), static_cast<const Char*>(nullptr), static_cast<const char*>(nullptr),
                      static_cast<const Char*>(nullptr)),
              "(null) (null) (nu");
    EXPECT_EQ(printed(OXA_TEXT("100%% \u20AC")), "100% \xE2\x82\xAC");
    // With a precision the text need not end in a zero.
    const Char open[] = {'a', 'b'};
    EXPECT_EQ(printed(OXA_TEXT("%.2s%.*hs"), open, 1, "xyz"), "abx");
}

TEST(StringPrintf, BothKindsOfWideFormatsTakeTheirOwnKindOfText)
{
    String text;
    text.printf_apply(L"%s-%ls-%d-%c", L"wide", L"\U0001F600", 5, L'x');
    EXPECT_EQ(text, L"wide-\U0001F600-5-x");
    text.printf_apply(u"%s-%ls-%d-%c", u"wide", u"\U0001F600", 5, u'x');
    EXPECT_EQ(text, u"wide-\U0001F600-5-x");
}

TEST(StringPrintf, MalformedFormatsLeaveTheTextAsItWas)
{
    for (const Char* const format :
         {OXA_TEXT("%"), OXA_TEXT("ok %"), OXA_TEXT("%5"), OXA_TEXT("%n"), OXA_TEXT("%hhn"), OXA_TEXT("%y"),
          OXA_TEXT("%1$d"), OXA_TEXT("%-+ #05.3l"), OXA_TEXT("%99999999999d"), OXA_TEXT("%.99999999999d"),
          OXA_TEXT("%2147483647d%2147483647d"), OXA_TEXT("%l\u00E4"), OXA_TEXT("%5.5.5d")})
    {
        String text(OXA_TEXT("before"));
        text.printf_apply(format, 1, 2);
        EXPECT_EQ(text, OXA_TEXT("before")) << String(format).stringUTF8();
        String nil;
        nil.printf_apply(format, 1, 2);
        EXPECT_TRUE(nil.isNil());
    }
    String text;
    text.printf_apply(static_cast<const Char*>(nullptr));
    EXPECT_TRUE(text.isNil());
    text.printf_apply(OXA_TEXT(""));
    EXPECT_TRUE(text.compareEquality(String::EMPTY));
}

TEST(StringPrintf, ResultsOfMoreThanTheLargestIntAreRefused)
{
    EXPECT_EQ(printed(OXA_TEXT("%*d"), INT_MIN, 1), "NIL");
    EXPECT_EQ(printed(OXA_TEXT("%.2147483647d"), -1), "NIL");
    EXPECT_EQ(printed(OXA_TEXT("%.2147483647f"), 1.5), "NIL");
    EXPECT_EQ(printed(OXA_TEXT("%.2147483647e"), 1.5), "NIL");
    EXPECT_EQ(printed(OXA_TEXT("%.2147483647a"), 1.5), "NIL");
    EXPECT_EQ(printed(OXA_TEXT("%#.2147483647g"), 0.0001220703125), "NIL");
    // Its zeros are not shown, so it is short.
    EXPECT_EQ(printed(OXA_TEXT("%.2147483647g"), 0.0001220703125), "0.0001220703125");
    EXPECT_EQ(printed(OXA_TEXT("%.*d"), INT_MIN, 1), "1");
}

TEST(StringPrintf, ArgumentsMayLieInTheTextItself)
{
    String text(OXA_TEXT("abc"));
    text.printf_apply(OXA_TEXT("<%s|%s>"), text.stringPath(), text.stringPath());
    EXPECT_EQ(text, OXA_TEXT("<abc|abc>"));
    text.printf_apply(text.stringPath());
    EXPECT_EQ(text, OXA_TEXT("<abc|abc>"));
}

TEST(StringPrintf, WidthsAndPrecisionsFromArguments)
{
    EXPECT_EQ(printed(OXA_TEXT("[%*d|%*d|%.*d|%.*d]"), 5, 42, -5, 42, 4, 42, -1, 42), "[   42|42   |0042|42]");
    EXPECT_EQ(printed(OXA_TEXT("[%0*.*f]"), 8, 2, 3.14159), "[00003.14]");
}

TEST(StringPrintf, SizesOfIntegers)
{
    EXPECT_EQ(printed(OXA_TEXT("[%.0d|%#.0o|%#x|%+.0i|%#o]"), 0, 0, 0, 0, 8), "[|0|0|+|010]");
    EXPECT_EQ(printed(OXA_TEXT("%hhd %hhu %hd %hu"), 0x1FF, 0x1FF, 0x18000, 0x18000), "-1 255 -32768 32768");
    EXPECT_EQ(printed(OXA_TEXT("%lld %llu %I64d %I32u"), LLONG_MIN, ULLONG_MAX, LLONG_MAX, UINT_MAX),
              "-9223372036854775808 18446744073709551615 9223372036854775807 4294967295");
    EXPECT_EQ(printed(OXA_TEXT("%ld %lu %jd %zu %td %Id"), LONG_MIN, ULONG_MAX, INTMAX_MIN, SIZE_MAX,
                      std::ptrdiff_t(-1), std::ptrdiff_t(-2)),
              std::to_string(LONG_MIN) + " " + std::to_string(ULONG_MAX) +
                  " -9223372036854775808 18446744073709551615 -1 -2");
    EXPECT_EQ(printed(OXA_TEXT("%p|%20p"), reinterpret_cast<void*>(0xBEEF), static_cast<void*>(nullptr)),
              "000000000000BEEF|    0000000000000000");
}

TEST(StringPrintf, FloatingPointForms)
{
    EXPECT_EQ(printed(OXA_TEXT("%f %.0f %#.0f %e %G %g"), 2.5, 2.5, 2.5, 12345.678, 1e-10, 100000.0),
              "2.500000 2 2. 1.234568e+04 1E-10 100000");
    EXPECT_EQ(printed(OXA_TEXT("%g %g %#g %.3g %.10g"), 1e6, 0.0001, 1.0, 1234.0, 0.1),
              "1e+06 0.0001 1.00000 1.23e+03 0.1");
    EXPECT_EQ(printed(OXA_TEXT("%a %A %.2a %a"), 1.5, -0.15625, 1.0, 0.0), "0x1.8p+0 -0X1.4P-3 0x1.00p+0 0x0p+0");
    EXPECT_EQ(printed(OXA_TEXT("%.0a %.0a %.1a %a"), 1.5, 2.5, 1.96875, std::numeric_limits<double>::denorm_min()),
              "0x2p+0 0x1p+1 0x2.0p+0 0x0.0000000000001p-1022");
    EXPECT_EQ(printed(OXA_TEXT("%05f|%-8F|%+g|% g"), std::numeric_limits<double>::infinity(), std::nan(""),
                      std::numeric_limits<double>::infinity(), 1.0),
              "  inf|NAN     |+inf| 1");
    EXPECT_EQ(printed(OXA_TEXT("%.3Lf %Lg"), 2.0L / 3, 1e300L), "0.667 1e+300");
    // Zeros that only fill are written, but never computed.
    const std::string wide = printed(OXA_TEXT("%.100000f"), 0.5);
    EXPECT_EQ(wide.size(), 100002u);
    EXPECT_EQ(wide.substr(0, 4), "0.50");
    EXPECT_EQ(printed(OXA_TEXT("%.2000e"), 1.0).substr(1998), "0000e+00");
}

/// The same format for both libraries, for arguments that they take alike.
template <class T>
void compareWithRunTimeLibrary(std::mt19937_64& random, const char* size, const char* conversions, T value)
{
    std::string format = "[%";
    // Signs belong to signed conversions; the libraries differ about them elsewhere.
    const std::string_view flags = std::is_unsigned_v<T> ? "-#0" : "-#0+ ";
    for (const char flag : flags)
        if (random() % 4 == 0) format += flag;
    if (random() % 2 == 0) format += std::to_string(random() % 30);
    if (random() % 2 == 0) format.append(".").append(std::to_string(random() % 25));
    format += size;
    format += conversions[random() % std::char_traits<char>::length(conversions)];
    format += "]";

    char expected[700];
    std::snprintf(expected, sizeof expected, format.c_str(), value);
    ASSERT_EQ(printed(String(format).stringPath(), value), expected) << format;
}

TEST(StringPrintf, RandomNumbersPrintLikeTheRunTimeLibrary)
{
    std::mt19937_64 random(2);
    for (int i = 0; i < 20000; ++i)
    {
        const std::uint64_t bits = random() >> random() % 64;
        compareWithRunTimeLibrary(random, "", "di", static_cast<int>(bits));
        compareWithRunTimeLibrary(random, "hh", "di", static_cast<int>(bits));
        compareWithRunTimeLibrary(random, "ll", "di", static_cast<long long>(bits));
        compareWithRunTimeLibrary(random, "", "ouxX", static_cast<unsigned>(bits) | 1);
        compareWithRunTimeLibrary(random, "l", "ouxX", static_cast<unsigned long>(bits) | 1);
        const double value = std::ldexp(static_cast<double>(bits), static_cast<int>(random() % 200) - 150);
        compareWithRunTimeLibrary(random, "", "fFeEgG", random() % 2 == 0 ? value : -value);
        compareWithRunTimeLibrary(random, "", "fFeEgG", static_cast<double>(random() % 10000) / 16);
        compareWithRunTimeLibrary(random, "L", "fFeEgG", static_cast<long double>(bits) / 1024);
    }
}

}  // namespace

}  // namespace Oxa_1_1
