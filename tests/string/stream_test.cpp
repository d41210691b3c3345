// Narrow standard streams.

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>

#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(StringStream, WritesAnsiWithWidthAndFill)
{
    std::ostringstream stream;
    stream << std::setw(5) << std::setfill('.') << String(OXA_TEXT("a\u00E4\u20AC")) << String(OXA_TEXT("\u4E2D"));
    EXPECT_EQ(stream.str(), "..a\xE4\x80?");
}

TEST(StringStream, NothingLeavesTheWidthSet)
{
    for (const String& none : {String::NIL, String::EMPTY})
    {
        std::ostringstream stream;
        stream << std::setw(10) << none;
        EXPECT_EQ(stream.str(), "");
        EXPECT_EQ(stream.width(), 10);
    }
}

TEST(StringStream, ReadsTokens)
{
    const struct
    {
        const char* input;
        String token;
        const char* rest;
    } cases[] = {
        {"abc def", OXA_TEXT("abc"), " def"},
        {" \t\n abc\ndef", OXA_TEXT("abc"), "\ndef"},
        {"\"a \\\"b\\\" c\" rest", OXA_TEXT("a \"b\" c"), " rest"},
        {"\"a\\\\\\n\"x", OXA_TEXT("a\\n"), "x"},
        {"\"\"x", OXA_TEXT(""), "x"},
        {"\"open end", OXA_TEXT("open end"), ""},
        {"\"open\\", OXA_TEXT("open"), ""},
        {"a\"b\" c", OXA_TEXT("a\"b\""), " c"},
        {"\xE4\x80 x", OXA_TEXT("\u00E4\u20AC"), " x"},
        {"  ", OXA_TEXT(""), ""},
        {"", OXA_TEXT(""), ""},
    };
    for (const auto& [input, token, rest] : cases)
    {
        for (const bool skipping : {true, false})
        {
            std::istringstream stream(input);
            if (!skipping) stream >> std::noskipws;
            const auto flags = stream.flags();
            String text(OXA_TEXT("old"));
            stream >> text;
            EXPECT_TRUE(text.compareEquality(token)) << input << testing::PrintToString(text);
            EXPECT_EQ(stream.flags(), flags);
            stream.clear();
            std::string left;
            std::getline(stream, left, '\0');
            EXPECT_EQ(left, rest) << input;
        }
    }
}

TEST(StringStream, ALoopReadsEveryTokenOnce)
{
    std::istringstream stream("one \"two 2\" three");
    String all;
    String token;
    while (stream >> token) all << token << OXA_TEXT("|");
    EXPECT_EQ(all, OXA_TEXT("one|two 2|three|"));
    EXPECT_TRUE(stream.eof() && stream.fail());
    EXPECT_TRUE(token.compareEquality(String::EMPTY));
}

TEST(StringStream, WhatThrowsLosesNoWord)
{
    std::istringstream ending("last");
    ending.exceptions(std::ios::eofbit);
    String text;
    EXPECT_THROW(ending >> text, std::ios::failure);
    EXPECT_EQ(text, OXA_TEXT("last"));
}

/// Yields two characters, then fails.
class FailingBuffer : public std::streambuf
{
    int_type underflow() override
    {
        if (m_left-- == 0) throw 7;
        setg(&m_c, &m_c, &m_c + 1);
        return m_c;
    }

    char m_c = 'x';
    int m_left = 2;
};

TEST(StringStream, AnExceptionOfTheBufferIsTheBadBit)
{
    for (const bool wanted : {false, true})
    {
        FailingBuffer buffer;
        std::istream stream(&buffer);
        if (wanted) stream.exceptions(std::ios::badbit);
        String text;
        if (wanted)
            EXPECT_THROW(stream >> text, int);
        else
            EXPECT_NO_THROW(stream >> text);
        EXPECT_TRUE(stream.bad() && text == OXA_TEXT("xx"));
    }
}

TEST(StringStream, WritesUtf8OnRequest)
{
    std::ostringstream stream;
    stream << std::setw(4) << utf8(OXA_TEXT("\u20AC")) << std::setw(3) << utf8(String::NIL) << utf8(u8"a");
    EXPECT_EQ(stream.str(), " \xE2\x82\xAC  a");
}

}  // namespace

}  // namespace Oxa_1_1
