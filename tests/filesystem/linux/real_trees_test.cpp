// Trees as packages and their users leave them, compared with what the system's own tools see.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <set>
#include <sstream>

#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

namespace fs = std::filesystem;

std::string outputOf(const std::string& command)
{
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    for (char text[4096]; pipe != nullptr && std::fgets(text, sizeof text, pipe.get()) != nullptr;) output += text;
    return output;
}

/// Every entry with its kind, mode, size, time and what it leads to; folders without what changes with their entries.
std::string listing(const fs::path& tree)
{
    return outputOf("cd '" + tree.string() +
                    "' && find . -type d -printf '%P %y\\n' -o -printf '%P %y %m %s %T@ %l\\n'" + " | LC_ALL=C sort");
}

/// What two entries of the same kind have in common; the content is compared by other means.
std::string describe(const fs::path& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return "leads to " + fs::read_symlink(path).string();
    if (S_ISDIR(status.st_mode)) return "folder";
    std::ostringstream text;
    text << std::oct << (status.st_mode & 07777) << std::dec << ' ' << status.st_size << ' ' << status.st_mtim.tv_sec
         << '.' << status.st_mtim.tv_nsec;
    return text.str();
}

std::set<std::string> namesIn(const fs::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
    return names;
}

/// A copy has files and folders where the source has links to them, but nothing in those that lead to what they lie in.
void expectCopied(const fs::path& source, const fs::path& copy, std::vector<fs::path> folders)
{
    const auto leadsBack = [&] { return std::ranges::find(folders, fs::canonical(source)) != folders.end(); };
    const std::set<std::string> names = leadsBack() ? std::set<std::string>() : namesIn(source);
    ASSERT_EQ(namesIn(copy), names) << source;
    folders.push_back(fs::canonical(source));
    for (const auto& name : names)
    {
        EXPECT_EQ(describe(copy / name), describe(source / name)) << source / name;
        if (fs::is_directory(source / name)) expectCopied(source / name, copy / name, folders);
    }
}

/// Small ones that nearly every machine has; others may be named, with colons between.
std::vector<fs::path> treesHere()
{
    std::istringstream text("/usr/share/zoneinfo/Europe:/etc/ssl:/usr/share/perl5/Debconf");
    if (const char* const named = std::getenv("OXA_TEST_TREES")) text.str(named);
    std::vector<fs::path> trees;
    for (std::string tree; std::getline(text, tree, ':');)
        if (fs::is_directory(tree)) trees.emplace_back(tree);
    return trees;
}

TEST(RealTrees, AreCopiedMergedMovedAndRemoved)
{
    const TempFolder temp;
    Messages messages;
    temp.makeFolder("copies");
    for (const auto& tree : treesHere())
    {
        SCOPED_TRACE(tree);
        // Nothing may replace read-only files, nor read what is kept from this user.
        outputOf("cp -a '" + tree.string() + "' '" + temp.path("tree").string() + "' && chmod -R u+rwX '" +
                 temp.path("tree").string() + "'");
        const std::string before = listing(temp.path("tree"));
        ASSERT_GT(before.size(), 100U);
        EXPECT_TRUE(temp.directory("tree")->move(*temp.directory("moved"), false));
        EXPECT_EQ(listing(temp.path("moved")), before);
        EXPECT_FALSE(temp.has("tree"));
        for (const bool isMerged : {false, true})
        {
            EXPECT_NE(temp.directory("moved")->copy(*temp.directory("copies"), isMerged, nullptr), nullptr);
            expectCopied(temp.path("moved"), temp.path("copies/moved"), {});
        }
        EXPECT_EQ(outputOf("diff -rq '" + temp.path("moved").string() + "' '" + temp.path("copies/moved").string() +
                           "' 2>/dev/null | grep differ"),
                  "");
        EXPECT_TRUE(temp.directory("moved")->remove(true));
        EXPECT_TRUE(temp.directory("copies/moved")->remove(true));
        EXPECT_EQ(temp.contents(), Names{"copies/"});
    }
    EXPECT_TRUE(messages.take().empty());
}

TEST(RealTrees, MayBeDeeperThanPathsAreLong)
{
    const TempFolder temp;
    Messages messages;
    auto deepest = std::shared_ptr<const Directory>(temp.directory("top"));
    for (int level = 0; level < 75; ++level) deepest = deepest->appendLevel(String(OXA_TEXT('d'), 60));
    EXPECT_TRUE(deepest->create());
    EXPECT_TRUE(File::fromString(*deepest, "file")->touch());
    temp.makeFolder("copies");
    EXPECT_NE(temp.directory("top")->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_TRUE(temp.directory("copies/top")->move(*temp.directory("moved"), false));
    EXPECT_EQ(listing(temp.path("moved")), listing(temp.path("top")));
    EXPECT_EQ(temp.directory("moved")->collectContents("*", true).size(), 76U);
    EXPECT_TRUE(temp.directory("moved")->remove(true));
    EXPECT_TRUE(temp.directory("top")->remove(true));
    EXPECT_EQ(temp.contents(), Names{"copies/"});
    EXPECT_TRUE(messages.take().empty());
}

}  // namespace

}  // namespace Oxa_1_1::test
