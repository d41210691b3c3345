// Small file systems that fill up, and files that may not grow.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "base/filesystem/failure.h"
#include "base/filesystem/safe_writer.h"
#include "base/filesystem/tree_operations.h"
#include "tests/filesystem/linux/world.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

constexpr int FAILED = 18;
constexpr int DISK_FULL = 221;
constexpr int FORBIDDEN = 77;

/// Runs the test in a process of its own and returns its exit code.
int inChild(const std::function<void()>& test)
{
    const int child = fork();
    if (child == 0)
    {
        test();
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void writeTo(const char* file, const std::string& text) { std::ofstream(file) << text; }

/// Mounts an empty file system that this process alone sees, also without being the superuser.
bool mountSmall(const std::filesystem::path& place, const char* options)
{
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) != 0)
    {
        if (unshare(CLONE_NEWNS | CLONE_NEWUSER) != 0) return false;
        writeTo("/proc/self/setgroups", "deny");
        writeTo("/proc/self/uid_map", "0 " + user + " 1");
        writeTo("/proc/self/gid_map", "0 " + group + " 1");
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", place.c_str(), "tmpfs", 0, options) == 0;
}

class FullDisk : public testing::Test
{
   protected:
    void withSmallDisk(const char* options, const std::function<void()>& test)
    {
        temp.makeFolder("disk");
        const int code = inChild(
            [&]
            {
                if (!mountSmall(temp.path("disk"), options)) std::_Exit(FORBIDDEN);
                test();
            });
        if (code == FORBIDDEN) GTEST_SKIP() << "This system lets nobody mount a file system.";
        EXPECT_EQ(code, 0);
    }

    int copy(const std::string& from, const std::string& to, bool overwrite = false) const
    {
        return temp.file(from)->copy(*temp.file(to), overwrite, nullptr);
    }

    const TempFolder temp;
    Messages messages;
};

TEST_F(FullDisk, TakesNoIncompleteFiles)
{
    const std::string large(2 << 20, 'x');
    const std::string medium(100 << 10, 'y');
    temp.write("large", large);
    temp.write("medium", medium);
    temp.write("tree/a/small", "small");
    temp.write("tree/large", large);
    withSmallDisk("size=1m",
                  [&]
                  {
                      EXPECT_EQ(copy("large", "disk/large"), DISK_FULL);
                      temp.write("disk/old", "old");
                      EXPECT_EQ(copy("large", "disk/old", true), DISK_FULL);
                      EXPECT_EQ(temp.read("disk/old"), "old");
                      SafeWriter writer(*temp.file("disk/old"));
                      writer.stream() << large;
                      EXPECT_FALSE(writer.commit());
                      EXPECT_TRUE(lastFailure()->code == std::errc::no_space_on_device);
                      EXPECT_EQ(temp.read("disk/old"), "old");
                      std::filesystem::remove(temp.path("disk/old"));
                      EXPECT_EQ(temp.directory("tree")->copy(*temp.directory("disk"), false, nullptr), nullptr);
                      EXPECT_EQ(temp.contents("disk"), Names{});
                      // Too small to be reserved, so that writing it fails.
                      temp.write("disk/filler", std::string(980 << 10, 'z'));
                      EXPECT_EQ(copy("medium", "disk/medium"), DISK_FULL);
                      EXPECT_EQ(temp.contents("disk"), Names{"filler"});
                      EXPECT_EQ(copy("tree/a/small", "disk/small"), 0);
                  });
    EXPECT_EQ(temp.read("large"), large);
    EXPECT_EQ(temp.contents("tree"), (Names{"a/", "a/small", "large"}));
}

TEST_F(FullDisk, OfNamesTakesNoMoreFiles)
{
    temp.write("file");
    std::filesystem::create_symlink("nowhere", temp.path("dangling"));
    withSmallDisk("size=1m,nr_inodes=3",
                  [&]
                  {
                      EXPECT_EQ(copy("file", "disk/one"), 0);
                      EXPECT_EQ(copy("file", "disk/two"), 0);
                      EXPECT_EQ(copy("file", "disk/three"), DISK_FULL);
                      EXPECT_EQ(copy("dangling", "disk/three"), DISK_FULL);
                      EXPECT_FALSE(temp.directory("disk/three")->create());
                      EXPECT_EQ(copy("file", "disk/two", true), 0);
                      EXPECT_EQ(temp.contents("disk"), (Names{"one", "two"}));
                  });
}

TEST_F(FullDisk, LosesNothingThatShallMoveThere)
{
    temp.write("file");
    temp.write("tree/a/file");
    temp.write("tree/b");
    withSmallDisk("size=1m",
                  [&]
                  {
                      for (const bool overwrite : {false, true})
                      {
                          EXPECT_FALSE(temp.file("file")->move(*temp.file("disk/file"), overwrite));
                          EXPECT_FALSE(temp.directory("tree")->move(*temp.directory("disk/tree"), overwrite));
                          temp.write("disk/file", "old");
                          EXPECT_FALSE(temp.file("file")->move(*temp.file("disk/file"), overwrite));
                          EXPECT_EQ(temp.read("disk/file"), "old");
                          std::filesystem::remove(temp.path("disk/file"));
                      }
                      // The same file system, but by another way.
                      temp.makeFolder("bound");
                      ASSERT_EQ(mount(temp.path().c_str(), temp.path("bound").c_str(), nullptr, MS_BIND, nullptr), 0);
                      temp.write("other/old", "old");
                      std::filesystem::create_symlink("tree", temp.path("link"));
                      for (const char* const name : {"tree", "link"})
                          EXPECT_FALSE(temp.directory(name)->move(*temp.directory("bound/other"), true)) << name;
                      EXPECT_EQ(temp.read("other/old"), "old");
                      umount(temp.path("bound").c_str());
                  });
    temp.makeFolder("disk");
    EXPECT_EQ(temp.read("file"), "content");
    EXPECT_EQ(temp.read("tree/a/file"), "content");
    EXPECT_EQ(temp.read("tree/b"), "content");
}

TEST_F(FullDisk, OfTreesTakesAllOrWhatFits)
{
    withSmallDisk(
        "size=128k",
        [&]
        {
            using Act = std::function<TreeReport(const TreeOptions&)>;
            const Act acts[] = {
                [&](const auto& o) { return copyTree(*temp.directory("tree"), *temp.directory("disk/old"), o); },
                [&](const auto& o) { return copyTree(*temp.directory("tree"), *temp.directory("disk/new/x"), o); },
                [&](const auto& o) { return moveTree(*temp.directory("tree"), *temp.directory("disk/old"), o); },
                [&](const auto& o) { return moveTree(*temp.directory("tree"), *temp.directory("disk/new/x"), o); },
                [&](const auto& o) { return moveFile(*temp.file("tree/b/large"), *temp.file("disk/new/f"), o); },
                [&](const auto& o) { return moveFile(*temp.file("tree/b/large"), *temp.file("disk/old/b/f"), o); }};
            for (const Act& act : acts)
                for (const OnFailure onFailure : {OnFailure::Stop, OnFailure::RollBack, OnFailure::GoOn})
                {
                    for (const char* const part : {"disk/old", "disk/new"})
                        std::filesystem::remove_all(temp.path(part));
                    temp.write("disk/old/a/small", "old");
                    temp.write("disk/old/b/f", "old");
                    temp.write("disk/old/b/large", "old");
                    temp.write("tree/a/small", "new");
                    temp.write("tree/b/large", std::string(200 << 10, 'x'));
                    temp.write("tree/c/small", "new");
                    const World former = worldIn(temp);
                    const TreeReport report = act({.overwrite = Overwrite::Always, .onFailure = onFailure});
                    EXPECT_EQ(report.failureCount, 1U);
                    EXPECT_EQ(report.failures.at(0).code, std::errc::no_space_on_device);
                    const World after = worldIn(temp);
                    if (onFailure == OnFailure::RollBack)
                    {
                        EXPECT_TRUE(below(after, "disk") == below(former, "disk"));
                    }
                    EXPECT_EQ(temp.read("disk/old/b/f") + temp.read("disk/old/b/large"), "oldold");
                    for (const auto& each : after) EXPECT_EQ(each.first.find(".oxa"), std::string::npos);
                    if (onFailure != OnFailure::GoOn)
                    {
                        EXPECT_TRUE(below(after, "tree") == below(former, "tree"));
                    }
                }
        });
}

TEST_F(FullDisk, IsNotTheSameFolderByTwoNames)
{
    withSmallDisk(
        "size=1m",
        [&]
        {
            using Act = TreeReport (*)(const Directory&, const Directory&, const TreeOptions&);
            for (const Act act : {Act(&copyTree), Act(&moveTree)})
                for (const Overwrite overwrite : {Overwrite::Never, Overwrite::Always})
                {
                    makeEmpty(temp, "disk");
                    for (const char* const file : {"disk/tree/sub/file", "disk/tree/other", "disk/target/old"})
                        temp.write(file, file);
                    const auto bound = temp.path("disk/target/sub");
                    std::filesystem::create_directory(bound);
                    ASSERT_EQ(mount(temp.path("disk/tree/sub").c_str(), bound.c_str(), nullptr, MS_BIND, nullptr), 0);
                    TreeReport report =
                        act(*temp.directory("disk/tree"), *temp.directory("disk/target"), {.overwrite = overwrite});
                    EXPECT_EQ(report.failures.at(0).code.value(), 87);
                    EXPECT_EQ(temp.read("disk/tree/sub/file"), "disk/tree/sub/file");
                    EXPECT_EQ(temp.read("disk/target/other"), "disk/tree/other");
                    // A target that lies in the source, though no path says so.
                    report = act(*temp.directory("disk/tree"), *temp.directory("disk/target/sub/new"), {});
                    EXPECT_EQ(report.failures.at(0).code.value(), 87);
                    EXPECT_TRUE(contentsOf(worldIn(temp)).contains("file disk/tree/sub/file"));
                    EXPECT_EQ(umount(bound.c_str()), 0);
                }
        });
}

TEST_F(FullDisk, IsNoneThatAnotherUserMayNotChange)
{
    temp.write("tree/a/file");
    temp.write("target/old", "old");
    constexpr auto ALL = std::filesystem::perms::all;
    std::filesystem::permissions(temp.path("target"), ALL);
    std::filesystem::permissions(temp.path(), ALL);
    std::filesystem::permissions(temp.path("tree/a"), std::filesystem::perms(0555));
    EXPECT_EQ(inChild(
                  [&]
                  {
                      constexpr uid_t NOBODY = 65534;
                      const bool isAnybody = geteuid() != 0 || seteuid(NOBODY) == 0;
                      ASSERT_TRUE(isAnybody);
                      EXPECT_FALSE(temp.directory("tree")->move(*temp.directory("target"), true));
                  }),
              0);
    EXPECT_EQ(temp.read("target/old"), "old");
}

TEST_F(FullDisk, IsAnotherReasonThanFilesThatMayNotGrow)
{
    temp.write("large", std::string(2 << 20, 'x'));
    EXPECT_EQ(inChild(
                  [&]
                  {
                      constexpr rlimit LIMIT{1 << 20, 1 << 20};
                      std::signal(SIGXFSZ, SIG_IGN);
                      setrlimit(RLIMIT_FSIZE, &LIMIT);
                      EXPECT_EQ(copy("large", "copy"), FAILED);
                      EXPECT_FALSE(temp.has("copy"));
                  }),
              0);
}

}  // namespace

}  // namespace Oxa_1_1::test
