// Saving in one step, temporary items, links, room and times.

#include <gtest/gtest.h>

#include <set>
#include <thread>

#include "base/filesystem/disk_facts.h"
#include "base/filesystem/failure.h"
#include "base/filesystem/links.h"
#include "base/filesystem/safe_writer.h"
#include "base/filesystem/temporary.h"
#include "extras/memory_file_system/memory_file_system.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(SafeWriter, TheTargetIsOldOrNewAndNothingElseIsLeft)
{
    const TempFolder folder;
    for (const bool isThere : {false, true})
        for (const bool isCommitted : {false, true})
        {
            const std::string name = std::string(isThere ? "old" : "new") + (isCommitted ? "_saved" : "_left");
            if (isThere) folder.write(name, "before");
            {
                SafeWriter writer(*folder.file(name));
                writer.stream() << "after";
                EXPECT_EQ(folder.read(name), isThere ? "before" : "missing");
                if (isCommitted)
                {
                    EXPECT_TRUE(writer.commit(SafeWriter::Durability::Power)) << name;
                    EXPECT_FALSE(writer.commit());
                    EXPECT_FALSE(writer.stream() << "late");
                }
            }
            EXPECT_EQ(folder.read(name), isCommitted ? "after" : isThere ? "before" : "missing");
        }
    EXPECT_EQ(folder.contents(), (Names{"new_saved", "old_left", "old_saved"}));
}

TEST(SafeWriter, WhatCannotBeReplacedStays)
{
    const TempFolder folder;
    folder.write("locked", "before");
    folder.setReadOnly("locked", true);
    folder.makeFolder("folder");
    for (const char* const name : {"locked", "folder", "missing/file"})
    {
        SafeWriter writer(*folder.file(name));
        writer.stream() << "after";
        forgetFailure();
        EXPECT_FALSE(writer.commit()) << name;
        const std::errc reason = name[0] == 'm' ? std::errc::no_such_file_or_directory : std::errc::permission_denied;
        EXPECT_TRUE(lastFailure()->code == reason) << lastFailure()->message().stringUTF8();
    }
    EXPECT_EQ(folder.read("locked"), "before");
    EXPECT_EQ(folder.contents(), (Names{"folder/", "locked"}));
}

TEST(SafeWriter, IsHandedOn)
{
    const TempFolder folder;
    SafeWriter first(*folder.file("first"));
    first.stream() << "first";
    SafeWriter second(*folder.file("second"));
    second = std::move(first);
    EXPECT_EQ(folder.contents().size(), 1U);
    // What a caller does to the stream of an ended writer is not seen in another one's.
    EXPECT_ANY_THROW(first.stream().exceptions(std::ios_base::badbit));
    EXPECT_FALSE(first.stream() << "late");
    EXPECT_FALSE(first.commit());
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(folder.contents(), Names{"first"});
}

TEST(SafeWriter, AFullDiskLeavesTheOldFile)
{
    MemoryFileSystem memory;
    const auto file = File::fromString(OXA_TEXT("mem:file"));
    *file->openWrite() << "before";
    memory.volume().setCapacity(10);
    SafeWriter writer(*file);
    writer.stream() << "something that is much longer";
    EXPECT_FALSE(writer.commit());
    std::string content;
    *file->openRead() >> content;
    EXPECT_EQ(content, "before");
    memory.volume().setCapacity(1000);
    SafeWriter again(*file);
    again.stream() << "after";
    EXPECT_TRUE(again.commit());
    *file->openRead() >> content;
    EXPECT_EQ(content, "after");
}

TEST(Temporary, NamesAreUniqueAmongThreadsAndGoneAtTheEnd)
{
    const TempFolder folder;
    std::vector<TemporaryFolder> folders;
    std::vector<TemporaryFile> files;
    {
        std::mutex mutex;
        std::vector<std::jthread> threads;
        for (int i = 0; i < 100; ++i)
            threads.emplace_back(
                [&]
                {
                    TemporaryFolder made(*folder.directory(), OXA_TEXT("f-"));
                    TemporaryFile file(*folder.directory());
                    const std::lock_guard lock(mutex);
                    folders.push_back(std::move(made));
                    files.push_back(std::move(file));
                });
    }
    std::set<std::string> names;
    for (const TemporaryFolder& made : folders)
    {
        ASSERT_NE(made.directory(), nullptr);
        EXPECT_TRUE(names.insert(made.directory()->getName().stringUTF8()).second);
        *File::fromString(*made.directory(), OXA_TEXT("inside"))->openWrite() << "content";
    }
    EXPECT_EQ(folder.contents().size(), 300U);
    const auto kept = folders.back().keep();
    folders.clear();
    files.clear();
    EXPECT_TRUE(kept->exists());
    EXPECT_EQ(folder.contents().size(), 2U);
    TemporaryFolder filled(*folder.directory());
    folder.write(filled.directory()->getName().stringUTF8() + "/inside/file");
    TemporaryFile locked(*folder.directory());
    folder.setReadOnly(filled.directory()->getName().stringUTF8() + "/inside/file", true);
    folder.setReadOnly(filled.directory()->getName().stringUTF8() + "/inside", true);
    folder.setReadOnly(locked.file()->getName().stringUTF8(), true);
    filled = TemporaryFolder(*folder.directory());
    locked = TemporaryFile(*folder.directory());
    EXPECT_EQ(folder.contents().size(), 4U);
    EXPECT_EQ(TemporaryFolder(*folder.directory("missing")).directory(), nullptr);
    EXPECT_EQ(TemporaryFile(*folder.directory(), OXA_TEXT("a/b")).file(), nullptr);
    const TemporaryFolder somewhere;
    EXPECT_TRUE(somewhere.directory() != nullptr && somewhere.directory()->isEmpty());
}

TEST(DiskFacts, TimesAndRoom)
{
    const TempFolder folder;
    folder.write("file");
    const auto file = folder.file("file");
    using namespace std::chrono;
    const FileTime time = sys_days(year(2001) / 2 / 3) + hours(4) + microseconds(5);
    EXPECT_TRUE(setLastWriteTime(*file, time));
    EXPECT_EQ(lastWriteTime(*file), time);
    EXPECT_TRUE(setLastWriteTime(*folder.directory(), time));
    EXPECT_EQ(lastWriteTime(*folder.directory()), time);
    EXPECT_LE(*creationTime(*file), floor<FileTime::duration>(system_clock::now()) + seconds(5));
    EXPECT_FALSE(setLastWriteTime(*file, FileTime::min()));
    EXPECT_FALSE(setLastWriteTime(*file, FileTime::max()));
    EXPECT_FALSE(setLastWriteTime(*folder.file("missing"), time));
    EXPECT_EQ(lastWriteTime(*folder.file("missing")), std::nullopt);

    const auto space = freeSpace(*file);
    ASSERT_TRUE(space);
    EXPECT_GT(space->total, 0U);
    EXPECT_LE(space->available, space->total);
    EXPECT_FALSE(freeSpace(*folder.file("missing")));
}

TEST(Links, WhatIsNoneHasNoTarget)
{
    const TempFolder folder;
    folder.write("file");
    for (const char* const name : {"file", "missing"})
    {
        EXPECT_FALSE(isLink(*folder.file(name)));
        EXPECT_TRUE(linkTarget(*folder.file(name)).isNil());
    }
    EXPECT_FALSE(isLink(*folder.directory()));
    EXPECT_TRUE(isSameOnDisk(*folder.file("file"), *folder.file("./file")));
    EXPECT_FALSE(isSameOnDisk(*folder.file("file"), *folder.directory()));
    EXPECT_FALSE(isSameOnDisk(*folder.file("missing"), *folder.file("missing")));
    EXPECT_FALSE(createLink(*folder.file("file"), OXA_TEXT("other"), LinkKind::File));
    EXPECT_FALSE(createLink(*folder.file("link"), OXA_TEXT("relative"), LinkKind::Junction));
    EXPECT_FALSE(createLink(*folder.file("link"), OXA_TEXT("C:\\no*path"), LinkKind::Junction));
    EXPECT_FALSE(createLink(*folder.file("link"), String(), LinkKind::File));
}

}  // namespace

}  // namespace Oxa_1_1::test
