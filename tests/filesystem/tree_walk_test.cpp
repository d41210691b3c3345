// Walks below a folder, one entry at a time.

#include "base/filesystem/tree_walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ranges>
#include <utility>

#include "extras/memory_file_system/memory_file_system.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

static_assert(std::input_iterator<TreeWalk::Iterator> && std::ranges::input_range<TreeWalk>);

class Walks : public testing::Test
{
   protected:
    Walks()
    {
        for (const char* const file : {"tree/a.txt", "tree/b.TXT", "tree/c.jpg", "tree/x/d.txt", "tree/x/y/z/e.txt"})
            temp.write(file, file);
        temp.makeFolder("tree/empty");
    }

    /// Names from the folder on, with slashes; folders end with one.
    static Names shown(TreeWalk& walk)
    {
        Names names;
        for (const WalkEntry& entry : walk) names.push_back(nameOf(entry));
        return names;
    }
    Names shown(WalkOptions options) const
    {
        TreeWalk walk(*temp.directory("tree"), std::move(options));
        Names names = shown(walk);
        EXPECT_TRUE(walk.isWhole());
        return names;
    }
    static std::string nameOf(const WalkEntry& entry)
    {
        std::string name = entry.relativeName().stringUTF8();
        std::ranges::replace(name, '\\', '/');
        return name + (entry.isFolder() ? "/" : "");
    }

    const TempFolder temp;
    Messages messages;
};

TEST_F(Walks, ShowWhatIsWanted)
{
    const Names all = temp.contents("tree");
    EXPECT_EQ(sorted(shown({})), all);
    EXPECT_EQ(sorted(shown({.order = WalkOrder::FoldersFirst})), all);
    const struct
    {
        WalkOptions options;
        Names expected;
    } cases[] = {
        {{.pattern = "*.txt"}, {"a.txt", "b.TXT", "x/d.txt", "x/y/z/e.txt"}},
        {{.pattern = "?"}, {"x/", "x/y/", "x/y/z/"}},
        {{.pattern = "e*"}, {"empty/", "x/y/z/e.txt"}},
        {{.pattern = "e*", .kinds = WalkedKinds::Files}, {"x/y/z/e.txt"}},
        {{.kinds = WalkedKinds::Folders}, {"empty/", "x/", "x/y/", "x/y/z/"}},
        {{.maxDepth = 1, .kinds = WalkedKinds::Folders}, {"empty/", "x/"}},
        {{.maxDepth = 2}, {"a.txt", "b.TXT", "c.jpg", "empty/", "x/", "x/d.txt", "x/y/"}},
        {{.maxDepth = 0}, {}},
        {{.pattern = ""}, {}},
        {{.pattern = "a|b"}, {}},
    };
    for (const auto& [options, expected] : cases)
    {
        EXPECT_EQ(sorted(shown(options)), expected);
        if (options.maxDepth > 9)
        {
            EXPECT_EQ(countEntries(*temp.directory("tree"), options), all.size());
        }
    }
}

TEST_F(Walks, ShowEachFolderBeforeWhatIsInIt)
{
    for (const WalkOrder order : {WalkOrder::AsRead, WalkOrder::FoldersFirst})
    {
        TreeWalk walk(*temp.directory("tree"), {.order = order});
        Names way;
        bool hadFile = false;
        for (const WalkEntry& entry : walk)
        {
            ASSERT_GE(entry.depth(), 1U);
            ASSERT_LE(entry.depth(), way.size() + 1);
            way.resize(entry.depth() - 1);
            way.push_back(entry.name().stringUTF8());
            std::string name;
            for (const std::string& level : way) name += (name.empty() ? "" : "/") + level;
            EXPECT_EQ(nameOf(entry), name + (entry.isFolder() ? "/" : ""));
            EXPECT_EQ(entry.isFile() ? temp.file("tree/" + name)->getFullName()
                                     : temp.directory("tree/" + name)->getFullName(),
                      entry.item()->getFullName());
            EXPECT_EQ(entry.fullName(), entry.item()->getFullName());
            EXPECT_EQ(entry.file() == nullptr, entry.isFolder());
            hadFile = hadFile || (entry.depth() == 1 && entry.isFile());
            EXPECT_FALSE(order == WalkOrder::FoldersFirst && hadFile && entry.isFolder());
        }
        EXPECT_EQ(walk.passed(), 9U);
        EXPECT_TRUE(walk.begin() == walk.end());
    }
}

TEST_F(Walks, PassOverWhatIsSkipped)
{
    TreeWalk walk(*temp.directory("tree"), {.kinds = WalkedKinds::Folders});
    Names names;
    for (const WalkEntry& entry : walk)
    {
        names.push_back(nameOf(entry));
        if (entry.name() == OXA_TEXT("y")) walk.skipBelow();
    }
    EXPECT_EQ(sorted(names), (Names{"empty/", "x/", "x/y/"}));
    // One that is left and taken up again goes on.
    TreeWalk other(*temp.directory("tree"));
    auto it = other.begin();
    const String first = it->name();
    EXPECT_EQ(other.begin()->name(), first);
    EXPECT_NE((++it)->fullName(), first);
}

TEST_F(Walks, AskForMoreOnlyWhenItIsWanted)
{
    const FileTime time =
        std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now()) - std::chrono::hours(5);
    ASSERT_TRUE(setLastWriteTime(*temp.file("tree/a.txt"), time));
    TreeWalk walk(*temp.directory("tree"));
    for (const WalkEntry& entry : walk)
    {
        EXPECT_FALSE(entry.isLink());
        EXPECT_EQ(entry.kind() == WalkEntry::Kind::File, entry.isFile());
        const bool isGone = entry.isFile() && !entry.file()->exists();
        EXPECT_EQ(entry.size().value_or(0), entry.isFile() && !isGone ? 5 + entry.relativeName().length() : 0U);
        if (entry.name() == OXA_TEXT("a.txt"))
        {
            EXPECT_EQ(entry.lastWriteTime(), time);
            EXPECT_TRUE(entry.creationTime());
            std::filesystem::remove(temp.path("tree/c.jpg"));
        }
    }
}

TEST_F(Walks, TellWhatCannotBeRead)
{
    std::vector<Failure> told;
    const auto walked = [&](const Directory& folder, std::size_t limit)
    {
        told.clear();
        TreeWalk walk(folder, {.failureLimit = limit, .onFailure = [&](const Failure& each) { told.push_back(each); }});
        EXPECT_EQ(shown(walk), Names{});
        EXPECT_FALSE(walk.isWhole());
        EXPECT_EQ(walk.failureCount(), 1U);
        EXPECT_EQ(walk.failures().size(), limit);
        return told.at(0).path;
    };
    EXPECT_EQ(walked(*temp.directory("missing"), 1), temp.directory("missing")->getFullName());
    EXPECT_EQ(walked(*temp.directory("tree/a.txt"), 0), temp.directory("tree/a.txt")->getFullName());
    const MemoryFileSystem memory;
    EXPECT_EQ(walked(*Directory::fromString("mem:folder"), 1), Directory::fromString("mem:folder")->getFullName());
    EXPECT_EQ(told.at(0).code.value(), 50);

    // Who is told may throw, and go on with the walk.
    TreeWalk walk(*temp.directory("tree"),
                  {.order = WalkOrder::FoldersFirst, .onFailure = [](const Failure& each) { throw Failure(each); }});
    Names names;
    const auto step = [&](const WalkEntry& entry)
    {
        names.push_back(nameOf(entry));
        if (names.back() != "x/") return;
        std::filesystem::remove_all(temp.path("tree/x"));
        temp.write("tree/x");
    };
    EXPECT_THROW(std::ranges::for_each(walk, step), Failure);
    std::ranges::for_each(walk, step);
    EXPECT_EQ(sorted(names), (Names{"a.txt", "b.TXT", "c.jpg", "empty/", "x/"}));
}

TEST_F(Walks, HoldFewFoldersOpenAtAnyDepth)
{
    std::string deep = "deep";
    for (int i = 0; i < 60; ++i)
    {
        temp.write(deep + "/f" + std::to_string(i));
        temp.write(deep + "/z");
        deep += "/d";
    }
    temp.makeFolder(deep);
    for (const WalkOrder order : {WalkOrder::AsRead, WalkOrder::FoldersFirst})
    {
        TreeWalk walk(*temp.directory("deep"), {.order = order});
        EXPECT_EQ(sorted(shown(walk)), temp.contents("deep"));
        EXPECT_TRUE(walk.isWhole());
    }
}

}  // namespace

}  // namespace Oxa_1_1::test
