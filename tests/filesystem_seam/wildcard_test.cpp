// Search strings and names.

#include "base/filesystem/detail/wildcard.h"

#include <gtest/gtest.h>

#include <chrono>

namespace Oxa_1_1::detail
{

namespace
{

TEST(Wildcard, Matches)
{
    struct Case
    {
        TextView pattern;
        TextView name;
        bool matches;
    };
    const Case cases[] = {
        {OXA_TEXT("*"), OXA_TEXT(""), true},
        {OXA_TEXT("**"), OXA_TEXT("any"), true},
        {OXA_TEXT("*.TXT"), OXA_TEXT("readme.txt"), true},
        {OXA_TEXT("*.txt"), OXA_TEXT("txt"), false},
        {OXA_TEXT("*.txt"), OXA_TEXT(".txt"), true},
        {OXA_TEXT("*.*"), OXA_TEXT("Makefile"), false},
        {OXA_TEXT("a?c"), OXA_TEXT("abc"), true},
        {OXA_TEXT("a?c"), OXA_TEXT("ac"), false},
        {OXA_TEXT("?"), OXA_TEXT(""), false},
        {OXA_TEXT("a*"), OXA_TEXT("a"), true},
        {OXA_TEXT("*a"), OXA_TEXT("ab"), false},
        {OXA_TEXT("*ab*ab"), OXA_TEXT("abab"), true},
        {OXA_TEXT("*ab*ab"), OXA_TEXT("aab"), false},
        {OXA_TEXT("a*b?d*"), OXA_TEXT("aXbbdcd"), true},
        {OXA_TEXT("\u00C4*"), OXA_TEXT("\u00E4x"), true},
        {OXA_TEXT("abc"), OXA_TEXT("abcd"), false},
        {OXA_TEXT("[a-z]"), OXA_TEXT("b"), false},
        {OXA_TEXT("*"), OXA_TEXT("*a"), false},
        {OXA_TEXT("*a"), OXA_TEXT("x*a"), true},
        {OXA_TEXT("**"), OXA_TEXT("*b"), true},
    };
    for (const Case& c : cases) EXPECT_EQ(Wildcard(c.pattern).matches(c.name), c.matches) << &c - cases;
}

TEST(Wildcard, TakesNoLongerForPatternsWithManyStars)
{
    Text pattern;
    for (int i = 0; i < 1000; ++i) pattern += OXA_TEXT("*a");
    pattern += OXA_TEXT("*b");
    const Text name(10000, OXA_TEXT('a'));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(Wildcard(pattern).matches(name));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
}

}  // namespace

}  // namespace Oxa_1_1::detail
