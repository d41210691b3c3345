// Operations on whole trees: what they do, what they tell, and what is left when they end early.

#include "base/filesystem/tree_operations.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

#include "base/filesystem/disk_facts.h"
#include "extras/memory_file_system/memory_file_system.h"
#include "tests/filesystem/linux/world.h"
#include "tests/filesystem/messages.h"

namespace Oxa_1_1::test
{

namespace
{

class TreeOperations : public testing::Test
{
   protected:
    /// "newer" and "older" are on both sides, the one of the source is the newer or older one.
    void makeSides() const
    {
        makeEmpty(temp);
        for (const char* const file : {"source/newer", "source/sub/older", "source/only", "source/sub/deep/file"})
            temp.write(file, file);
        for (const char* const file : {"target/newer", "target/sub/older", "target/other"}) temp.write(file, file);
        temp.makeFolder("source/empty");
        age("target/newer");
        age("source/sub/older");
    }
    void age(const std::string& file) const
    {
        ASSERT_TRUE(setLastWriteTime(*temp.file(file), now - std::chrono::hours(1)));
    }

    TreeReport copy(const TreeOptions& options = {}) const
    {
        return copyTree(*temp.directory("source"), *temp.directory("target"), options);
    }
    TreeReport move(const TreeOptions& options = {}) const
    {
        return moveTree(*temp.directory("source"), *temp.directory("target"), options);
    }

    const FileTime now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const TempFolder temp;
    Messages messages;
};

TEST_F(TreeOperations, CopyAndMoveByTheRuleForWhatIsThere)
{
    const struct
    {
        Overwrite overwrite;
        const char* newer;
        const char* older;
        std::uint64_t files;
        std::uint64_t skipped;
        std::uint64_t failures;
        Names left;
    } cases[] = {
        {Overwrite::Never, "target/newer", "target/sub/older", 2, 0, 2, {"newer", "sub/", "sub/older"}},
        {Overwrite::IfNewer, "source/newer", "target/sub/older", 3, 1, 0, {"sub/", "sub/older"}},
        {Overwrite::Always, "source/newer", "source/sub/older", 4, 0, 0, {}},
    };
    for (const auto& [overwrite, newer, older, files, skipped, failures, left] : cases)
        for (const bool moves : {false, true})
        {
            makeSides();
            const TreeOptions options{.overwrite = overwrite};
            const TreeReport report = moves ? move(options) : copy(options);
            EXPECT_EQ(temp.read("target/newer"), newer);
            EXPECT_EQ(temp.read("target/sub/older"), older);
            EXPECT_EQ(temp.read("target/sub/deep/file"), "source/sub/deep/file");
            EXPECT_EQ(temp.contents("target"),
                      (Names{"empty/", "newer", "only", "other", "sub/", "sub/deep/", "sub/deep/file", "sub/older"}));
            // A folder that is moved in one piece takes its file along.
            EXPECT_EQ(report.files, moves ? files - 1 : files);
            EXPECT_EQ(report.folders, 2U);
            EXPECT_EQ(report.skipped, skipped);
            EXPECT_EQ(report.failureCount, failures);
            for (const Failure& failure : report.failures) EXPECT_EQ(failure.code, std::errc::file_exists);
            EXPECT_EQ(static_cast<bool>(report), failures == 0);
            EXPECT_EQ(
                temp.has("source") ? temp.contents("source") : Names{},
                moves ? left : (Names{"empty/", "newer", "only", "sub/", "sub/deep/", "sub/deep/file", "sub/older"}));
        }
}

TEST_F(TreeOperations, MakeANewTarget)
{
    makeSides();
    const auto far = temp.directory("a/b/c");
    std::vector<TreeProgress> steps;
    const TreeReport copied =
        copyTree(*temp.directory("source"), *far,
                 {.countFirst = true, .progress = [&](const auto& each) { steps.push_back(each); }});
    EXPECT_TRUE(copied);
    EXPECT_EQ(temp.contents("a/b/c"), temp.contents("source"));
    EXPECT_EQ(copied.files, 4U);
    EXPECT_EQ(copied.folders, 4U);
    EXPECT_EQ(copied.bytes, 59U);
    ASSERT_FALSE(steps.empty());
    EXPECT_EQ(steps.back().files, steps.back().totalFiles);
    EXPECT_EQ(steps.back().bytes, 59U);
    EXPECT_EQ(steps.back().totalBytes, 59U);
    EXPECT_EQ(lastWriteTime(*temp.file("a/b/c/sub/older")), now - std::chrono::hours(1));
    EXPECT_EQ(lastWriteTime(*temp.directory("a/b/c/sub")), lastWriteTime(*temp.directory("source/sub")));
    EXPECT_TRUE(
        copyTree(*temp.directory("source"), *temp.directory("plain"), {.keepPermissions = false, .keepTimes = false}));
    EXPECT_GE(lastWriteTime(*temp.file("plain/sub/older")), now - std::chrono::minutes(1));
    EXPECT_TRUE(moveTree(*far, *temp.directory("d/e")));
    EXPECT_EQ(temp.contents("d/e"), temp.contents("source"));
    EXPECT_EQ(temp.contents("a"), Names{"b/"});
}

TEST_F(TreeOperations, MoveOneFile)
{
    makeSides();
    const auto moved = [&](const char* from, const char* to, Overwrite overwrite = Overwrite::Never)
    { return moveFile(*temp.file(from), *temp.file(to), {.overwrite = overwrite}).isDone(); };
    EXPECT_TRUE(moved("source/newer", "new/way/file"));
    EXPECT_EQ(temp.read("new/way/file"), "source/newer");
    EXPECT_FALSE(temp.has("source/newer"));
    EXPECT_FALSE(moved("new/way/file", "target/newer"));
    EXPECT_TRUE(moved("new/way/file", "target/newer", Overwrite::Always));
    EXPECT_EQ(temp.read("target/newer"), "source/newer");
    EXPECT_FALSE(moved("target/newer", "target/newer", Overwrite::Always));
    EXPECT_FALSE(moved("source/sub", "file"));
    EXPECT_FALSE(moved("source/only", "target/sub", Overwrite::Always));
    EXPECT_FALSE(moved("missing", "file"));
    EXPECT_FALSE(moved("source/only", "source/only/below"));
    EXPECT_EQ(temp.read("source/only"), "source/only");
    EXPECT_TRUE(moved("source/only", "source/ONLY"));
    EXPECT_EQ(temp.read("source/ONLY"), "source/only");
}

TEST_F(TreeOperations, RefuseWhatMakesNoSense)
{
    makeSides();
    temp.write("target/file/in/the/way");
    temp.write("source/file");
    std::filesystem::remove_all(temp.path("target/sub"));
    temp.write("target/sub", "a file where a folder is to be");
    const World before = worldIn(temp);
    const auto expectRefused = [&](const char* source, const char* target)
    {
        for (const auto& act : {&copyTree, &moveTree})
        {
            const TreeReport report =
                act(*temp.directory(source), *temp.directory(target), {.overwrite = Overwrite::Always});
            EXPECT_EQ(report.failureCount, 1U) << source << " to " << target;
            EXPECT_EQ(worldIn(temp), before);
        }
    };
    expectRefused("source", "source");
    expectRefused("source", "source/sub/../../source");
    expectRefused("source", "source/sub/new");
    expectRefused("source", "target/other");
    expectRefused("source", "target/other/below");
    expectRefused("missing", "target");
    expectRefused("source/only", "target");
    // A source in the target is no place to fill up.
    EXPECT_EQ(copyTree(*temp.directory("source/sub"), *temp.directory("source")).failureCount, 0U);
    temp.write("source/sub/sub/below");
    EXPECT_EQ(copyTree(*temp.directory("source/sub"), *temp.directory("source"), {.overwrite = Overwrite::IfNewer})
                  .failures.at(0)
                  .code.value(),
              87);
    makeSides();
    EXPECT_EQ(removeTree(*temp.directory("source/only")).failures.at(0).code.value(), 267);
    EXPECT_EQ(removeTree(*Directory::fromPath(temp.path().root_path())).failures.at(0).code.value(), 87);
    EXPECT_TRUE(removeTree(*temp.directory("missing/too")));
    const MemoryFileSystem memory;
    EXPECT_EQ(copyTree(*Directory::fromString("mem:a"), *temp.directory("new")).failures.at(0).code.value(), 50);
}

TEST_F(TreeOperations, RemoveAndCount)
{
    makeSides();
    temp.setReadOnly("source/sub/older", true);
    const TreeReport kept = removeTree(*temp.directory("source"));
    EXPECT_EQ(temp.contents("source"), (Names{"sub/", "sub/older"}));
    EXPECT_EQ(kept.failureCount, 1U);
    EXPECT_EQ(kept.failures.at(0).path, temp.file("source/sub/older")->getFullName());
    EXPECT_EQ(kept.failures.at(0).code.value(), 5);
    EXPECT_EQ(kept.files, 3U);
    EXPECT_EQ(kept.folders, 2U);
    EXPECT_EQ(copy({.overwrite = Overwrite::Always}).failureCount, 0U);
    // What it would replace is read-only by now.
    EXPECT_EQ(copy({.overwrite = Overwrite::Always}).failures.at(0).code.value(), 5);
    EXPECT_TRUE(copy({.overwrite = Overwrite::Always, .readOnlyToo = true}));
    EXPECT_TRUE(removeTree(*temp.directory("source"), {.readOnlyToo = true}));
    EXPECT_TRUE(removeTree(*temp.directory("target"), {.readOnlyToo = true}));
    EXPECT_EQ(temp.contents(), Names{});
}

TEST_F(TreeOperations, EndWhereTheyAreStopped)
{
    using Act = TreeReport (*)(const Directory&, const Directory&, const TreeOptions&);
    const std::string large(9 << 18, 'x');
    for (const Act act : {Act(&copyTree), Act(&moveTree)})
        for (const OnFailure onFailure : {OnFailure::GoOn, OnFailure::RollBack})
            for (const bool throws : {false, true})
                for (int step = 0, end = 1; step <= end; ++step)
                {
                    makeSides();
                    temp.write("source/large", large);
                    const World before = worldIn(temp);
                    std::stop_source stop;
                    if (step == 0) stop.request_stop();
                    int steps = 0;
                    const auto count = [&](const TreeProgress&)
                    {
                        if (++steps != step) return;
                        if (throws) throw std::runtime_error("enough");
                        stop.request_stop();
                    };
                    const TreeOptions options{.overwrite = Overwrite::Always,
                                              .onFailure = onFailure,
                                              .stop = stop.get_token(),
                                              .progress = count};
                    TreeReport report;
                    try
                    {
                        report = act(*temp.directory("source"), *temp.directory("target"), options);
                    }
                    catch (const std::runtime_error&)
                    {
                        report.isStopped = true;
                    }
                    end = std::max(end, steps);
                    const World after = worldIn(temp);
                    EXPECT_TRUE(report.isStopped || (steps <= step && report));
                    if (report.isStopped && onFailure == OnFailure::RollBack)
                    {
                        EXPECT_EQ(after, before) << step;
                    }
                    // Nothing is lost but what is replaced, and nothing is there by half.
                    const std::set<std::string> contents = contentsOf(after);
                    for (const std::string& each : contentsOf(below(before, "source")))
                        EXPECT_TRUE(contents.contains(each));
                    const std::set<std::string> known = contentsOf(before);
                    EXPECT_TRUE(std::ranges::includes(known, contents)) << step;
                }
}

}  // namespace

}  // namespace Oxa_1_1::test
