// Trees as packages and their users leave them, compared with what the system's own tools see.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <utility>

#include "tests/filesystem/foreigners.h"
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
                    "' && find . -type d -printf '%P %y %m\\n' -o -printf '%P %y %m %s %T@ %l\\n'" +
                    " | LC_ALL=C sort");
}

/// What two entries of the same kind have in common; the content is compared by other means.
std::string describe(const fs::path& path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return "leads to " + fs::read_symlink(path).string();
    std::ostringstream text;
    if (S_ISDIR(status.st_mode)) text << "folder " << std::oct << (status.st_mode & 0777);
    if (S_ISDIR(status.st_mode)) return text.str();
    text << std::oct << (status.st_mode & 07777) << std::dec << ' ' << status.st_size << ' ' << status.st_mtim.tv_sec
         << '.' << status.st_mtim.tv_nsec;
    return text.str();
}

/// Cuts a file as soon as a part of it is copied.
class Cutter final : public IProgress
{
   public:
    Cutter(fs::path file, std::size_t size) : m_file(std::move(file)), m_size(size) {}
    void onProgress(double) override { fs::resize_file(m_file, m_size); }
    void onItem(const std::string&) override {}

   private:
    fs::path m_file;
    std::size_t m_size;
};

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

class TreeModes : public testing::TestWithParam<bool>
{
};

INSTANTIATE_TEST_SUITE_P(RealTrees, TreeModes, testing::Bool());

TEST_P(TreeModes, AreKept)
{
    const auto foreigners = GetParam() ? std::make_unique<ForeignersFirst>() : nullptr;
    const TempFolder temp;
    temp.write("tree/private/deep/file");
    temp.write("tree/open/file");
    temp.write("tree/fixed/file");
    const auto modeOf = [&](const std::string& path) { return describe(temp.path(path)); };
    for (const auto& [name, mode] : std::map<std::string, unsigned>{{"tree/private/deep", 0750},
                                                                    {"tree/private", 0700},
                                                                    {"tree/open", 0777},
                                                                    {"tree/fixed", 0555},
                                                                    {"tree", 0711}})
        ASSERT_EQ(chmod(temp.path(name).c_str(), mode), 0);
    temp.makeFolder("copies");
    EXPECT_NE(temp.directory("tree")->copy(*temp.directory("copies"), false, nullptr), nullptr);
    for (const char* const name : {"tree", "tree/private", "tree/private/deep", "tree/open", "tree/fixed"})
        EXPECT_EQ(modeOf("copies/" + std::string(name)), modeOf(name)) << name;
    ASSERT_EQ(chmod(temp.path("copies/tree/fixed").c_str(), 0755), 0);
    EXPECT_TRUE(temp.directory("copies/tree")->move(*temp.directory("moved/tree"), false));
    for (const char* const name : {"tree", "tree/private", "tree/private/deep", "tree/open"})
        EXPECT_EQ(modeOf("moved/" + std::string(name)), modeOf(name)) << name;
    // They do not keep a copy that is not to remain. A device is not copied.
    std::filesystem::create_symlink("/dev/null", temp.path("tree/device"));
    EXPECT_EQ(temp.directory("tree")->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("copies"), Names{});
    ASSERT_EQ(chmod(temp.path("tree/fixed").c_str(), 0755), 0);
}

/// Makes it with a file in each of its folders, by a way that no path is too long for.
void makeDeep(const fs::path& top, int levels)
{
    fs::create_directory(top);
    int folder = open(top.c_str(), O_PATH | O_DIRECTORY);
    for (int level = 0; level < levels; ++level)
    {
        ASSERT_EQ(mkdirat(folder, "d", 0755), 0);
        close(openat(folder, "f", O_CREAT | O_WRONLY, 0644));
        const int below = openat(folder, "d", O_PATH | O_DIRECTORY);
        close(std::exchange(folder, below));
    }
    close(folder);
}

/// With few open files and a small stack.
TEST(RealTrees, MayHaveFilesThatAreCutWhileTheyAreCopied)
{
    constexpr std::size_t MEBI = 1 << 20;
    std::string content(3 * MEBI + 5000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) content[i] = static_cast<char>(i * 2654435761U >> 16);
    const TempFolder temp;
    for (const std::size_t size : {MEBI, MEBI + 1, 2 * MEBI - 1, 2 * MEBI + 4096, content.size()})
    {
        temp.write("a", content);
        const auto cutter = std::make_shared<Cutter>(temp.path("a"), size);
        EXPECT_EQ(temp.file("a")->copy(*temp.file("b"), true, cutter), 0);
        EXPECT_TRUE(temp.read("b") == content.substr(0, size)) << size;
    }
}

TEST(RealTrees, MayBeOfAnyDepth)
{
    const TempFolder temp;
    Messages messages;
    constexpr int LEVELS = 2500;
    makeDeep(temp.path("top"), LEVELS);
    temp.makeFolder("copies");
    // From link to link, there is no way back up.
    for (int i = 0; i < 200; ++i)
    {
        const std::string number = std::to_string(i);
        temp.makeFolder("folders/" + number);
        fs::create_symlink(temp.path("folders").string() + "/" + std::to_string(i + 1),
                           temp.path("folders/" + number + "/n"));
    }
    temp.write("folders/200/f");
    temp.makeFolder("links");
    fs::create_symlink(temp.path("folders/0"), temp.path("links/n"));
    struct rlimit files = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &files), 0);
    const struct rlimit few = {.rlim_cur = 128, .rlim_max = files.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    std::function<void()> work = [&]
    {
        unsigned long long bytes = 1;
        EXPECT_TRUE(temp.directory("top")->size(bytes));
        EXPECT_EQ(bytes, 0U);
        EXPECT_EQ(temp.directory("top")->collectFiles("f", true).size(), std::size_t{LEVELS});
        EXPECT_EQ(temp.directory("links")->collectFiles("f", true).size(), 1U);
        EXPECT_TRUE(temp.directory("links")->size(bytes));
        EXPECT_TRUE(Directory::isLastListWhole());
        EXPECT_NE(temp.directory("top")->copy(*temp.directory("copies"), false, nullptr), nullptr);
        EXPECT_TRUE(temp.directory("copies/top")->move(*temp.directory("moved"), false));
        EXPECT_EQ(outputOf("find '" + temp.path("moved").string() + "' -name f | wc -l"),
                  std::to_string(LEVELS) + "\n");
        EXPECT_TRUE(temp.directory("moved")->remove(true));
        EXPECT_TRUE(temp.directory("top")->remove(true));
    };
    pthread_attr_t small;
    pthread_attr_init(&small);
    pthread_attr_setstacksize(&small, 256 * 1024);
    pthread_t thread{};
    const auto start = [](void* data) -> void*
    {
        (*static_cast<std::function<void()>*>(data))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &small, start, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
    setrlimit(RLIMIT_NOFILE, &files);
    EXPECT_EQ(temp.contents("copies"), Names{});
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
