// What folders hold.

#include <gtest/gtest.h>

#include "base/filesystem/iterators.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_iterators.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(Enumeration, FindsByPatternAndKind)
{
    const TempFolder temp;
    for (const char* const name : {"readme.txt", "A.Txt", "Makefile", "abc", "a.b", ".hidden"}) temp.write(name);
    temp.makeFolder("folder.txt");
    const auto folder = temp.directory();
    const auto files = [&](const char* pattern) { return sorted(namesIn(*folder, folder->findFiles(pattern))); };
    EXPECT_EQ(files("*.TXT"), (Names{"A.Txt", "readme.txt"}));
    EXPECT_EQ(files("*.*"), (Names{".hidden", "A.Txt", "a.b", "readme.txt"}));
    EXPECT_EQ(files("a?c"), (Names{"abc"}));
    EXPECT_EQ(files("a??c"), Names{});
    EXPECT_EQ(files("**"), (Names{".hidden", "A.Txt", "Makefile", "a.b", "abc", "readme.txt"}));
    EXPECT_EQ(files("?a*E"), (Names{"Makefile"}));
    EXPECT_EQ(files("?e?*t?"), Names{});
    EXPECT_EQ(files("*a*e*"), (Names{"Makefile", "readme.txt"}));
    EXPECT_EQ(files("MAKEFILE"), (Names{"Makefile"}));
    EXPECT_EQ(sorted(namesIn(*folder, folder->findDirectories("*.txt"))), (Names{"folder.txt/"}));
    EXPECT_EQ(sorted(namesIn(*folder, folder->findContents("*.txt"))), (Names{"A.Txt", "folder.txt/", "readme.txt"}));
    const auto file = folder->findFiles("readme*")->getNext();
    EXPECT_EQ(file->getBaseName(), "readme");
    EXPECT_EQ(file->getExtension(), "txt");
    EXPECT_EQ(file->getFullName(), temp.file("readme.txt")->getFullName());
}

TEST(Enumeration, RefusesSearchStrings)
{
    const TempFolder temp;
    temp.makeFolder("below");
    const auto folder = temp.directory();
    Messages messages;
    for (const char* const pattern : {"", ".", "..", "a:b", "dir/*", "a\\b", "x.", "x ", "a|b", "\"", "<", "a\tb"})
    {
        const String message = OXA_TEXT("The file or directory search string '") + String(pattern) +
                               OXA_TEXT("' contains invalid characters.");
        EXPECT_EQ(folder->findContents(pattern), nullptr);
        EXPECT_EQ(folder->findFiles(pattern), nullptr);
        EXPECT_EQ(folder->findDirectories(pattern), nullptr);
        EXPECT_EQ(messages.take(), Texts(3, message));
        for (const auto& file : folder->findFiles(pattern)) FAIL() << *file;
        messages.take();
        EXPECT_TRUE(folder->collectFiles(pattern, false).empty());
        EXPECT_EQ(messages.take(), Texts(1, message));
        EXPECT_TRUE(folder->collectDirectories(pattern, true).empty());
        EXPECT_EQ(messages.take(), Texts(2, message));
        EXPECT_TRUE(folder->collectContents(pattern, true).empty());
        EXPECT_EQ(messages.take(), Texts(4, message));
    }
    EXPECT_EQ(folder->findFiles(String()), nullptr);
    messages.take();
    EXPECT_NE(folder->findFiles("*"), nullptr);
    EXPECT_NE(folder->findFiles("?x*"), nullptr);
    EXPECT_TRUE(messages.take().empty());
}

TEST(Enumeration, ReadsASnapshotOnce)
{
    const TempFolder temp;
    temp.write("a");
    temp.write("b");
    temp.makeFolder("c");
    OxaWindowsFileSystemIterator iterator(*temp.directory(), "*");
    temp.write("d");
    std::filesystem::remove(temp.path("a"));
    EXPECT_FALSE(iterator.atEnd());
    iterator.next();
    EXPECT_NE(iterator.getNext(), nullptr);
    EXPECT_FALSE(iterator.atEnd());
    EXPECT_NE(iterator.getNext(), nullptr);
    EXPECT_TRUE(iterator.atEnd());
    iterator.next();
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getNext(), nullptr);

    OxaWindowsFileSystemFileIterator files(*temp.directory(), "*");
    OxaWindowsFileSystemFileIterator moved(std::move(files));
    EXPECT_EQ(files.getNext(), nullptr);
    EXPECT_NE(moved.getNext(), nullptr);
    files = std::move(moved);
    EXPECT_NE(files.getNext(), nullptr);
    EXPECT_EQ(files.getNext(), nullptr);
}

TEST(Enumeration, FindsNothingWhereThereIsNothing)
{
    const TempFolder temp;
    temp.write("file");
    Messages messages;
    for (const auto& folder : {temp.directory("missing"), Directory::fromPath(temp.path("file"))})
    {
        const auto files = folder->findFiles("*");
        ASSERT_NE(files, nullptr);
        EXPECT_EQ(files->getNext(), nullptr);
        EXPECT_TRUE(folder->collectContents("*", true).empty());
        EXPECT_FALSE(folder->isEmpty());
    }
    EXPECT_TRUE(messages.take().empty());

    temp.makeFolder("empty");
    EXPECT_TRUE(temp.directory("empty")->isEmpty());
    EXPECT_TRUE(OxaWindowsFileSystemIterator(*temp.directory("empty"), "*").atEnd());
    temp.write("empty/.hidden");
    EXPECT_FALSE(temp.directory("empty")->isEmpty());
}

TEST(Enumeration, CollectsFoldersThenFilesThenWhatIsBelow)
{
    const TempFolder temp;
    temp.write("A/a1");
    temp.write("A/deep/er/x.log");
    temp.makeFolder("B");
    temp.write("f");
    const auto folder = temp.directory();
    EXPECT_EQ(sorted(namesIn(*folder, folder->collectContents("*", false))), (Names{"A/", "B/", "f"}));

    const Names all = namesIn(*folder, folder->collectContents("*", true));
    ASSERT_EQ(all.size(), 7U);
    EXPECT_EQ(sorted({all[0], all[1]}), (Names{"A/", "B/"}));
    EXPECT_EQ(Names(all.begin() + 2, all.end()), (Names{"f", "A/deep/", "A/a1", "A/deep/er/", "A/deep/er/x.log"}));
    EXPECT_EQ(namesIn(*folder, folder->collectFiles("*.log", true)), (Names{"A/deep/er/x.log"}));
    EXPECT_EQ(namesIn(*folder, folder->collectDirectories("?*r", true)), (Names{"A/deep/er/"}));
    EXPECT_EQ(namesIn(*folder, folder->collectDirectories("d*", true)), (Names{"A/deep/"}));
    EXPECT_TRUE(folder->collectFiles("*.log", false).empty());
    unsigned long long bytes = 1;
    EXPECT_TRUE(folder->size(bytes));
    EXPECT_EQ(bytes, 3 * std::string("content").size());
    EXPECT_TRUE(temp.directory("B")->size(bytes));
    EXPECT_EQ(bytes, 0U);
}

TEST(Enumeration, TakesRelativeFoldersFromTheCurrentOne)
{
    const TempFolder temp;
    temp.write("below/file");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(temp.path());
    const auto found = Directory::fromString("below")->collectFiles("*", false);
    const auto item = FileSystemItem::fromExistingString("below");
    std::filesystem::current_path(before);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0]->isAbsolute());
    EXPECT_EQ(found[0]->getFullName(), temp.file("below/file")->getFullName());
    EXPECT_NE(std::dynamic_pointer_cast<Directory>(item), nullptr);
}

TEST(Enumeration, AsksOtherCreatorsWhenTheyStandFirst)
{
    const TempFolder temp;
    temp.write("file");
    temp.makeFolder("folder");
    int calls = 0;
    const auto counting = std::make_shared<const Directory::ImplCreator>(
        [&](const String& path)
        {
            ++calls;
            return OxaWindowsFileSystemDirectory::fromString(path);
        });
    const auto folder = temp.directory();
    Directory::creators.push_front(counting);
    const Names found = sorted(namesIn(*folder, folder->findContents("*")));
    Directory::creators.pop_front();
    EXPECT_EQ(found, (Names{"file", "folder/"}));
    EXPECT_GT(calls, 2);
    EXPECT_EQ(sorted(namesIn(*folder, folder->findContents("*"))), found);
}

TEST(FileSystemItem, IsWhatStandsAtThePath)
{
    const TempFolder temp;
    temp.write("file");
    temp.makeFolder("folder");
    const auto at = [&](const char* name)
    { return FileSystemItem::fromExistingString(temp.file(name)->getFullName()); };
    EXPECT_NE(std::dynamic_pointer_cast<File>(at("file")), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<Directory>(at("folder")), nullptr);
    EXPECT_EQ(at("missing"), nullptr);
    EXPECT_EQ(FileSystemItem::fromExistingString(String()), nullptr);
    EXPECT_NE(FileSystemItem::fromExistingString(*temp.directory(), "folder"), nullptr);
    EXPECT_EQ(FileSystemItem::fromExistingString(*temp.directory(), ""), nullptr);
    EXPECT_EQ(FileSystemItem::fromExistingString(*temp.directory(), "a*"), nullptr);
    EXPECT_FALSE(File::fromPath(temp.path("folder"))->exists());
    EXPECT_FALSE(Directory::fromPath(temp.path("file"))->exists());
}

}  // namespace

}  // namespace Oxa_1_1::test
