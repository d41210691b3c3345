#include "base/formats/demangle.h"

#include <gtest/gtest.h>

namespace Oxa_1_1::formats
{

namespace
{

TEST(Demangle, NamesAreThoseOfTheSource)
{
    EXPECT_EQ(demangle("_ZN1a1fEi"), "a::f(int)");
    EXPECT_EQ(demangle("main"), "main");
    EXPECT_EQ(demangle("_Znonsense"), "_Znonsense");
    EXPECT_EQ(demangle(""), "");
}

TEST(Demangle, NamesAloneLackParametersAndResults)
{
    const struct
    {
        const char* name;
        const char* alone;
    } cases[] = {{"", ""},
                 {"main", "main"},
                 {"a::f(int)", "a::f"},
                 {"a::f(int) const", "a::f"},
                 {"a::f(int) [clone .cold]", "a::f"},
                 {"void a::g<int, b (*)(c)>(b (*)(c))", "a::g<int, b (*)(c)>"},
                 {"std::map<int, a b> f<int>(x y)", "f<int>"},
                 {"main::{lambda(int)#1}::operator()(int) const", "main::{lambda(int)#1}::operator()"},
                 {"(anonymous namespace)::f()", "(anonymous namespace)::f"},
                 {"a::operator<(a const&, a const&)", "a::operator<"},
                 {"a::operator bool() const", "a::operator bool"},
                 {"operator new(unsigned long)", "operator new"},
                 {"bool operator<< <int>(int)", "operator<< <int>"},
                 {"f)(", "f)("},
                 {")", ")"},
                 {"()", "()"}};
    for (const auto& [name, alone] : cases) EXPECT_EQ(nameAlone(name), alone) << name;
}

}  // namespace

}  // namespace Oxa_1_1::formats
