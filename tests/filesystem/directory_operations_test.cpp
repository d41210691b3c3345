// Folders on disk.

#include <gtest/gtest.h>

#include <cwchar>

#include "base/diagnostics/windows_error.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

constexpr unsigned long NOT_EMPTY = 145;

TEST(DirectoryOperations, CreatesWhatIsMissing)
{
    const TempFolder temp;
    Messages messages;
    EXPECT_TRUE(temp.directory("a/b/c")->create());
    EXPECT_TRUE(temp.directory("a/b/c")->create());
    EXPECT_TRUE(temp.directory("a/d")->touch());
    EXPECT_TRUE(temp.directory("a/d")->touch());
    EXPECT_EQ(temp.contents(), (Names{"a/", "a/b/", "a/b/c/", "a/d/"}));
    EXPECT_TRUE(temp.directory("a")->isDirectory());
    EXPECT_TRUE(messages.take().empty());

    EXPECT_FALSE(Directory::fromString("x\\y")->create());
    EXPECT_EQ(messages.take(), Texts{"The drive or network share '' does not exist or is inaccessible."});
    EXPECT_FALSE(Directory::fromString("C:x")->create());
    EXPECT_EQ(messages.take(), Texts{"The drive or network share 'C:' does not exist or is inaccessible."});
    temp.write("file");
    EXPECT_FALSE(temp.directory("file/x")->create());
    const Texts texts = messages.take();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_TRUE(texts[0].startsWith("Failed to create the directory '" + temp.directory("file/x")->getFullName() +
                                    "'.\r\nWindows error message: "));
}

TEST(DirectoryOperations, Removes)
{
    const TempFolder temp;
    Messages messages;
    temp.write("a/b/file");
    temp.write("a/c/d/file");
    temp.makeFolder("empty");
    EXPECT_TRUE(temp.directory("missing")->remove());
    EXPECT_TRUE(temp.directory("missing")->remove(true));
    EXPECT_TRUE(temp.directory("empty")->remove());
    EXPECT_TRUE(messages.take().empty());
    EXPECT_FALSE(temp.directory("a")->remove(false));
    EXPECT_EQ(messages.take(), Texts{"Failed to remove directory '" + temp.directory("a")->getFullName() +
                                     "'.\r\nWindows error message: " + getWindowsError(NOT_EMPTY)});
    EXPECT_TRUE(temp.directory("a")->remove(true));
    EXPECT_TRUE(messages.take().empty());
    EXPECT_EQ(temp.contents(), Names{});

    // Each folder above what is stuck is tried once.
    const std::string path = "a/b/c/d/e/f/g/h/i/j/k/l/m/n/o/p/q/r/s/t/u/v/w/x/y/z/stuck";
    temp.write(path);
    temp.setReadOnly(path, true);
    EXPECT_FALSE(temp.directory("a")->remove(true));
    EXPECT_EQ(messages.take().size(), 1U + 26U);
    EXPECT_TRUE(temp.has(path));
}

TEST(DirectoryOperations, RemovesItsContents)
{
    const TempFolder temp;
    temp.write("a/file");
    temp.write("a/b/file");
    EXPECT_TRUE(temp.directory("a")->removeContents(false));
    EXPECT_EQ(temp.contents(), (Names{"a/", "a/b/", "a/b/file"}));
    EXPECT_TRUE(temp.directory("a")->removeContents(true));
    EXPECT_EQ(temp.contents(), (Names{"a/"}));
    EXPECT_TRUE(temp.directory("missing")->removeContents(true));
}

TEST(DirectoryOperations, CopiesItsContents)
{
    const TempFolder temp;
    temp.write("a/file", "new");
    temp.write("a/b/inner", "inner");
    temp.makeFolder("flat");
    temp.makeFolder("deep");
    const auto source = temp.directory("a");
    EXPECT_FALSE(source->copyContents(*temp.directory("missing"), true, true, nullptr));
    EXPECT_FALSE(temp.has("missing"));
    EXPECT_FALSE(temp.directory("missing")->copyContents(*source, true, true, nullptr));
    EXPECT_TRUE(source->copyContents(*temp.directory("flat"), false, false, nullptr));
    EXPECT_EQ(temp.contents("flat"), (Names{"b/", "file"}));
    EXPECT_TRUE(source->copyContents(*temp.directory("deep"), true, false, nullptr));
    EXPECT_EQ(temp.contents("deep"), (Names{"b/", "b/inner", "file"}));
    temp.write("deep/b/inner", "old");
    EXPECT_FALSE(source->copyContents(*temp.directory("deep"), true, false, nullptr));
    EXPECT_EQ(temp.read("deep/b/inner"), "old");
    EXPECT_TRUE(source->copyContents(*temp.directory("deep"), true, true, nullptr));
    EXPECT_EQ(temp.read("deep/b/inner"), "inner");
}

TEST(DirectoryOperations, LosesNoFolderToAFileInItsPlace)
{
    const TempFolder temp;
    temp.makeFolder("top/empty");
    temp.write("file/empty", "kept");
    const auto empty = temp.directory("top/empty");
    for (const bool overwrite : {false, true})
    {
        EXPECT_EQ(empty->copy(*temp.directory("file"), overwrite, nullptr), nullptr);
        EXPECT_FALSE(empty->move(*temp.directory("file/empty"), overwrite));
    }
    EXPECT_FALSE(temp.directory("top")->move(*temp.directory("file"), false));
    EXPECT_EQ(temp.contents(), (Names{"file/", "file/empty", "top/", "top/empty/"}));
    EXPECT_EQ(temp.read("file/empty"), "kept");
}

TEST(DirectoryOperations, CopiesNoFolderOverAFile)
{
    const TempFolder temp;
    temp.makeFolder("a/sub");
    temp.write("a/z");
    for (const bool isFull : {false, true})
    {
        if (isFull) temp.write("a/sub/file");
        for (const bool overwrite : {false, true})
        {
            temp.write("b/sub", "kept");
            EXPECT_FALSE(temp.directory("a")->copyContents(*temp.directory("b"), true, overwrite, nullptr));
            EXPECT_EQ(temp.contents("b"), Names{"sub"});
            EXPECT_TRUE(temp.directory("a")->copyContents(*temp.directory("b"), false, overwrite, nullptr));
            EXPECT_EQ(temp.contents("b"), (Names{"sub", "z"}));
            EXPECT_EQ(temp.read("b/sub"), "kept");
            std::filesystem::remove(temp.path("b/z"));
        }
    }
}

TEST(DirectoryOperations, CopiesItself)
{
    const TempFolder temp;
    temp.write("a/b/file");
    temp.makeFolder("target");
    const auto copy = temp.directory("a")->copy(*temp.directory("target"), false, nullptr);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->getFullName(), temp.directory("target/a")->getFullName());
    EXPECT_EQ(temp.contents("target"), (Names{"a/", "a/b/", "a/b/file"}));
    EXPECT_EQ(temp.directory("a")->copy(temp.directory("other")->getFullName(), false, nullptr), 0);
    EXPECT_EQ(temp.contents("other"), (Names{"a/", "a/b/", "a/b/file"}));
    EXPECT_EQ(temp.directory("a")->copy(String("x*"), false, nullptr), 1);
    // A half-made copy is removed.
    EXPECT_EQ(temp.directory("a")->copy(*temp.directory("target"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("target"), Names{});
    EXPECT_EQ(temp.directory("missing")->copy(*temp.directory("target"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("target"), Names{});
    // A folder without a name of its own has no copy of its own to remove.
    temp.write("target/b");
    temp.write("target/other");
    EXPECT_EQ(temp.directory("a")->appendLevel(".")->copy(*temp.directory("target"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("target"), (Names{"b", "other"}));
}

TEST(DirectoryOperations, RemoveNoSourceWithAFailedCopy)
{
    const TempFolder temp;
    temp.write("c/c/x", "inner");
    temp.write("c/x", "outer");
    EXPECT_EQ(temp.directory("c/c")->copy(*temp.directory(), false, nullptr), nullptr);
    EXPECT_EQ(temp.read("c/c/x"), "inner");
    EXPECT_EQ(temp.read("c/x"), "outer");
}

TEST(DirectoryOperations, Moves)
{
    const TempFolder temp;
    temp.write("a/file");
    temp.write("a/b/c/file");
    temp.makeFolder("a/empty");
    EXPECT_TRUE(temp.directory("a")->move(temp.directory("new")->getFullName(), false));
    EXPECT_FALSE(temp.has("a"));
    const Names moved = {"b/", "b/c/", "b/c/file", "empty/", "file"};
    EXPECT_EQ(temp.contents("new"), moved);

    temp.write("full/former");
    temp.write("full/b/former");
    EXPECT_TRUE(temp.directory("new")->move(*temp.directory("full"), true));
    EXPECT_EQ(temp.contents(), (Names{"full/", "full/b/", "full/b/c/", "full/b/c/file", "full/empty/", "full/file"}));

    temp.write("merged/b/former");
    EXPECT_TRUE(temp.directory("full")->move(*temp.directory("merged"), false));
    EXPECT_EQ(temp.contents("merged"), (Names{"b/", "b/c/", "b/c/file", "b/former", "empty/", "file"}));

    temp.write("clash/file", "former");
    EXPECT_FALSE(temp.directory("merged")->move(*temp.directory("clash"), false));
    EXPECT_EQ(temp.read("clash/file"), "former");
    EXPECT_EQ(temp.read("merged/file"), "content");
    EXPECT_FALSE(temp.directory("merged")->move(String("x*"), false));
    EXPECT_FALSE(temp.directory("missing")->move(*temp.directory("clash"), true));
    EXPECT_EQ(temp.read("clash/file"), "former");
}

TEST(DirectoryOperations, LosesNothingOnTheWayIntoItself)
{
    const TempFolder temp;
    temp.write("a/file");
    temp.write("a/b/file");
    temp.write("a/b/a/file");
    const Names before = temp.contents();
    const auto path = temp.directory("a");
    for (const bool overwrite : {false, true})
    {
        for (const char* const target : {"a", "a/b", "a/new/er", "a/b/a", "x/../a/b"})
        {
            EXPECT_FALSE(path->move(*temp.directory(target), overwrite)) << target;
            EXPECT_EQ(path->copy(*temp.directory(target), overwrite, nullptr), nullptr) << target;
            EXPECT_EQ(temp.contents(), before) << target;
        }
        EXPECT_FALSE(path->copyContents(*path, false, overwrite, nullptr));
        EXPECT_FALSE(path->copyContents(*temp.directory("a/b"), true, overwrite, nullptr));
        EXPECT_EQ(path->copy(*temp.directory(), overwrite, nullptr), nullptr);
        EXPECT_EQ(temp.contents(), before);
    }
    // The target is emptied, and with it what is to be moved.
    EXPECT_FALSE(temp.directory("a/b")->move(*path, true));
    EXPECT_EQ(temp.contents(), before);
    // Below b is an a whose place is where it stands.
    temp.write("a/b/b/file");
    EXPECT_FALSE(temp.directory("a/b")->move(*path, false));
    EXPECT_EQ(temp.read("a/b/b/file"), "content");
}

TEST(DirectoryOperations, ReachesBeyondTheLengthOfShortPaths)
{
    const TempFolder temp;
    auto path = std::shared_ptr<const Directory>(temp.directory("top"));
    for (int i = 0; i < 12; ++i) path = path->appendLevel(String(OXA_TEXT('d'), 40));
    EXPECT_TRUE(path->create());
    const auto file = File::fromString(*path, "file.txt");
    EXPECT_TRUE(file->touch());
    EXPECT_TRUE(file->exists());
    const auto top = temp.directory("top");
    EXPECT_EQ(top->collectDirectories("*", true).size(), 12U);
    ASSERT_EQ(top->collectFiles("*", true).size(), 1U);
    EXPECT_EQ(*top->collectFiles("*", true)[0], *file);
    EXPECT_NE(top->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_TRUE(temp.directory("copies")->move(*temp.directory("moved"), false));
    EXPECT_EQ(temp.directory("moved")->collectFiles("*.txt", true).size(), 1U);
    EXPECT_TRUE(top->remove(true));
    EXPECT_TRUE(temp.directory("moved")->remove(true));
    EXPECT_EQ(temp.contents(), Names{});
}

TEST(DirectoryOperations, AnswersAsFilesDo)
{
    const TempFolder temp;
    temp.write("file", "12345");
    const auto folder = temp.directory();
    EXPECT_TRUE(folder->access(0));
    EXPECT_TRUE(folder->access(4));
    EXPECT_FALSE(temp.directory("missing")->access(0));
    std::uint64_t time = 0;
    EXPECT_TRUE(folder->getCreationTime(reinterpret_cast<FILETIME*>(&time)));
    EXPECT_GT(time, 0U);
    EXPECT_TRUE(folder->getLastWriteTime(reinterpret_cast<FILETIME*>(&time)));
    EXPECT_FALSE(temp.directory("missing")->getLastWriteTime(reinterpret_cast<FILETIME*>(&time)));
    struct _stat64i32 status
    {
    };
    EXPECT_TRUE(folder->stat(status));
    EXPECT_TRUE(temp.file("file")->stat(status));
    EXPECT_EQ(status.st_size, 5);
    EXPECT_FALSE(temp.file("missing")->stat(status));
    EXPECT_FALSE(temp.directory("missing")->openInExplorer());
    EXPECT_FALSE(temp.file("missing")->showInExplorer());
    EXPECT_FALSE(Directory::fromString("x")->openInExplorer());
}

}  // namespace

}  // namespace Oxa_1_1::test
