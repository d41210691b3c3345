// What every system does with files and folders.

#include "base/platform/files/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cwchar>
#include <map>
#include <thread>

#include "base/platform/files/file_observer.h"
#include "base/platform/system/last_error.h"
#include "tests/platform/temporary_folder.h"

namespace Oxa_1_1::platform
{

namespace
{

using namespace std::chrono_literals;

class Files : public testing::Test
{
   protected:
    /// The error of an operation that fails; 0 for one that does not.
    static DWORD errorOf(bool result) { return result ? 0 : lastError(); }

    void makeOld(const char* name) const
    {
        std::filesystem::last_write_time(folder.path() / name, std::filesystem::file_time_type::clock::now() - 48h);
    }

    FileTicks writtenAt(const char* name) const { return readInformation(folder / name).value().written; }

    test::TemporaryFolder folder;
};

FileTicks now()
{
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<FileTicks>(std::chrono::duration_cast<std::chrono::microseconds>(since1970).count() * 10) +
           116444736000000000;
}

constexpr FileTicks SECOND = 10'000'000;

TEST_F(Files, Information)
{
    folder.write("file", "12345");
    const auto file = readInformation(folder / "file");
    ASSERT_TRUE(file);
    EXPECT_EQ(file->size, 5u);
    EXPECT_EQ(file->attributes & (FOLDER | READ_ONLY | LINK), 0u);
    EXPECT_NE(file->attributes, 0u);
    for (const FileTicks ticks : {file->created, file->written})
    {
        EXPECT_GT(ticks, now() - 60 * SECOND);
        EXPECT_LT(ticks, now() + 60 * SECOND);
    }
    EXPECT_EQ(readAttributes(folder / "file"), file->attributes);
    EXPECT_EQ(readAttributes(folder / "").value() & (FOLDER | READ_ONLY | LINK), FOLDER);
    EXPECT_EQ(readInformation(folder / "")->size, 0u);
    EXPECT_FALSE(isLink(folder / "file"));
    EXPECT_TRUE(isReadable(folder / "file"));
    EXPECT_FALSE(isReadable(folder / "missing"));
}

TEST_F(Files, MissingPaths)
{
    folder.write("file", "");
    struct Case
    {
        const char* name;
        DWORD error;
    };
    for (const auto& [name, error] : {Case{"missing", 2}, Case{"missing/x", 3}, Case{"file/x", 3}})
    {
        const Text path = folder / name;
        EXPECT_EQ(errorOf(readInformation(path).has_value()), error) << name;
        EXPECT_EQ(errorOf(readAttributes(path).has_value()), error) << name;
        EXPECT_EQ(errorOf(readIdentity(path).has_value()), error) << name;
        EXPECT_EQ(errorOf(writeAttributes(path, READ_ONLY)), error) << name;
        EXPECT_EQ(errorOf(canOpen(path, true, false, 0)), error) << name;
        EXPECT_EQ(errorOf(deleteFile(path)), error) << name;
        EXPECT_EQ(errorOf(removeFolder(path)), error) << name;
        EXPECT_EQ(errorOf(renameFile(path, folder / "new")), error) << name;
        EXPECT_EQ(errorOf(copyFile(path, folder / "file", false, {})), error) << name;
        EXPECT_EQ(errorOf(openFolder(path) != nullptr), 3u) << name;
        EXPECT_FALSE(isEmptyFolder(path)) << name;
        EXPECT_FALSE(isLink(path)) << name;
    }
    EXPECT_EQ(errorOf(createFolder(folder / "missing/x")), 3u);
    EXPECT_EQ(errorOf(touchFile(folder / "missing/x") != Touch::FAILED), 3u);
    EXPECT_EQ(errorOf(renameFile(folder / "file", folder / "missing/x")), 3u);
    EXPECT_EQ(errorOf(copyFile(folder / "file", folder / "missing/x", false, {})), 3u);
}

TEST_F(Files, ReadOnly)
{
    folder.write("file", "content");
    const Text file = folder / "file";
    const DWORD attributes = readAttributes(file).value();
    ASSERT_TRUE(writeAttributes(file, attributes | READ_ONLY));
    EXPECT_NE(readAttributes(file).value() & READ_ONLY, 0u);
    EXPECT_TRUE(canOpen(file, true, false, 0));
    EXPECT_EQ(errorOf(deleteFile(file)), 5u);

    EXPECT_TRUE(copyFile(file, folder / "copy", false, {}));
    EXPECT_NE(readAttributes(folder / "copy").value() & READ_ONLY, 0u);
    EXPECT_TRUE(renameFile(file, folder / "renamed"));
    EXPECT_TRUE(writeAttributes(folder / "renamed", attributes));
    EXPECT_EQ(readAttributes(folder / "renamed"), attributes);
    EXPECT_TRUE(canOpen(folder / "renamed", true, true, 0));
    EXPECT_TRUE(deleteFile(folder / "renamed"));
}

TEST_F(Files, Open)
{
    folder.write("file", "");
    EXPECT_TRUE(canOpen(folder / "file", true, true, 0));
    EXPECT_TRUE(canOpen(folder / "file", false, false, 0));
    EXPECT_TRUE(canOpen(folder / "", true, false, FOLDER));
    EXPECT_EQ(errorOf(canOpen(folder / "", true, false, 0)), 5u);
}

TEST_F(Files, Identity)
{
    folder.write("a", "");
    folder.write("b", "");
    EXPECT_EQ(readIdentity(folder / "a"), readIdentity(folder / "./a"));
    EXPECT_NE(readIdentity(folder / "a"), readIdentity(folder / "b"));
    EXPECT_TRUE(readIdentity(folder / "").has_value());
}

TEST_F(Files, Stat)
{
    folder.write("file", "123");
    makeOld("file");
    struct _stat64i32 status;
    ASSERT_TRUE(statFile(folder / "file", status));
    EXPECT_EQ(status.st_size, 3);
    EXPECT_EQ(status.st_mode & 0170000, 0100000);
    EXPECT_EQ(static_cast<FileTicks>(status.st_mtime), writtenAt("file") / SECOND - 11644473600);
    ASSERT_TRUE(statFile(folder / ".", status));
    EXPECT_EQ(status.st_mode & 0170000, 0040000);
    EXPECT_FALSE(statFile(folder / "missing", status));

    std::filesystem::resize_file(folder.path() / "file", (1U << 31) - 1);
    ASSERT_TRUE(statFile(folder / "file", status));
    EXPECT_EQ(status.st_size, 0x7FFFFFFF);
    std::filesystem::resize_file(folder.path() / "file", 1U << 31);
    EXPECT_EQ(errorOf(statFile(folder / "file", status)), 534u);
    EXPECT_EQ(readInformation(folder / "file")->size, 1U << 31);
}

TEST_F(Files, Touch)
{
    EXPECT_EQ(touchFile(folder / "file"), Touch::CREATED);
    EXPECT_EQ(folder.read("file"), "");
    folder.write("file", "content");
    makeOld("file");
    EXPECT_LT(writtenAt("file"), now() - 60 * SECOND);
    EXPECT_EQ(touchFile(folder / "file"), Touch::EXISTED);
    EXPECT_GT(writtenAt("file"), now() - 60 * SECOND);
    EXPECT_EQ(folder.read("file"), "content");
    flushFile(folder / "file");

    const FileTicks before = writtenAt("");
    std::this_thread::sleep_for(50ms);
    EXPECT_TRUE(touchFolder(folder / ""));
    EXPECT_GT(writtenAt(""), before);
    EXPECT_EQ(errorOf(touchFile(folder / ".") != Touch::FAILED), 5u);
    EXPECT_FALSE(touchFolder(folder / "missing"));
}

TEST_F(Files, DeleteAndRename)
{
    folder.write("a", "a");
    folder.write("b", "b");
    createFolder(folder / "empty");
    createFolder(folder / "full");
    folder.write("full/x", "x");
    EXPECT_EQ(errorOf(deleteFile(folder / "empty")), 5u);
    EXPECT_EQ(errorOf(renameFile(folder / "a", folder / "empty")), 5u);
    EXPECT_EQ(errorOf(renameFile(folder / "full", folder / "empty")), 5u);
    EXPECT_EQ(errorOf(renameFile(folder / "a", folder / "b", true)), 183u);
    EXPECT_EQ(errorOf(renameFile(folder / "full", folder / "empty", true)), 183u);
    EXPECT_EQ(folder.read("a") + folder.read("b"), "ab");
    EXPECT_TRUE(renameFile(folder / "a", folder / "c", true));
    EXPECT_TRUE(renameFile(folder / "c", folder / "a"));
    EXPECT_TRUE(renameFile(folder / "a", folder / "a"));
    EXPECT_EQ(folder.read("a"), "a");
    EXPECT_TRUE(renameFile(folder / "a", folder / "b"));
    EXPECT_EQ(folder.read("b"), "a");
    EXPECT_FALSE(folder.has("a"));
    EXPECT_TRUE(renameFile(folder / "full", folder / "moved"));
    EXPECT_EQ(folder.read("moved/x"), "x");
    EXPECT_TRUE(deleteFile(folder / "b"));
    EXPECT_FALSE(folder.has("b"));
}

TEST_F(Files, Folders)
{
    EXPECT_TRUE(createFolder(folder / "sub"));
    EXPECT_TRUE(isEmptyFolder(folder / "sub"));
    EXPECT_EQ(errorOf(createFolder(folder / "sub")), 183u);
    folder.write("sub/file", "");
    EXPECT_EQ(errorOf(createFolder(folder / "sub/file")), 183u);
    EXPECT_FALSE(isEmptyFolder(folder / "sub"));
    EXPECT_FALSE(isEmptyFolder(folder / "sub/file"));
    EXPECT_EQ(errorOf(removeFolder(folder / "sub")), 145u);
    EXPECT_EQ(errorOf(removeFolder(folder / "sub/file")), 267u);
    EXPECT_TRUE(deleteFile(folder / "sub/file"));
    EXPECT_TRUE(removeFolder((folder / "sub") + OXA_TEXT("\\")));
    EXPECT_FALSE(folder.has("sub"));
}

TEST_F(Files, Entries)
{
    std::map<Text, bool> expected{{OXA_TEXT(".hidden"), false}, {OXA_TEXT("sub"), true}};
    createFolder(folder / "sub");
    folder.write(".hidden", "");
    // More than the system hands over at once.
    for (int i = 0; i < 1500; ++i)
    {
        const std::string name = "some file with a longer name " + std::to_string(i);
        folder.write(name.c_str(), "");
        expected[Text(name.begin(), name.end())] = false;
    }
    for (const Text& path : {folder / "", folder / "."})
    {
        const auto reader = openFolder(path);
        ASSERT_NE(reader, nullptr);
        std::map<Text, bool> found;
        FolderEntry entry;
        while (reader->next(entry))
        {
            EXPECT_FALSE(isLink(entry.kind));
            EXPECT_TRUE(found.emplace(entry.name, isFolder(entry.kind)).second);
        }
        EXPECT_EQ(lastError(), 18u);
        EXPECT_FALSE(reader->next(entry));
        EXPECT_EQ(found, expected);
    }
    EXPECT_FALSE(openFolder(folder / ".hidden"));
    const auto empty = openFolder(folder / "sub");
    FolderEntry entry;
    EXPECT_FALSE(empty->next(entry));
}

TEST_F(Files, CurrentFolder)
{
    const std::u16string current = std::filesystem::current_path().u16string();
    Text text = currentFolder(0);
    const auto identity = readIdentity(text);
    EXPECT_EQ(text.size(), current.size());
    EXPECT_EQ(identity, readIdentity(Text(current.begin(), current.end())));
    for (const int drive : {-1, 27, 1000}) EXPECT_EQ(currentFolder(drive), Text()) << drive;
}

class RecordingObserver : public FileObserver
{
   public:
    RecordingObserver() { setFileObserver(this); }
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;
    ~RecordingObserver() override { setFileObserver(nullptr); }

    std::optional<DWORD> called(std::string_view operation, TextView path, TextView target) override
    {
        calls.emplace_back(std::string(operation) + ' ' + std::string(path.begin(), path.end()) + ' ' +
                           std::string(target.begin(), target.end()));
        return failure;
    }

    std::vector<std::string> calls;
    std::optional<DWORD> failure;
};

TEST_F(Files, ObserverSeesAndRefuses)
{
    createFolder(folder / "sub");
    folder.write("sub/x", "");
    const Text sub = folder / "sub";
    const std::string path(sub.begin(), sub.end());
    FolderEntry entry;
    RecordingObserver observer;
    const auto reader = openFolder(sub);
    EXPECT_TRUE(reader->next(entry));
    observer.failure = 112;
    EXPECT_EQ(errorOf(reader->next(entry)), 112u);
    EXPECT_EQ(errorOf(copyFile(sub, OXA_TEXT("to"), false, {})), 112u);
    EXPECT_EQ(errorOf(readInformation(sub).has_value()), 112u);
    EXPECT_EQ(touchFile(sub), Touch::FAILED);
    EXPECT_EQ(openFolder(sub), nullptr);
    flushFile(sub);
    EXPECT_EQ(observer.calls, (std::vector<std::string>{"openFolder " + path + " ", "nextEntry " + path + " ",
                                                        "nextEntry " + path + " ", "copyFile " + path + " to",
                                                        "readInformation " + path + " ", "touchFile " + path + " ",
                                                        "openFolder " + path + " ", "flushFile " + path + " "}));
    setFileObserver(nullptr);
    EXPECT_TRUE(readAttributes(sub).has_value());
    EXPECT_EQ(observer.calls.size(), 8u);
}

// ---- Copies.

class FileCopies : public Files, public testing::WithParamInterface<std::size_t>
{
};

INSTANTIATE_TEST_SUITE_P(Sizes, FileCopies,
                         testing::Values(0, 1, 4096, 128 * 1024, 128 * 1024 + 1, 1024 * 1024, 3 * 1024 * 1024 + 5));

std::string content(std::size_t size)
{
    std::string bytes(size, '\0');
    std::minstd_rand random(1);
    for (char& byte : bytes) byte = static_cast<char>(random());
    return bytes;
}

TEST_P(FileCopies, ContentTimesAndProgress)
{
    const std::string bytes = content(GetParam());
    folder.write("from", bytes);
    makeOld("from");
    std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
    const CopyProgress progress = [&](std::uint64_t done, std::uint64_t total) { calls.emplace_back(done, total); };
    ASSERT_TRUE(copyFile(folder / "from", folder / "to", true, progress));
    EXPECT_TRUE(folder.read("to") == bytes);
    EXPECT_EQ(writtenAt("to"), writtenAt("from"));
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.back(), std::pair(GetParam() + 0UL, GetParam() + 0UL));
    EXPECT_TRUE(std::ranges::is_sorted(calls));
    EXPECT_EQ(std::ranges::adjacent_find(calls), calls.end());

    // A longer file is replaced as a whole; without leave it stays.
    folder.write("to", bytes + "tail");
    EXPECT_EQ(errorOf(copyFile(folder / "from", folder / "to", true, progress)), 80u);
    EXPECT_TRUE(folder.read("to") == bytes + "tail");
    ASSERT_TRUE(copyFile(folder / "from", folder / "to", false, {}));
    EXPECT_TRUE(folder.read("to") == bytes);
}

TEST_F(Files, CopiesThatFail)
{
    folder.write("file", "content");
    createFolder(folder / "sub");
    struct Case
    {
        const char* from;
        const char* to;
        DWORD error;
    };
    const Case cases[]{
        {"file", "file", 32}, {"file", "./file", 32}, {"file", "sub", 5},
        {"sub", "new", 5},    {"missing", "file", 2}, {"file", "missing/new", 3},
    };
    for (const auto& [from, to, error] : cases)
    {
        EXPECT_EQ(errorOf(copyFile(folder / from, folder / to, false, {})), error) << from << " to " << to;
        EXPECT_EQ(folder.read("file"), "content");
        EXPECT_TRUE(isEmptyFolder(folder / "sub"));
        EXPECT_FALSE(folder.has("new"));
    }
}

}  // namespace

}  // namespace Oxa_1_1::platform
