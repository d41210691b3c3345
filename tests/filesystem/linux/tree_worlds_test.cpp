// Walks and operations among links, pipes, odd names, deep folders and other disks.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <utility>

#include "base/filesystem/disk_facts.h"
#include "base/filesystem/tree_operations.h"
#include "base/filesystem/tree_walk.h"
#include "tests/filesystem/linux/system_calls.h"
#include "tests/filesystem/linux/world.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

namespace fs = std::filesystem;

constexpr int MISSING = 2;
constexpr int UNSUPPORTED = 50;
constexpr int IN_THE_WAY = 80;
constexpr int LINK_LOOP = 1921;

class TreeWorlds : public testing::Test
{
   protected:
    std::map<std::string, int> failuresOf(const TreeReport& report) const
    {
        EXPECT_EQ(report.failures.size(), report.failureCount);
        std::map<std::string, int> failures;
        for (const Failure& failure : report.failures)
            failures[File::fromString(failure.path)->toPath().lexically_relative(temp.path()).string()] =
                failure.code.value();
        return failures;
    }

    void makeLinks() const
    {
        for (const char* const file : {"source/file", "source/dir/below", "outside/x", "outside/y/z", "target/old"})
            temp.write(file, file);
        fs::create_symlink("file", temp.path("source/link"));
        fs::create_symlink("nowhere", temp.path("source/lost"));
        fs::create_symlink("../outside", temp.path("source/way"));
        fs::create_symlink("..", temp.path("source/dir/loop"));
        fs::create_symlink("../target", temp.path("source/to target"));
        ASSERT_EQ(mkfifo(temp.path("source/pipe").c_str(), 0600), 0);
    }

    const TempFolder temp;
    Messages messages;
};

using Failures = std::map<std::string, int>;

TEST_F(TreeWorlds, LinksAndPipesAreCopiedAsWanted)
{
    makeLinks();
    TreeReport report = copyTree(*temp.directory("source"), *temp.directory("copy"));
    EXPECT_EQ(failuresOf(report), (Failures{{"source/pipe", UNSUPPORTED}}));
    EXPECT_EQ(report.links, 5U);
    fs::remove(temp.path("source/pipe"));
    const auto named = [](const World& world, const std::string& from)
    {
        World part;
        for (const auto& [name, content] : world) part[name.substr(from.size())] = content;
        return part;
    };
    EXPECT_EQ(named(below(worldIn(temp), "copy"), "copy"), named(below(worldIn(temp), "source"), "source"));

    report = copyTree(*temp.directory("source"), *temp.directory("target"), {.links = LinkHandling::Follow});
    EXPECT_EQ(failuresOf(report),
              (Failures{{"source/lost", MISSING}, {"source/dir/loop", LINK_LOOP}, {"source/to target", 87}}));
    EXPECT_EQ(temp.read("target/link"), "source/file");
    EXPECT_FALSE(fs::is_symlink(temp.path("target/way/y")));
    EXPECT_EQ(temp.read("target/way/y/z"), "outside/y/z");
    EXPECT_EQ(temp.read("target/old"), "target/old");
}

TEST_F(TreeWorlds, WalksThroughLinksComeToAnEnd)
{
    makeLinks();
    const auto shown = [&](bool follows)
    {
        Names names;
        TreeWalk walk(*temp.directory("source"), {.followLinks = follows});
        for (const WalkEntry& entry : walk)
            names.push_back(entry.relativeName().stringUTF8() + (entry.isLink() ? "@" : "") +
                            (entry.isFolder() ? "/" : "") + (entry.kind() == WalkEntry::Kind::Other ? "|" : ""));
        EXPECT_TRUE(walk.isWhole());
        return sorted(names);
    };
    const Names own = {"dir/", "dir\\below", "dir\\loop@/", "file", "link@", "lost@", "pipe|", "to target@/", "way@/"};
    EXPECT_EQ(shown(false), own);
    Names all = own;
    for (const char* const behind : {"to target\\old", "way\\x", "way\\y/", "way\\y\\z"}) all.emplace_back(behind);
    EXPECT_EQ(shown(true), sorted(all));
}

TEST_F(TreeWorlds, NothingGoesThroughLinksAtTheTarget)
{
    makeLinks();
    fs::create_symlink("../outside", temp.path("target/dir"));
    fs::create_symlink("../outside/x", temp.path("target/file"));
    fs::remove(temp.path("source/pipe"));
    const World outside = below(worldIn(temp), "outside");
    for (const auto& act : {&copyTree, &moveTree})
    {
        const TreeReport report =
            act(*temp.directory("source"), *temp.directory("target"), {.overwrite = Overwrite::Always});
        EXPECT_EQ(failuresOf(report), (Failures{{"source/dir", IN_THE_WAY}}));
        EXPECT_EQ(report.failures.at(0).target, temp.directory("target/dir")->getFullName());
        EXPECT_FALSE(fs::is_symlink(temp.path("target/file")));
        EXPECT_EQ(below(worldIn(temp), "outside"), outside);
    }
    EXPECT_TRUE(removeTree(*temp.directory("target/way")));
    EXPECT_TRUE(removeTree(*temp.directory("target")));
    EXPECT_EQ(below(worldIn(temp), "outside"), outside);
}

TEST_F(TreeWorlds, LinksAreAsNewAsTheyAre)
{
    makeLinks();
    fs::rename(temp.path("source/pipe"), temp.path("target/file"));
    fs::create_symlink("round", temp.path("round"));
    EXPECT_EQ(copyTree(*temp.directory("source"), *temp.directory("round/new")).failures.at(0).code.value(), LINK_LOOP);
    EXPECT_EQ(
        failuresOf(copyTree(*temp.directory("source"), *temp.directory("target"), {.overwrite = Overwrite::Always})),
        (Failures{{"source/file", UNSUPPORTED}}));
    EXPECT_TRUE(fs::is_fifo(temp.path("target/file")));
    // A link of its own time on one side, a file on the other one.
    const FileTime old = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
    const auto prepare = [&](const char* link, const char* file, bool isLinkNewer)
    {
        for (const char* const each : {link, file}) fs::remove(temp.path(each));
        fs::create_symlink("../outside/x", temp.path(link));
        temp.write(file, "file");
        const struct timespec times[]
        {
            {.tv_sec = 0, .tv_nsec = UTIME_NOW}, { .tv_sec = 1000, .tv_nsec = 0 }
        };
        const bool isSet = isLinkNewer ? setLastWriteTime(*temp.file(file), old)
                                       : utimensat(AT_FDCWD, temp.path(link).c_str(), times, AT_SYMLINK_NOFOLLOW) == 0;
        EXPECT_TRUE(isSet);
    };
    for (const bool isLinkNewer : {true, false})
        for (const bool isLinkCopied : {true, false})
        {
            prepare(isLinkCopied ? "source/entry" : "target/entry", isLinkCopied ? "target/entry" : "source/entry",
                    isLinkNewer);
            // The pipe is passed over.
            EXPECT_FALSE(
                copyTree(*temp.directory("source"), *temp.directory("target"), {.overwrite = Overwrite::IfNewer}));
            EXPECT_EQ(fs::is_symlink(temp.path("target/entry")), isLinkNewer) << isLinkCopied;
        }
    EXPECT_EQ(temp.read("outside/x"), "outside/x");
}

TEST_F(TreeWorlds, LinksAndSecondNamesAreMovedThemselves)
{
    makeLinks();
    fs::remove(temp.path("source/pipe"));
    const World outside = below(worldIn(temp), "outside");
    EXPECT_EQ(moveTree(*temp.directory("source/way"), *temp.directory("new/way")).links, 1U);
    EXPECT_TRUE(fs::is_symlink(temp.path("new/way")) && !fs::is_symlink(temp.path("source/way")));
    EXPECT_EQ(below(worldIn(temp), "outside"), outside);
    for (const bool readOnlyToo : {false, true})
    {
        fs::create_hard_link(temp.path("source/file"), temp.path("target/name"));
        const TreeReport report = moveFile(*temp.file("target/name"), *temp.file("source/file"),
                                           {.overwrite = Overwrite::Always, .readOnlyToo = readOnlyToo});
        EXPECT_TRUE(report);
        EXPECT_EQ(temp.contents("target"), Names{"old"});
    }
    EXPECT_EQ(temp.read("source/file"), "source/file");
    for (const std::string& name : temp.contents("source")) EXPECT_FALSE(name.starts_with(".oxa")) << name;
}

TEST_F(TreeWorlds, TheTotalsAreReached)
{
    using Act = std::function<TreeReport(const TreeOptions&)>;
    const auto source = temp.directory("source");
    const auto target = temp.directory("target");
    const Act acts[] = {
        [&](const TreeOptions& options) { return copyTree(*source, *target, options); },
        [&](const TreeOptions& options) { return moveTree(*source, *target, options); },
        [&](const TreeOptions& options) { return moveTree(*source, *temp.directory("new"), options); },
        [&](const TreeOptions& options) { return moveFile(*temp.file("source/file"), *temp.file("f"), options); },
        [&](const TreeOptions& options) { return removeTree(*source, options); },
    };
    for (const Act& act : acts)
    {
        makeEmpty(temp);
        makeLinks();
        if (&act == &acts[0]) fs::remove(temp.path("source/pipe"));
        TreeProgress last;
        EXPECT_TRUE(act({.countFirst = true, .progress = [&](const TreeProgress& each) { last = each; }}));
        EXPECT_EQ(last.files, last.totalFiles);
        EXPECT_EQ(last.bytes, last.totalBytes);
        EXPECT_GE(last.totalFiles, 1U);
        // Who asks to stop before it begins, gets nothing done.
        makeEmpty(temp);
        makeLinks();
        const Names before = temp.contents();
        std::stop_source stop;
        stop.request_stop();
        EXPECT_TRUE(act({.stop = stop.get_token()}).isStopped);
        EXPECT_EQ(temp.contents(), before);
    }
}

TEST_F(TreeWorlds, NamesOfAnyBytesInFoldersOfAnyDepthNeedFewHandles)
{
    std::string deep = "source";
    for (int i = 0; i < 200; ++i) temp.write((deep += "/\xff:*?\x01 .") + "/\x80|", std::to_string(i));
    const World source = worldIn(temp);
    rlimit former{};
    getrlimit(RLIMIT_NOFILE, &former);
    const rlimit few{.rlim_cur = 100, .rlim_max = former.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    const TreeReport copied =
        copyTree(*temp.directory("source"), *temp.directory("copy"), {.onFailure = OnFailure::RollBack});
    const TreeReport moved = moveTree(*temp.directory("copy"), *temp.directory("moved"));
    const std::uint64_t counted = countEntries(*temp.directory("moved"));
    const TreeReport removed = removeTree(*temp.directory("moved"));
    setrlimit(RLIMIT_NOFILE, &former);
    EXPECT_TRUE(copied && moved && removed);
    EXPECT_EQ(copied.files, 200U);
    EXPECT_EQ(counted, 400U);
    EXPECT_EQ(removed.files, 200U);
    EXPECT_EQ(worldIn(temp), source);
}

TEST_F(TreeWorlds, WhatGoesMeanwhileIsNotMissed)
{
    const auto gone = [&](const char* name) { return [&, name] { fs::remove_all(temp.path(name)); }; };
    const auto makeNew = [&] { fs::create_directory(temp.path("new")); };
    const struct
    {
        std::function<bool()> act;
        std::function<void()> disturb;
    } cases[] = {
        {[&] { return removeTree(*temp.directory("source")).isDone(); }, gone("source")},
        {[&]
         {
             TreeWalk walk(*temp.directory("source"));
             for (const WalkEntry& entry : walk) static_cast<void>(entry);
             return walk.isWhole();
         },
         gone("source/dir")},
        {[&] {
             return copyTree(*temp.directory("source"), *temp.directory("target"), {.overwrite = Overwrite::Always})
                 .isDone();
         },
         gone("target/file")},
        // Another one's folder is filled up.
        {[&] { return copyTree(*temp.directory("source"), *temp.directory("new")).isDone(); }, makeNew},
        {[&] { return moveTree(*temp.directory("source"), *temp.directory("new")).isDone(); }, makeNew},
    };
    for (const auto& c : cases)
        for (int number = 1, calls = 1; number <= calls; ++number)
        {
            makeEmpty(temp);
            for (const char* const file : {"source/file", "source/dir/sub/below", "target/file"})
                temp.write(file, file);
            const SystemCalls hook(
                [&](int call)
                {
                    if (call == number) c.disturb();
                    return 0;
                });
            EXPECT_TRUE(c.act()) << &c - cases << " at call " << number;
            calls = hook.count();
        }
}

TEST_F(TreeWorlds, WhatIsExchangedForAMomentIsNotTakenForRemoved)
{
    const fs::path source = temp.path("source");
    const fs::path decoy = temp.path("decoy");
    for (int number = 1, calls = 1; number <= calls; ++number)
    {
        makeEmpty(temp);
        for (const char* const file : {"source/below", "outside/x"}) temp.write(file, file);
        fs::create_symlink("outside", decoy);
        const SystemCalls hook(
            [&](int call)
            {
                if (call == number || call == number + 1)
                    renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, decoy.c_str(), RENAME_EXCHANGE);
                return 0;
            });
        const bool isDone = removeTree(*temp.directory("source")).isDone();
        EXPECT_TRUE(!isDone || !temp.has("source")) << number;
        EXPECT_EQ(temp.read("outside/x"), "outside/x");
        calls = hook.count();
    }
}

TEST_F(TreeWorlds, AFileThatReplacesAnotherAlwaysHasAName)
{
    for (const OnFailure onFailure : {OnFailure::GoOn, OnFailure::RollBack})
    {
        temp.write("source", "new");
        temp.write("target", "old");
        bool isNameless = false;
        const SystemCalls watch(
            [&](int)
            {
                isNameless = isNameless || (!temp.has("source") && temp.read("target") != "new");
                return 0;
            });
        EXPECT_TRUE(moveFile(*temp.file("source"), *temp.file("target"),
                             {.overwrite = Overwrite::Always, .onFailure = onFailure}));
        EXPECT_FALSE(isNameless);
    }
}

TEST_F(TreeWorlds, FilesWithoutAnEndAreStopped)
{
    constexpr std::uint64_t MIB = 1 << 20;
    const std::string more(MIB, 'x');
    temp.write("source/file", more);
    const fs::path file = temp.path("source/file");
    std::stop_source stop;
    const SystemCalls grow(
        [&](int)
        {
            if (temp.has("target/file") && fs::file_size(file) < 64 * MIB) std::ofstream(file, std::ios::app) << more;
            return 0;
        });
    const TreeReport report = copyTree(*temp.directory("source"), *temp.directory("target"),
                                       {.stop = stop.get_token(),
                                        .progress = [&](const TreeProgress& done)
                                        {
                                            if (done.bytes > 8 * MIB) stop.request_stop();
                                        }});
    EXPECT_TRUE(report.isStopped);
    EXPECT_FALSE(temp.has("target/file"));
}

/// Two folders on different disks.
class TwoDisks : public TreeWorlds
{
   protected:
    void SetUp() override
    {
        m_far = fs::path("/dev/shm") / temp.path().filename();
        std::error_code error;
        fs::create_directories(m_far, error);
        struct stat here = {};
        struct stat there = {};
        stat(temp.path().c_str(), &here);
        if (stat(m_far.c_str(), &there) != 0 || here.st_dev == there.st_dev)
            GTEST_SKIP() << "There is no second disk here.";
    }
    ~TwoDisks() override
    {
        std::error_code error;
        fs::remove_all(m_far, error);
    }

    void makeSource() const
    {
        fs::remove_all(temp.path("source"));
        fs::remove_all(m_far / "target");
        for (const char* const file : {"source/a", "source/b/c", "source/b/d"}) temp.write(file, file);
        temp.setReadOnly("source/b/d", true);
        fs::create_symlink("nowhere", temp.path("source/b/link"));
        fs::permissions(temp.path("source/b"), fs::perms::owner_all);
    }
    TreeReport move(const TreeOptions& options = {}) const
    {
        return moveTree(*temp.directory("source"), *Directory::fromPath(m_far / "target"), options);
    }
    std::set<std::string> farFiles() const
    {
        std::set<std::string> files;
        if (!fs::exists(m_far / "target")) return files;
        for (const auto& entry : fs::recursive_directory_iterator(m_far / "target"))
        {
            if (entry.is_symlink())
                files.insert("link");
            else if (entry.is_regular_file())
            {
                std::ifstream stream(entry.path());
                files.insert("file " + std::string(std::istreambuf_iterator<char>(stream), {}));
            }
        }
        return files;
    }

    fs::path m_far;
};

TEST_F(TwoDisks, AreBridgedByCopies)
{
    makeSource();
    struct stat before = {};
    struct stat after = {};
    const char* const owned[] = {"b", "b/c", "b/link"};
    const bool isRoot = geteuid() == 0;
    for (const std::string name : owned)
        EXPECT_TRUE(!isRoot || lchown(temp.path("source/" + name).c_str(), 1234, 1234) == 0);
    EXPECT_EQ(chmod(temp.path("source/b/c").c_str(), 04755), 0);
    stat(temp.path("source/b/d").c_str(), &before);
    const TreeReport report = move();
    EXPECT_TRUE(report);
    EXPECT_EQ(report.files, 3U);
    EXPECT_EQ(report.links, 1U);
    EXPECT_EQ(report.folders, 2U);
    EXPECT_FALSE(temp.has("source"));
    EXPECT_EQ(farFiles().size(), 4U);
    ASSERT_EQ(stat((m_far / "target/b/d").c_str(), &after), 0);
    EXPECT_EQ(before.st_mode, after.st_mode);
    EXPECT_EQ(before.st_mtim.tv_nsec, after.st_mtim.tv_nsec);
    EXPECT_EQ(fs::status(m_far / "target/b").permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(m_far / "target/b/c").permissions(), fs::perms(04755));
    for (const std::string name : owned)
        EXPECT_TRUE(lstat((m_far / "target" / name).c_str(), &after) == 0 && (!isRoot || after.st_uid == 1234)) << name;

    temp.write("one", "1");
    EXPECT_TRUE(moveFile(*temp.file("one"), *File::fromPath(m_far / "two")));
    EXPECT_FALSE(temp.has("one"));
    EXPECT_TRUE(moveFile(*File::fromPath(m_far / "two"), *temp.file("one")));
    EXPECT_EQ(temp.read("one"), "1");
}

TEST_F(TwoDisks, KeepOneSideWholeWhateverFails)
{
    makeSource();
    const std::set<std::string> whole = contentsOf(worldIn(temp));
    int calls = 0;
    {
        const SystemCalls counter([](int) { return 0; });
        ASSERT_TRUE(move());
        calls = counter.count();
    }
    for (const OnFailure onFailure : {OnFailure::GoOn, OnFailure::Stop, OnFailure::RollBack})
        for (int number = 1; number <= calls; ++number)
        {
            makeSource();
            const World before = worldIn(temp);
            TreeReport report;
            std::string failed;
            {
                const SystemCalls failing([&](int call) { return call == number ? EIO : 0; });
                report = move({.onFailure = onFailure});
                failed = failing.failed();
            }
            SCOPED_TRACE("call " + std::to_string(number) + ": " + failed);
            const std::set<std::string> here = contentsOf(worldIn(temp));
            std::set<std::string> there = farFiles();
            const bool hasLink = there.erase("link") != 0;
            EXPECT_TRUE(here == whole || there == whole || onFailure == OnFailure::GoOn);
            std::set<std::string> both = here;
            both.insert(there.begin(), there.end());
            EXPECT_EQ(both, whole);
            if (report)
            {
                EXPECT_TRUE(there == whole && hasLink && !temp.has("source"));
            }
            else
            {
                EXPECT_TRUE(std::ranges::any_of(
                    report.failures, [](const Failure& failure) { return failure.code == std::errc::io_error; }));
            }
            // Of a folder that could not be read, nothing more is to be told.
            EXPECT_TRUE(failed != "getdents64" || report.failureCount == 1);
            if (report.isRolledBack)
            {
                EXPECT_EQ(worldIn(temp), before);
                EXPECT_FALSE(fs::exists(m_far / "target"));
            }
            if (HasFailure()) return;
        }
}

TEST_F(TwoDisks, LeaveWhatChangesMeanwhile)
{
    makeSource();
    temp.write("source/a", "old");
    bool isChanged = false;
    // Of the same size, at once.
    const auto change = [&](const TreeProgress&)
    {
        if (fs::exists(m_far / "target/a") && !std::exchange(isChanged, true)) temp.write("source/a", "new");
    };
    const TreeReport report = move({.progress = change});
    EXPECT_EQ(report.failureCount, 1U);
    EXPECT_EQ(temp.read("source/a"), "new");
    EXPECT_FALSE(temp.has("source/b"));
}

}  // namespace

}  // namespace Oxa_1_1::test
