#include "tests/docs/page.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <iostream>
#include <sstream>

namespace
{

constexpr std::string_view ANYTHING = "...";

/// Takes what is written to std::cout as long as it lives.
class Printed
{
   public:
    Printed() : m_former(std::cout.rdbuf(m_text.rdbuf())) {}
    ~Printed() { std::cout.rdbuf(m_former); }
    Printed(const Printed&) = delete;
    Printed& operator=(const Printed&) = delete;

    std::string text() const { return m_text.str(); }

   private:
    std::ostringstream m_text;
    std::streambuf* m_former;
};

/// The text up to a mark, which is taken away together with it.
std::string_view takeUpTo(std::string_view& text, std::string_view mark)
{
    const std::size_t end = text.find(mark);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + mark.size());
    return part;
}

bool lineMatches(std::string_view line, std::string_view stated)
{
    if (stated.find(ANYTHING) == std::string_view::npos) return line == stated;
    const std::string_view begin = takeUpTo(stated, ANYTHING);
    if (!line.starts_with(begin)) return false;
    line.remove_prefix(begin.size());
    while (true)
    {
        if (lineMatches(line, stated)) return true;
        if (line.empty()) return false;
        line.remove_prefix(1);
    }
}

bool matches(std::string_view printed, std::string_view stated)
{
    while (!stated.empty())
    {
        const std::string_view line = takeUpTo(stated, "\n");
        if (line == ANYTHING)
        {
            while (!matches(printed, stated))
            {
                if (printed.empty()) return false;
                takeUpTo(printed, "\n");
            }
            return true;
        }
        if (printed.empty() || !lineMatches(takeUpTo(printed, "\n"), line)) return false;
    }
    return printed.empty();
}

}  // namespace

void runExample(const char* place, void (*example)(), std::string_view stated)
{
    std::string text;
    {
        const Printed printed;
        example();
        text = printed.text();
    }
    EXPECT_TRUE(matches(text, stated)) << place << " prints:\n" << text << "The page says:\n" << stated;
}

void enterEmptyFolder(const char* folder)
{
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::filesystem::current_path(folder);
}
