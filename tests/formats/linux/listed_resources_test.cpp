// The resources of real libraries beside what a tool for object files lists.

#include <cstdio>
#include <memory>

#include "tests/formats/wine_libraries.h"

namespace Oxa_1_1::formats
{

namespace
{

std::string outputOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    char part[4096];
    while (const std::size_t size = std::fread(part, 1, sizeof part, pipe.get())) output.append(part, size);
    return output;
}

/// What follows `word`, up to the next comma. Empty without the word.
std::string_view behind(std::string_view line, std::string_view word)
{
    const std::size_t at = line.find(word);
    if (at == std::string_view::npos) return {};
    line.remove_prefix(at + word.size());
    return line.substr(0, line.find(','));
}

unsigned long hexadecimal(std::string_view text) { return std::stoul(std::string(text), nullptr, 16); }

/// Puts the lines of the directories, whose depth their indentation tells, together to resources.
class Listing
{
   public:
    void add(std::string_view line)
    {
        const std::size_t address = line.find(' ');
        if (address == std::string_view::npos) return;
        const std::size_t indentation = line.find_first_not_of(' ', address) - address;
        if (line.find(" Entry: ") != std::string_view::npos)
            m_keys.at((indentation - 3) / 2) = keyOf(line);
        else if (line.find(" Leaf: ") != std::string_view::npos)
            m_lines.push_back(m_keys[0] + " " + m_keys[1] + " " + m_keys[2].substr(1) + ": " +
                              std::to_string(hexadecimal(behind(line, "Size: "))));
    }

    std::vector<std::string> sorted()
    {
        std::ranges::sort(m_lines);
        return m_lines;
    }

   private:
    static std::string keyOf(std::string_view line)
    {
        const std::string_view name = behind(line, "]: ");
        if (!name.empty()) return std::string(name);
        return std::string("#").append(std::to_string(hexadecimal(behind(line, "ID: "))));
    }

    std::array<std::string, 3> m_keys;
    std::vector<std::string> m_lines;
};

class ListedResources : public test::WineLibrary
{
};

INSTANTIATE_TEST_SUITE_P(Wine, ListedResources, test::wineLibraries(), test::nameOfLibrary);

TEST_P(ListedResources, Entries)
{
    if (std::string_view(OXA_OBJDUMP).empty()) GTEST_SKIP() << "The tools for Windows are not installed.";
    std::string output = outputOf(std::string(OXA_OBJDUMP) + " -p " + path());
    output.erase(0, output.find("Resource Directory section"));
    Listing listing;
    std::string_view rest = output;
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
        listing.add(rest.substr(0, end));
        rest.remove_prefix(end + 1);
    }
    std::vector<std::string> entries = test::describe(index->entries());
    std::ranges::sort(entries);
    EXPECT_GT(entries.size(), 20u);
    EXPECT_EQ(entries, listing.sorted());
}

}  // namespace

}  // namespace Oxa_1_1::formats
