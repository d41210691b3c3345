// Links, and names that only this system allows.

#include <gtest/gtest.h>

#include "tests/filesystem/foreigners.h"
#include "tests/filesystem/linux/world.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

void link(const TempFolder& temp, const std::string& to, const std::string& name)
{
    std::filesystem::create_symlink(to, temp.path(name));
}

TEST(Links, AreFoldersToWalkThroughButNotInCircles)
{
    const TempFolder temp;
    temp.write("real/file");
    temp.makeFolder("tree/inner");
    link(temp, "../real", "tree/link");
    link(temp, "..", "tree/up");
    link(temp, ".", "tree/inner/self");
    link(temp, "../..", "tree/inner/top");
    link(temp, "nowhere", "tree/dangling");
    const auto tree = temp.directory("tree");
    EXPECT_EQ(sorted(namesIn(*tree, tree->findDirectories("*"))), (Names{"inner/", "link/", "up/"}));
    EXPECT_EQ(sorted(namesIn(*tree, tree->findFiles("*"))), (Names{"dangling"}));
    EXPECT_EQ(sorted(namesIn(*tree, tree->collectContents("*", true))),
              (Names{"dangling", "inner/", "inner/self/", "inner/top/", "link/", "link/file", "up/"}));
    // By open folders as by paths, to the letter.
    for (const char* const top : {"tree", "tree/up", "tree/inner/top/inner"})
        for (const char* const pattern : {"*", "?n*", "f*"})
        {
            const auto lists = [&]
            {
                const auto folder = temp.directory(top);
                Names names = namesIn(*folder, folder->collectContents(pattern, true));
                std::ranges::copy(namesIn(*folder, folder->collectDirectories(pattern, true)),
                                  std::back_inserter(names));
                std::ranges::copy(namesIn(*folder, folder->collectFiles(pattern, true)), std::back_inserter(names));
                return names;
            };
            const Names listed = lists();
            const ForeignersFirst foreigners;
            EXPECT_EQ(lists(), listed) << top << pattern;
        }
    unsigned long long bytes = 0;
    EXPECT_TRUE(tree->size(bytes));
    EXPECT_EQ(bytes, std::string("content").size());

    temp.makeFolder("copies");
    ASSERT_NE(tree->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_EQ(temp.read("copies/tree/link/file"), "content");
    EXPECT_FALSE(std::filesystem::is_symlink(temp.path("copies/tree/link")));
}

TEST(Links, AreRemovedThemselves)
{
    const TempFolder temp;
    Messages messages;
    temp.write("real/file");
    temp.makeFolder("tree/inner");
    link(temp, "../../real", "tree/inner/link");
    link(temp, "nowhere", "tree/dangling");
    link(temp, "../real/file", "tree/to_file");
    link(temp, "real", "top");
    EXPECT_TRUE(temp.directory("top")->removeContents(true));
    EXPECT_TRUE(temp.directory("top")->remove(true));
    EXPECT_FALSE(std::filesystem::is_symlink(temp.path("top")));
    // The one to a folder is no file.
    EXPECT_TRUE(temp.directory("tree/inner")->removeContents(false));
    EXPECT_TRUE(std::filesystem::is_symlink(temp.path("tree/inner/link")));
    EXPECT_TRUE(temp.directory("tree")->removeContents(false));
    EXPECT_EQ(sorted(namesIn(*temp.directory("tree"), temp.directory("tree")->findContents("*"))), (Names{"inner/"}));
    EXPECT_TRUE(temp.directory("tree")->remove(true));
    EXPECT_EQ(temp.contents(), (Names{"real/", "real/file"}));
    EXPECT_TRUE(messages.take().empty());
}

TEST(Links, AreMovedThemselves)
{
    const TempFolder temp;
    temp.write("real/file");
    temp.makeFolder("tree/inner");
    link(temp, temp.path("real").string(), "tree/inner/link");
    link(temp, "nowhere", "tree/dangling");
    EXPECT_TRUE(temp.directory("tree")->move(*temp.directory("moved"), false));
    EXPECT_TRUE(std::filesystem::is_symlink(temp.path("moved/inner/link")));
    EXPECT_TRUE(std::filesystem::is_symlink(temp.path("moved/dangling")));
    EXPECT_FALSE(temp.has("tree"));
    EXPECT_EQ(temp.read("real/file"), "content");

    link(temp, "real", "top");
    EXPECT_FALSE(temp.directory("top")->move(*temp.directory("real"), true));
    EXPECT_TRUE(temp.directory("top")->move(*temp.directory("other"), false));
    EXPECT_TRUE(std::filesystem::is_symlink(temp.path("other")));
    EXPECT_EQ(temp.read("real/file"), "content");
    link(temp, "real/file", "to_file");
    EXPECT_FALSE(temp.file("to_file")->move(*temp.file("real/file"), true));
    EXPECT_EQ(temp.read("real/file"), "content");
}

TEST(Links, AreRemovedInAnyOrder)
{
    const TempFolder temp;
    Messages messages;
    // Whatever goes first, others lead to it.
    for (const char* const name : {"a", "b", "c", "d", "e"})
    {
        temp.makeFolder("tree/" + std::string(name));
        for (const char* const to : {"a", "b", "c", "d", "e"})
            link(temp, "../" + std::string(to), "tree/" + std::string(name) + "/to_" + to);
        link(temp, std::string(name) + "/to_" + name, "tree/to_" + std::string(name));
    }
    EXPECT_TRUE(temp.directory("tree")->remove(true));
    EXPECT_EQ(temp.contents(), Names{});
    EXPECT_TRUE(messages.take().empty());
}

TEST(Links, ThatLeadNowhereAreCopiedThemselves)
{
    const TempFolder temp;
    temp.write("tree/file");
    temp.write("old", "old");
    temp.makeFolder("copies");
    link(temp, "nowhere", "tree/dangling");
    link(temp, "self", "tree/self");
    const auto tree = temp.directory("tree");
    for (const bool isThere : {false, true})
    {
        EXPECT_NE(tree->copy(*temp.directory("copies"), isThere, nullptr), nullptr);
        EXPECT_EQ(std::filesystem::read_symlink(temp.path("copies/tree/dangling")), "nowhere");
        EXPECT_EQ(std::filesystem::read_symlink(temp.path("copies/tree/self")), "self");
    }
    unsigned long long bytes = 0;
    EXPECT_TRUE(tree->size(bytes));
    EXPECT_EQ(bytes, std::string("content").size());
    const auto dangling = temp.file("tree/dangling");
    EXPECT_EQ(dangling->copy(*dangling, true, nullptr), 18);
    EXPECT_EQ(dangling->copy(*temp.file("copies/tree/dangling"), false, nullptr), 18);
    EXPECT_EQ(dangling->copy(*temp.file("old"), true, nullptr), 18);
    EXPECT_EQ(temp.read("old"), "old");
    EXPECT_TRUE(dangling->exists());
}

TEST(Links, DoNotReplaceFilesWhenTheyMove)
{
    const TempFolder temp;
    temp.makeFolder("real");
    temp.makeFolder("tree");
    link(temp, "../real", "tree/name");
    temp.write("target/name", "old");
    for (const bool isAlone : {false, true})
    {
        const std::string inside = isAlone ? "/name" : "";
        EXPECT_FALSE(temp.directory("tree" + inside)->move(*temp.directory("target" + inside), isAlone));
        EXPECT_EQ(temp.read("target/name"), "old");
        EXPECT_TRUE(std::filesystem::is_symlink(temp.path("tree/name")));
    }
}

TEST(Links, AreMovedToNoPlaceThatHoldsThemOrThatTheyLeadTo)
{
    const TempFolder temp;
    temp.write("d/b/file");
    temp.write("d/g");
    link(temp, "b", "d/link");
    link(temp, "d/b", "outside");
    const Names before = temp.contents();
    for (const bool overwrite : {false, true})
    {
        for (const char* const name : {"d/link", "outside"})
            for (const char* const target : {"d", "d/b"})
                EXPECT_FALSE(temp.directory(name)->move(*temp.directory(target), overwrite)) << name << target;
        EXPECT_EQ(temp.contents(), before);
    }
    temp.write("old/file");
    EXPECT_TRUE(temp.directory("d/link")->move(*temp.directory("old"), true));
    EXPECT_EQ(std::filesystem::read_symlink(temp.path("old")), "b");
}

TEST(Links, TakeThePlaceOfListedFoldersWithoutHarm)
{
    for (const int operation : {0, 1, 2, 3})
    {
        const TempFolder temp;
        temp.write("outside/file");
        temp.makeFolder("tree/listed");
        temp.write("other/file", "other");
        const auto listed = temp.directory("tree")->collectDirectories("*", false).at(0);
        std::filesystem::remove(temp.path("tree/listed"));
        link(temp, "../outside", "tree/listed");
        switch (operation)
        {
            case 0:
                EXPECT_TRUE(listed->removeContents(true));
                break;
            case 1:
                EXPECT_TRUE(listed->move(*temp.directory("moved"), true));
                break;
            case 2:
                EXPECT_FALSE(listed->move(*temp.directory("outside"), true));
                break;
            default:
                EXPECT_TRUE(listed->remove(true));
        }
        EXPECT_EQ(temp.read("outside/file"), "content") << operation;

        // The other way round, what is a folder by now is none.
        link(temp, "../outside", "tree/link");
        const auto link = temp.directory("tree")->collectDirectories("link", false).at(0);
        std::filesystem::remove(temp.path("tree/link"));
        temp.write("tree/link/file");
        EXPECT_TRUE(link->removeContents(true));
        EXPECT_FALSE(temp.has("tree/link/file"));
    }
}

TEST(Links, IntoTheOtherSideOfACopyEndIt)
{
    const TempFolder temp;
    temp.makeFolder("source/x");
    temp.makeFolder("target");
    link(temp, "../../target/x", "source/x/link");
    EXPECT_FALSE(temp.directory("source")->copyContents(*temp.directory("target"), true, false, nullptr));
    EXPECT_EQ(temp.directory("target")->collectDirectories("*", true).size(), 2U);
    {
        const ForeignersFirst foreigners;
        EXPECT_FALSE(temp.directory("source")->copyContents(*temp.directory("target"), true, false, nullptr));
        EXPECT_EQ(temp.directory("target")->collectDirectories("*", true).size(), 2U);
    }
    EXPECT_EQ(temp.directory("source")->copy(*temp.directory("target/x"), true, nullptr), nullptr);

    // Nothing is made in the source before it is refused.
    temp.write("whole/a/file");
    link(temp, "whole/a", "way");
    const Names before = temp.contents();
    EXPECT_FALSE(temp.directory("whole")->copyContents(*temp.directory("way"), true, true, nullptr));
    EXPECT_EQ(temp.contents(), before);
    // Nor is removed what links of the source lead to, when what was there before is.
    temp.write("from/name/clash");
    link(temp, "../../to/name/kept", "from/name/link");
    temp.write("to/name/clash");
    temp.write("to/name/kept");
    EXPECT_EQ(temp.directory("from/name")->copy(*temp.directory("to"), false, nullptr), nullptr);
    EXPECT_EQ(temp.read("to/name/kept"), "content");
}

// What lies where by links is told by what it is, not by paths; by open folders as by virtual operations.
TEST(Links, LeadTheSameWayByVirtualOperations)
{
    using Operation = bool (*)(const Directory& source, const Directory& target);
    const Operation copyContents = [](const Directory& source, const Directory& target)
    { return source.copyContents(target, true, true, nullptr); };
    const Operation copy = [](const Directory& source, const Directory& target)
    { return source.copy(target, false, nullptr) != nullptr; };
    const Operation move = [](const Directory& source, const Directory& target) { return source.move(target, true); };
    struct Case
    {
        Names files;
        std::vector<std::pair<std::string, std::string>> links;
        Operation operation;
        std::string source;
        std::string target;
        bool result;
    };
    const std::vector<Case> cases{
        {{"from/f", "to/in/g"}, {{"../to/in", "from/emptied"}}, move, "from", "to", true},
        {{"o/d/in/f"}, {{"..", "o/d/in/link"}}, copyContents, "o/d/in/link", "o", true},
        {{"o/d/d/f"}, {{".", "o/self"}}, copyContents, "o/d", "o/self", true},
        {{"o/x/f", "t/g"}, {{"..", "o/x/up"}, {"o/x", "way"}}, copyContents, "way", "t", true},
        {{"from/name/clash", "to/name/clash", "to/name/kept/f"},
         {{"../../to/name/kept", "from/name/link"}},
         copy,
         "from/name",
         "to",
         false},
        {{"to/name/in/clash", "to/name/clash"}, {{"to/name/in", "name"}}, copy, "name", "to", false},
    };
    for (const Case& each : cases)
    {
        const auto run = [&]
        {
            const TempFolder temp;
            for (const std::string& file : each.files) temp.write(file, file);
            for (const auto& [target, name] : each.links) link(temp, target, name);
            EXPECT_EQ(each.operation(*temp.directory(each.source), *temp.directory(each.target)), each.result)
                << each.source;
            return worldIn(temp);
        };
        const World world = run();
        EXPECT_TRUE(each.result || contentsOf(world).size() == each.files.size()) << each.source;
        const ForeignersFirst foreigners;
        EXPECT_EQ(run(), world) << each.source;
    }
}

TEST(Links, DoNotMakeAFileItsOwnCopy)
{
    const TempFolder temp;
    temp.write("folder/file");
    std::filesystem::create_hard_link(temp.path("folder/file"), temp.path("hard"));
    link(temp, "folder/file", "soft");
    link(temp, "folder", "way");
    for (const char* const name : {"folder/file", "hard", "soft", "way/file", "folder/../way/./file"})
    {
        for (const bool overwrite : {false, true})
        {
            EXPECT_EQ(temp.file("folder/file")->copy(*temp.file(name), overwrite, nullptr), 18) << name;
            EXPECT_EQ(temp.file(name)->copy(*temp.file("folder/file"), overwrite, nullptr), 18) << name;
        }
    }
    EXPECT_EQ(temp.read("folder/file"), "content");
    EXPECT_TRUE(temp.file("hard")->move(*temp.file("folder/file"), true));
    EXPECT_EQ(temp.read("folder/file"), "content");
    EXPECT_FALSE(temp.has("hard"));
}

TEST(Links, DoNotHideThatATargetLiesInTheSource)
{
    const TempFolder temp;
    temp.write("a/b/file");
    temp.write("a/b/a/kept");
    link(temp, "a/b", "link");
    const Names before = temp.contents();
    const auto path = temp.directory("a");
    EXPECT_FALSE(path->move(*temp.directory("link"), true));
    EXPECT_FALSE(path->move(*temp.directory("link/new"), false));
    EXPECT_EQ(path->copy(*temp.directory("link"), true, nullptr), nullptr);
    EXPECT_EQ(temp.read("a/b/file"), "content");
    EXPECT_EQ(temp.read("a/b/a/kept"), "content");
    EXPECT_FALSE(temp.directory("link")->move(*temp.directory("a/b"), true));
    EXPECT_EQ(temp.read("a/b/file"), "content");
}

TEST(Names, OfAnyBytesAreListedCopiedMovedAndRemoved)
{
    const TempFolder temp;
    Messages messages;
    const Names names = {"a:b", "what?", "star*", "back\\slash", "trailing ", "dots...", "tab\tbed", "\xFF\xFEraw"};
    for (const std::string& name : names) temp.write("tree/" + name + "/" + name, name);
    const auto tree = temp.directory("tree");
    EXPECT_EQ(tree->collectFiles("*", true).size(), names.size());
    for (const auto& file : tree->collectFiles("*", true))
    {
        EXPECT_TRUE(file->exists());
        EXPECT_EQ(*File::fromString(file->getFullName()), *file);
        EXPECT_TRUE(*file->openRead());
    }
    ASSERT_NE(tree->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("copies/tree"), temp.contents("tree"));
    const Names before = temp.contents("tree");
    EXPECT_TRUE(tree->move(*temp.directory("moved"), false));
    EXPECT_EQ(temp.contents("moved"), before);
    for (const std::string& name : names) EXPECT_EQ(temp.read("moved/" + name + "/" + name), name);
    EXPECT_TRUE(temp.directory("moved")->remove(true));
    EXPECT_TRUE(temp.directory("copies")->remove(true));
    EXPECT_EQ(temp.contents(), Names{});
    EXPECT_TRUE(messages.take().empty());
}

TEST(Names, ThatDifferByCaseAreOfDifferentFolders)
{
    const TempFolder temp;
    temp.write("tree/file");
    temp.makeFolder("TREE");
    EXPECT_TRUE(temp.directory("tree")->copyContents(*temp.directory("TREE"), true, false, nullptr));
    EXPECT_NE(temp.directory("tree")->copy(*temp.directory("TREE"), false, nullptr), nullptr);
    EXPECT_TRUE(temp.directory("tree")->move(*temp.directory("Tree"), false));
    EXPECT_EQ(temp.contents(), (Names{"TREE/", "TREE/file", "TREE/tree/", "TREE/tree/file", "Tree/", "Tree/file"}));
}

TEST(Paths, LongerThanTheSystemTakesLeadToContent)
{
    const TempFolder temp;
    auto folder = std::shared_ptr<const Directory>(temp.directory("top"));
    for (int i = 0; i < 30; ++i) folder = folder->appendLevel(String(OXA_TEXT('d'), 200));
    ASSERT_TRUE(folder->create());
    const auto file = File::fromString(*folder, "file");
    *file->openWrite() << "content";
    ASSERT_EQ(file->copy(*temp.file("copy"), false, nullptr), 0);
    EXPECT_EQ(temp.read("copy"), "content");
    std::string content;
    EXPECT_TRUE(*file->openRead() >> content);
    EXPECT_EQ(content, "content");
    EXPECT_FALSE(*File::fromString(*folder, "missing")->openRead());
    EXPECT_FALSE(*File::fromString(*folder->getParent(), folder->getName())->openRead());
    EXPECT_TRUE(temp.directory("top")->remove(true));
}

}  // namespace

}  // namespace Oxa_1_1::test
