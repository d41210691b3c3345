// What only this system has: links of every kind, devices, permissions, holes and paths without an end.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "base/platform/files/files.h"
#include "base/platform/files/system_path.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/system/error_code.h"
#include "base/platform/system/last_error.h"
#include "base/text/utf8.h"
#include "tests/platform/temporary_folder.h"

namespace Oxa_1_1::platform
{

namespace
{

class SpecialFiles : public testing::Test
{
   protected:
    static DWORD errorOf(bool result) { return result ? 0 : lastError(); }

    std::string native(const char* name) const { return (folder.path() / name).string(); }
    mode_t modeOf(const char* name) const
    {
        struct stat status
        {
        };
        lstat(native(name).c_str(), &status);
        return status.st_mode & 07777;
    }
    void link(const char* target, const char* name) const
    {
        std::filesystem::create_symlink(target, folder.path() / name);
    }

    test::TemporaryFolder folder;
};

TEST_F(SpecialFiles, Links)
{
    folder.write("file", "123");
    createFolder(folder / "sub");
    folder.write("sub/x", "");
    link("file", "to_file");
    link("sub", "to_sub");
    link("nowhere", "to_nothing");
    link("to_itself", "to_itself");

    for (const char* const name : {"to_file", "to_sub", "to_nothing", "to_itself"}) EXPECT_TRUE(isLink(folder / name));
    EXPECT_TRUE(isLink((folder / "to_sub") + u"\\"));
    EXPECT_EQ(readAttributes(folder / "to_file"), LINK);
    EXPECT_EQ(readAttributes((folder / "to_sub") + u"\\"), LINK | FOLDER);
    EXPECT_EQ(readInformation(folder / "to_sub")->attributes, LINK | FOLDER);
    EXPECT_EQ(readInformation(folder / "to_file")->size, 3u);
    EXPECT_EQ(readIdentity(folder / "to_file"), readIdentity(folder / "file"));
    EXPECT_EQ(errorOf(readAttributes(folder / "to_nothing").has_value()), 2u);
    EXPECT_EQ(errorOf(readInformation(folder / "to_itself").has_value()), 1921u);
    EXPECT_FALSE(isEmptyFolder(folder / "to_sub"));

    std::vector<std::string> found;
    const auto reader = openFolder(folder / "");
    for (FolderEntry entry; reader->next(entry);)
        found.push_back(text::encodeUtf8(entry.name) + (isFolder(entry.kind) ? " folder" : "") +
                        (isLink(entry.kind) ? " link" : ""));
    std::ranges::sort(found);
    EXPECT_EQ(found, (std::vector<std::string>{"file", "sub folder", "to_file link", "to_itself link",
                                               "to_nothing link", "to_sub folder link"}));

    EXPECT_EQ(errorOf(removeFolder(folder / "to_file")), 267u);
    EXPECT_TRUE(removeFolder((folder / "to_sub") + u"\\"));
    // It may have led to a folder.
    EXPECT_TRUE(removeFolder(folder / "to_nothing"));
    EXPECT_TRUE(renameFile(folder / "to_file", folder / "moved"));
    EXPECT_TRUE(isLink(folder / "moved"));
    for (const char* const name : {"moved", "to_itself"}) EXPECT_TRUE(deleteFile(folder / name));
    EXPECT_EQ(folder.read("file"), "123");
    EXPECT_TRUE(folder.has("sub/x"));
    EXPECT_FALSE(folder.has("to_sub") || folder.has("moved") || folder.has("to_nothing") || folder.has("to_itself"));
}

TEST_F(SpecialFiles, CopiesThroughLinksAndOntoThemselves)
{
    folder.write("file", "content");
    folder.write("other", "");
    link("file", "soft");
    link("other", "to_other");
    std::filesystem::create_hard_link(folder.path() / "file", folder.path() / "hard");
    for (const char* const target : {"soft", "hard"})
    {
        EXPECT_EQ(errorOf(copyFile(folder / "file", folder / target, false, {})), 32u) << target;
        EXPECT_EQ(errorOf(copyFile(folder / target, folder / "file", false, {})), 32u) << target;
    }
    EXPECT_EQ(folder.read("file"), "content");
    EXPECT_TRUE(copyFile(folder / "soft", folder / "to_other", false, {}));
    EXPECT_EQ(folder.read("other"), "content");
    EXPECT_TRUE(isLink(folder / "to_other"));

    EXPECT_TRUE(renameFile(folder / "file", folder / "./file"));
    EXPECT_TRUE(renameFile(folder / "file", folder / "hard"));
    EXPECT_FALSE(folder.has("file"));
    EXPECT_EQ(folder.read("hard"), "content");
}

TEST_F(SpecialFiles, ReplacedFilesStayWholeForTheirReaders)
{
    folder.write("new", "new");
    chmod(native("new").c_str(), 0600);
    folder.write("old", "old");
    chown(native("old").c_str(), geteuid(), getegid());
    const bool hasAttributes = setxattr(native("old").c_str(), "user.oxa", "1", 1, 0) == 0;
    createFolder(folder / "sub");
    link("../old", "sub/link");
    std::ifstream reader(native("old"));
    EXPECT_TRUE(copyFile(folder / "new", folder / "sub/link", false, {}));
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
    EXPECT_EQ(folder.read("old"), "new");
    EXPECT_TRUE(isLink(folder / "sub/link"));
    EXPECT_EQ(modeOf("old"), 0600u);
    if (hasAttributes)
    {
        EXPECT_EQ(getxattr(native("old").c_str(), "user.oxa", nullptr, 0), 1);
    }
    // All names of a file lead to the same one afterwards, too.
    std::filesystem::create_hard_link(folder.path() / "old", folder.path() / "name");
    folder.write("new", "newer");
    EXPECT_TRUE(copyFile(folder / "new", folder / "name", false, {}));
    EXPECT_EQ(folder.read("old"), "newer");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 4);
}

TEST_F(SpecialFiles, TouchIsNotDisturbedByRemovers)
{
    std::atomic<bool> isOver = false;
    std::thread remover(
        [&]
        {
            while (!isOver) unlink(native("file").c_str());
        });
    int failures = 0;
    for (int round = 0; round < 3000; ++round)
        if (touchFile(folder / "file") == Touch::FAILED) ++failures;
    isOver = true;
    remover.join();
    EXPECT_EQ(failures, 0);
    link("nowhere", "lost");
    EXPECT_EQ(errorOf(touchFile(folder / "lost") != Touch::FAILED), 2u);
}

TEST_F(SpecialFiles, ReadOnlyBindsEverybody)
{
    folder.write("file", "old");
    folder.write("other", "new");
    const Text file = folder / "file";
    ASSERT_TRUE(writeAttributes(file, READ_ONLY));
    EXPECT_EQ(errorOf(canOpen(file, false, true, 0)), 5u);
    EXPECT_EQ(errorOf(canOpen(file, true, true, 0)), 5u);
    EXPECT_EQ(errorOf(deleteFile(file)), 5u);
    EXPECT_EQ(errorOf(touchFile(file) != Touch::FAILED), 5u);
    EXPECT_EQ(errorOf(copyFile(folder / "other", file, false, {})), 5u);
    EXPECT_EQ(errorOf(renameFile(folder / "other", file)), 5u);
    EXPECT_EQ(folder.read("file"), "old");
    // A link to it may go.
    link("file", "link");
    EXPECT_TRUE(deleteFile(folder / "link"));
}

TEST_F(SpecialFiles, WritePermissions)
{
    struct Case
    {
        mode_t mask;
        mode_t mode;
        mode_t readOnly;
        mode_t writable;
    };
    const Case cases[]{
        {022, 0644, 0444, 0644}, {002, 0644, 0444, 0664}, {0, 0755, 0555, 0777},
        {0, 0600, 0400, 0600},   {077, 0666, 0444, 0644}, {0777, 0640, 0440, 0640},
    };
    folder.write("file", "");
    for (const Case& each : cases)
    {
        const mode_t before = umask(each.mask);
        chmod(native("file").c_str(), each.mode);
        EXPECT_TRUE(writeAttributes(folder / "file", READ_ONLY));
        EXPECT_EQ(modeOf("file"), each.readOnly);
        EXPECT_TRUE(writeAttributes(folder / "file", NORMAL));
        // Of a mask that lets nobody write, the owner is spared.
        EXPECT_EQ(modeOf("file"), each.mask >= 077 ? each.readOnly | 0200 : each.writable);
        umask(before);
    }
    chmod(native("file").c_str(), 0640);
    EXPECT_TRUE(copyFile(folder / "file", folder / "copy", false, {}));
    EXPECT_EQ(modeOf("copy"), 0640u);
}

TEST_F(SpecialFiles, NothingHangsOnPipesAndSockets)
{
    folder.write("file", "content");
    ASSERT_EQ(mkfifo(native("pipe").c_str(), 0600), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, native("socket").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(listener);
    for (const Text& path : {folder / "pipe", folder / "socket", Text(u"\\dev\\null"), Text(u"\\dev\\zero")})
    {
        EXPECT_EQ(errorOf(copyFile(path, folder / "new", false, {})), 50u) << text::encodeUtf8(path);
        EXPECT_EQ(errorOf(copyFile(folder / "file", path, false, {})), 50u) << text::encodeUtf8(path);
        EXPECT_FALSE(folder.has("new"));
    }
    EXPECT_EQ(touchFile(folder / "pipe"), Touch::FAILED);
    std::ofstream out;
    openStream(out, folder / "pipe", std::ios_base::out);
    EXPECT_FALSE(out.is_open());
    std::ifstream in;
    openStream(in, folder / "pipe", std::ios_base::in);
    EXPECT_EQ(in.get(), std::ifstream::traits_type::eof());
    EXPECT_TRUE(in.is_open());
    EXPECT_TRUE(canOpen(folder / "pipe", true, true, 0));
    flushFile(folder / "pipe");
    EXPECT_TRUE(deleteFile(folder / "pipe"));
}

TEST_F(SpecialFiles, Streams)
{
    using std::ios_base;
    const auto write = [&](const char* text, ios_base::openmode mode)
    {
        std::ofstream stream;
        openStream(stream, folder / "file", mode | ios_base::out);
        stream << text;
    };
    write("one", ios_base::binary);
    write("two", ios_base::app);
    EXPECT_EQ(folder.read("file"), "onetwo");
    write("three", ios_base::app | ios_base::trunc);
    EXPECT_EQ(folder.read("file"), "onetwo");
    std::ifstream stream;
    openStream(stream, folder / "file", ios_base::in | ios_base::ate);
    EXPECT_EQ(stream.tellg(), 6);
    stream.seekg(3);
    EXPECT_EQ(stream.get(), 't');
    int inherited = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    {
        std::error_code ignored;
        if (std::filesystem::read_symlink(entry.path(), ignored) != folder.path() / "file") continue;
        const int number = std::atoi(entry.path().filename().c_str());
        EXPECT_EQ(fcntl(number, F_GETFL) & O_NONBLOCK, 0);
        if ((fcntl(number, F_GETFD) & FD_CLOEXEC) == 0) ++inherited;
    }
    EXPECT_EQ(inherited, 0);
    stream.close();
    for (const char* const name : {"", "missing"})
    {
        openStream(stream, folder / name, ios_base::in);
        EXPECT_FALSE(stream.is_open() || stream.good());
    }
    write("more", ios_base::trunc);
    EXPECT_EQ(folder.read("file"), "more");
}

TEST_F(SpecialFiles, SizesThatAreNone)
{
    // What the system makes when it is read claims to be empty, or a page long.
    for (const char* const file : {"/proc/self/cgroup", "/sys/kernel/mm/transparent_hugepage/enabled"})
    {
        if (!std::filesystem::exists(file)) continue;
        std::string spelling(file);
        std::ranges::replace(spelling, '/', '\\');
        EXPECT_TRUE(copyFile(text::decodeUtf8(spelling), folder / "copy", false, {}));
        EXPECT_EQ(folder.read("copy"), folder.read(file)) << file;
        unlink(native("copy").c_str());
    }
}

TEST_F(SpecialFiles, HolesStayHoles)
{
    folder.write("file", std::string(100000, 'a'));
    std::filesystem::resize_file(folder.path() / "file", 20'000'000);
    {
        std::ofstream file(folder.path() / "file", std::ios::binary | std::ios::app);
        file << std::string(3'000'000, 'b');
    }
    std::filesystem::resize_file(folder.path() / "file", 40'000'001);
    std::uint64_t calls = 0;
    std::uint64_t last = 0;
    EXPECT_TRUE(copyFile(folder / "file", folder / "copy", false,
                         [&](std::uint64_t done, std::uint64_t total)
                         {
                             ++calls;
                             last = done;
                             EXPECT_EQ(total, 40'000'001u);
                         }));
    EXPECT_TRUE(folder.read("copy") == folder.read("file"));
    EXPECT_EQ(last, 40'000'001u);
    EXPECT_GE(calls, 3u);
    struct stat status
    {
    };
    stat(native("copy").c_str(), &status);
    EXPECT_LT(status.st_blocks * 512, 5'000'000);
}

/// The largest file that this process may write stands for a full disk.
class SizeLimit
{
   public:
    explicit SizeLimit(rlim_t size)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const struct rlimit limit
        {
            .rlim_cur = size, .rlim_max = m_before.rlim_max
        };
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    SizeLimit(const SizeLimit&) = delete;
    SizeLimit& operator=(const SizeLimit&) = delete;
    ~SizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }

   private:
    struct rlimit m_before
    {
    };
    void (*m_handler)(int);
};

TEST_F(SpecialFiles, IncompleteCopiesAreRemovedAndWhatTheyWereToReplaceStays)
{
    createFolder(folder / "elsewhere");
    folder.write("full", std::string(3'000'000, 'a'));
    folder.write("holes", std::string(3'000'000, 'a'));
    std::filesystem::resize_file(folder.path() / "holes", 9'000'000);
    for (const char* const source : {"full", "holes"})
    {
        folder.write("existing", "x");
        folder.write("elsewhere/linked", "y");
        folder.write("one", "z");
        std::filesystem::create_hard_link(folder.path() / "one", folder.path() / "two");
        link("elsewhere/linked", "link");
        {
            const SizeLimit limit(1'500'000);
            for (const char* const target : {"new", "existing", "link", "two"})
                EXPECT_EQ(errorOf(copyFile(folder / source, folder / target, false, {})), 223u) << source << target;
        }
        EXPECT_FALSE(folder.has("new") || folder.has("two")) << source;
        EXPECT_EQ(folder.read("existing") + folder.read("elsewhere/linked"), "xy") << source;
        // What has more names than one is written in place, and so for all of them.
        EXPECT_EQ(folder.read("one"), "") << source;
        for (const char* const name : {"link", "one"}) EXPECT_TRUE(deleteFile(folder / name));
    }
    // As when a receiver throws.
    folder.write("existing", "x");
    EXPECT_THROW(
        copyFile(folder / "full", folder / "existing", false, [](auto, auto) { throw std::runtime_error(""); }),
        std::runtime_error);
    EXPECT_EQ(folder.read("existing"), "x");
    EXPECT_EQ(folder.read("full").size(), 3'000'000u);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 4);
    EXPECT_EQ(errorCodeOfErrno(ENOSPC), 112u);
    EXPECT_EQ(errorCodeOfErrno(ECANCELED), 1235u);
}

TEST_F(SpecialFiles, UnreadableSourceLeavesTheTarget)
{
    folder.write("target", "content");
    link("nowhere", "dangling");
    EXPECT_EQ(errorOf(copyFile(folder / "dangling", folder / "target", false, {})), 2u);
    EXPECT_EQ(folder.read("target"), "content");
    EXPECT_FALSE(copyFile(folder / "target", folder / "dangling", false, {}));
    EXPECT_FALSE(folder.has("nowhere"));
}

TEST_F(SpecialFiles, Drives)
{
    setenv("OXA_DRIVES", native("drives").c_str(), 1);
    std::filesystem::create_directories(folder.path() / "drives/unc/srv");
    createFolder(folder / "data");
    folder.write("data/file", "x");
    link("../data", "drives/q:");
    link("../../../data", "drives/unc/srv/sh");
    struct Case
    {
        Text path;
        DWORD error;
    };
    const Case cases[]{
        {u"Q:\\file", 0},
        {u"\\\\?\\q:\\file", 0},
        {u"\\\\srv\\sh\\file", 0},
        {u"Q:\\", 0},
        {u"Q:", 0},
        {u"\\\\srv\\sh", 0},
        {u"Q:\\missing", 2},
        {u"\\\\srv\\sh\\no", 2},
        {u"Q:\\no\\no", 3},
        {u"R:\\file", 3},
        {u"R:\\", 3},
        {u"R:\\a\\b", 3},
        {u"\\\\srv\\no\\file", 53},
        {u"\\\\other\\sh\\a", 53},
        {u"\\\\?\\UNC\\srv\\no", 53},
    };
    for (const auto& [path, error] : cases)
    {
        EXPECT_EQ(errorOf(readInformation(path).has_value()), error) << text::encodeUtf8(path);
        EXPECT_FALSE(isLink(path)) << text::encodeUtf8(path);
    }
    EXPECT_FALSE(removeFolder(u"Q:\\"));
    EXPECT_FALSE(deleteFile(u"Q:"));
    EXPECT_TRUE(folder.has("drives/q:"));
    EXPECT_EQ(errorOf(createFolder(u"R:\\x")), 3u);
    EXPECT_EQ(errorOf(createFolder(u"\\\\srv\\no\\x")), 53u);

    const auto before = std::filesystem::current_path();
    EXPECT_EQ(currentFolder(17), u"Q:\\");
    createFolder(u"Q:\\sub");
    std::filesystem::current_path(folder.path() / "data/sub");
    EXPECT_EQ(currentFolder(17), u"Q:\\sub");
    const std::pair<Text, std::string> relative[]{{u"Q:", "."}, {u"q:x\\y", "x/y"}, {u"R:x", native("drives/r:/x")}};
    for (const auto& [path, expected] : relative) EXPECT_EQ(nativePathOf(path), expected);
    EXPECT_EQ(errorOf(!currentFolder(18).empty()), 15u);
    std::filesystem::current_path(before);
    unsetenv("OXA_DRIVES");
}

TEST_F(SpecialFiles, PathsLongerThanTheSystemTakes)
{
    Text deep = folder / "";
    for (int i = 0; i < 30; ++i)
    {
        deep.append(u"\\").append(Text(200, u'a' + static_cast<char16_t>(i % 26)));
        ASSERT_TRUE(createFolder(deep)) << i;
    }
    const Text file = deep + u"\\file";
    const Text copy = u"\\\\?\\" + deep + u"\\copy";
    EXPECT_EQ(touchFile(file), Touch::CREATED);
    EXPECT_EQ(touchFile(file), Touch::EXISTED);
    EXPECT_TRUE(copyFile(file, copy, true, {}));
    EXPECT_EQ(errorOf(copyFile(file, deep + u"\\.\\file", false, {})), 32u);
    EXPECT_EQ(readInformation(copy)->size, 0u);
    EXPECT_NE(readIdentity(copy), readIdentity(file));
    struct _stat64i32 status;
    EXPECT_TRUE(statFile(file, status));
    EXPECT_TRUE(writeAttributes(file, READ_ONLY));
    EXPECT_EQ(readAttributes(file), READ_ONLY);
    EXPECT_TRUE(writeAttributes(file, NORMAL));
    EXPECT_TRUE(canOpen(file, true, true, 0));
    EXPECT_TRUE(isReadable(file));
    EXPECT_TRUE(renameFile(file, deep + u"\\renamed"));
    EXPECT_EQ(errorOf(isReadable(file)), 2u);
    EXPECT_EQ(errorOf(isReadable(deep + u"\\no\\no")), 3u);
    EXPECT_EQ(errorOf(createFolder(deep + u"\\" + Text(300, u'x'))), 206u);
    EXPECT_EQ(errorOf(createFolder(folder / "" + Text(5000, u'x'))), 206u);
    EXPECT_TRUE(touchFolder(deep));
    EXPECT_FALSE(isEmptyFolder(deep));
    int entries = 0;
    const auto reader = openFolder(deep);
    for (FolderEntry entry; reader->next(entry);) ++entries;
    EXPECT_EQ(entries, 2);
    EXPECT_TRUE(deleteFile(deep + u"\\renamed"));
    EXPECT_TRUE(deleteFile(copy));
    for (; deep.size() > (folder / "").size() + 1; deep.resize(deep.rfind(u'\\'))) EXPECT_TRUE(removeFolder(deep));
}

TEST_F(SpecialFiles, TimesAndBrokenPaths)
{
    folder.write("file", "");
    const FileInformation before = readInformation(folder / "file").value();
    EXPECT_LE(before.created, before.written);
    const struct timespec times[]
    {
        {.tv_sec = 1, .tv_nsec = 200}, { .tv_sec = -1, .tv_nsec = 999'999'900 }
    };
    utimensat(AT_FDCWD, native("file").c_str(), times, 0);
    EXPECT_EQ(readInformation(folder / "file")->written, 116444735999999999u);
    EXPECT_EQ(readInformation(folder / "file")->created, before.created);
    EXPECT_TRUE(copyFile(folder / "file", folder / "copy", false, {}));
    EXPECT_EQ(readInformation(folder / "copy")->written, 116444735999999999u);

    EXPECT_EQ(errorOf(readAttributes((folder / "file") + u"\\").has_value()), 3u);
    EXPECT_EQ(errorOf(readInformation((folder / "file") + u"\\").has_value()), 3u);
    EXPECT_EQ(errorOf(deleteFile((folder / "file") + u'\0' + u"x")), 123u);
    EXPECT_EQ(errorOf(readAttributes({}).has_value()), 3u);
    EXPECT_TRUE(folder.has("file"));
}

TEST(LastError, IsOfTheThread)
{
    setLastError(5);
    std::thread([] { setLastError(6); }).join();
    EXPECT_EQ(lastError(), 5u);
}

}  // namespace

}  // namespace Oxa_1_1::platform
