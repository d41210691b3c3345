// Files and folders in memory beside those on disk.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "extras/memory_file_system/memory_file_system.h"
#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

std::string contentOf(const File& file)
{
    const auto stream = file.openRead();
    if (!*stream) return "missing";
    return {std::istreambuf_iterator<char>(*stream), {}};
}

/// How many operations said why they failed.
std::size_t failuresIn(Messages& messages)
{
    const Texts texts = messages.take();
    return static_cast<std::size_t>(
        std::ranges::count_if(texts, [](const String& text) { return text.startsWith("Failed"); }));
}

class TwoImplementations : public testing::Test
{
   protected:
    static std::shared_ptr<File> memoryFile(const String& path) { return File::fromString("mem:/" + path); }
    static std::shared_ptr<Directory> memoryFolder(const String& path) { return Directory::fromString("mem:/" + path); }

    MemoryFileSystem m_memory;
    TempFolder m_disk;
};

TEST_F(TwoImplementations, HaveSpellingsOfTheirOwn)
{
    Messages messages;
    const auto file = memoryFile("a/../b/c.d");
    ASSERT_NE(file, nullptr);
    EXPECT_NE(FileSystemItem::fromExistingString("mem:/"), nullptr);
    for (const String& path : {m_disk.directory()->getFullName(), m_disk.directory()->getFullNameUnix()})
    {
        EXPECT_NE(FileSystemItem::fromExistingString(path), nullptr);
    }
    EXPECT_EQ(messages.take(), Texts{});
    // Nobody takes it, as a file or as a folder.
    EXPECT_EQ(FileSystemItem::fromExistingString("a|b"), nullptr);
    EXPECT_EQ(messages.take().size(), 2U);
    EXPECT_EQ(file->getFullName(), "mem:/b/c.d");
    EXPECT_EQ(file->getDirectory()->getFullName(), "mem:/b/");
    EXPECT_EQ(File::fromString("mem:\\b\\C.D")->equals(*file), FileSystemItem::Equal);
    EXPECT_EQ(file->equals(*m_disk.file("c.d")), FileSystemItem::Undetermined);
    EXPECT_EQ(m_disk.file("c.d")->equals(*file), FileSystemItem::Undetermined);
    EXPECT_EQ(m_disk.directory()->equals(*memoryFolder("")), FileSystemItem::Undetermined);
    EXPECT_EQ(m_disk.directory()->appendPath(*Directory::fromString("mem:x")), nullptr);
    EXPECT_EQ(m_disk.directory()->combine(*memoryFolder("x"))->getFullName(), m_disk.directory()->getFullName());
    EXPECT_EQ(m_disk.directory()->makeRelative(*memoryFolder("x")), nullptr);
    EXPECT_EQ(memoryFile("x/.."), nullptr);
    EXPECT_EQ(memoryFolder(".."), nullptr);
    const auto above = File::fromString("mem:../x/f");
    EXPECT_EQ(above->makeAbsolute(), nullptr);
    EXPECT_EQ(above->makeRelative(*memoryFolder("x")), nullptr);
    EXPECT_FALSE(above->createParentDirectories());
    EXPECT_EQ(Directory::fromString("mem:a/../b")->makeRelative(*memoryFolder("a"))->getFullName(), "mem:../b/");
}

TEST_F(TwoImplementations, OfferTheSameOperations)
{
    Messages messages;
    const auto file = memoryFile("a/b/c.txt");
    EXPECT_FALSE(file->touch());
    EXPECT_TRUE(file->createParentDirectories());
    EXPECT_TRUE(file->touch());
    *file->openWrite() << "one";
    *file->openWrite(std::ios_base::app) << "two";
    EXPECT_EQ(contentOf(*file), "onetwo");
    unsigned long long bytes = 0;
    EXPECT_TRUE(memoryFolder("a")->size(bytes));
    EXPECT_EQ(bytes, 6U);
    EXPECT_TRUE(file->copy(*memoryFile("a/d.txt"), false, nullptr) == 0);
    EXPECT_EQ(file->copy(*memoryFile("a/d.txt"), false, nullptr), 18);
    EXPECT_EQ(file->copy(*file, true, nullptr), 18);
    const auto folder = memoryFolder("a");
    EXPECT_EQ(namesIn(*folder, folder->collectContents("*", true)), (Names{"b/", "d.txt", "b/c.txt"}));
    EXPECT_EQ(namesIn(*folder, folder->findFiles("?.TXT")), (Names{"d.txt"}));
    EXPECT_TRUE(folder->move(*memoryFolder("new"), false));
    EXPECT_FALSE(folder->exists());
    EXPECT_EQ(contentOf(*memoryFile("new/b/c.txt")), "onetwo");
    EXPECT_NE(memoryFolder("new")->copy(*memoryFolder("copies"), false, nullptr), nullptr);
    EXPECT_EQ(memoryFolder("new")->copy(*memoryFolder("new/b"), false, nullptr), nullptr);
    EXPECT_FALSE(memoryFolder("new")->move(*memoryFolder("new/b"), true));
    EXPECT_TRUE(memoryFolder("copies/new")->remove(true));
    EXPECT_TRUE(memoryFolder("copies")->isEmpty());

    messages.take();
    memoryFile("new/d.txt")->setAsReadOnly();
    EXPECT_FALSE(memoryFolder("new")->remove(true));
    EXPECT_EQ(failuresIn(messages), 2U);
    EXPECT_EQ(contentOf(*memoryFile("new/d.txt")), "onetwo");
}

TEST_F(TwoImplementations, CopyToEachOtherInEitherWay)
{
    for (const bool handsOver : {false, true})
    {
        m_memory.volume().setHandsOver(handsOver);
        m_disk.write("file", "from disk");
        EXPECT_EQ(m_disk.file("file")->copy(*memoryFile("file"), true, nullptr), 0);
        EXPECT_EQ(contentOf(*memoryFile("file")), "from disk");
        EXPECT_EQ(memoryFile("file")->copy(*m_disk.file("back"), true, nullptr), 0);
        EXPECT_EQ(m_disk.read("back"), "from disk");
        *memoryFile("file")->openWrite() << "from memory";
        const auto copy = m_disk.file("back")->copyFrom(*memoryFile("file"), true, nullptr);
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->getFullName(), m_disk.file("back")->getFullName());
        EXPECT_EQ(m_disk.read("back"), "from memory");
        EXPECT_NE(memoryFile("other")->copyFrom(*m_disk.file("back"), true, nullptr), nullptr);
        EXPECT_EQ(contentOf(*memoryFile("other")), "from memory");
        EXPECT_EQ(memoryFile("missing")->copy(*m_disk.file("x"), true, nullptr), 18);
        EXPECT_EQ(m_disk.file("missing")->copy(*memoryFile("x"), true, nullptr), 18);
        EXPECT_FALSE(memoryFile("x")->exists());
        EXPECT_FALSE(m_disk.has("x"));
        // Through streams, what is there does not count.
        EXPECT_EQ(m_disk.file("file")->copy(*memoryFile("other"), false, nullptr), 0);
        EXPECT_EQ(contentOf(*memoryFile("other")), "from disk");
    }
}

TEST_F(TwoImplementations, CopyWholeFoldersButRenameNothingAcross)
{
    Messages messages;
    m_disk.write("tree/file", "1");
    m_disk.write("tree/inner/file", "22");
    ASSERT_NE(m_disk.directory("tree")->copy(*memoryFolder(""), false, nullptr), nullptr);
    EXPECT_EQ(contentOf(*memoryFile("tree/inner/file")), "22");
    m_disk.makeFolder("back");
    EXPECT_TRUE(memoryFolder("tree")->copyContents(*m_disk.directory("back"), true, false, nullptr));
    EXPECT_EQ(m_disk.contents("back"), (Names{"file", "inner/", "inner/file"}));
    EXPECT_EQ(failuresIn(messages), 0U);
    EXPECT_FALSE(m_disk.file("back/file")->move(*memoryFile("moved"), true));
    EXPECT_EQ(failuresIn(messages), 1U);
    EXPECT_FALSE(memoryFile("tree/file")->move(*m_disk.file("moved"), true));
    EXPECT_FALSE(m_disk.directory("back")->move(*memoryFolder("moved"), false));
    EXPECT_EQ(m_disk.read("back/inner/file"), "22");
    // Nor is a target emptied for it.
    m_disk.write("tree/file", "old");
    EXPECT_FALSE(memoryFolder("tree")->move(*m_disk.directory("back"), true));
    EXPECT_FALSE(m_disk.directory("back")->move(*memoryFolder("tree"), true));
    EXPECT_EQ(m_disk.read("back/inner/file"), "22");
    EXPECT_EQ(contentOf(*memoryFile("tree/inner/file")), "22");
}

TEST_F(TwoImplementations, FailAsTheyAreTold)
{
    Messages messages;
    auto& volume = m_memory.volume();
    m_disk.write("file", "1234567890");
    *memoryFile("source")->openWrite() << "1234567890";
    volume.setCapacity(15);
    EXPECT_EQ(memoryFile("source")->copy(*memoryFile("full"), true, nullptr), 221);
    EXPECT_EQ(m_disk.file("file")->copy(*memoryFile("full"), true, nullptr), 18);
    EXPECT_FALSE(memoryFile("full")->exists());
    volume.setCapacity(1000);
    volume.fail(MemoryOperation::WRITE, memory_error::ABORTED);
    EXPECT_EQ(memoryFile("source")->copy(*memoryFile("full"), true, nullptr), 24);
    EXPECT_FALSE(*memoryFile("other")->openWrite());
    volume.fail(MemoryOperation::WRITE, memory_error::NONE);
    volume.fail(MemoryOperation::READ, memory_error::ACCESS_DENIED);
    EXPECT_EQ(memoryFile("source")->copy(*m_disk.file("x"), true, nullptr), 18);
    volume.fail(MemoryOperation::READ, memory_error::NONE);

    m_disk.write("tree/inner/file");
    volume.fail(MemoryOperation::CREATE_FOLDER, memory_error::ACCESS_DENIED);
    EXPECT_EQ(m_disk.directory("tree")->copy(*memoryFolder(""), false, nullptr), nullptr);
    volume.fail(MemoryOperation::CREATE_FOLDER, memory_error::NONE);
    volume.fail(MemoryOperation::REMOVE, memory_error::ACCESS_DENIED);
    messages.take();
    EXPECT_FALSE(memoryFile("source")->remove());
    EXPECT_EQ(failuresIn(messages), 1U);
    volume.fail(MemoryOperation::REMOVE, memory_error::NONE);

    EXPECT_TRUE(memoryFolder("d")->create());
    memoryFile("d/gone")->touch();
    memoryFile("d/kept")->touch();
    volume.vanishWhenListed({"d", "gone"});
    unsigned long long bytes = 0;
    EXPECT_FALSE(memoryFolder("d")->size(bytes));
    EXPECT_TRUE(memoryFolder("d")->size(bytes));
    EXPECT_TRUE(memoryFolder("d")->remove(true));
}

}  // namespace

}  // namespace Oxa_1_1::test
