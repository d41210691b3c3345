// Every system call of an operation fails once, or finds a folder exchanged for a link: a result never says more than
// was done, nothing is lost, and nothing changes outside.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

#include "base/filesystem/failure.h"
#include "base/filesystem/safe_writer.h"
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

void makeWorld(const TempFolder& temp)
{
    makeEmpty(temp);
    for (const char* const file : {"source/a", "source/b/c", "source/b/d/e", "source/b/f", "outside/x", "outside/y/z",
                                   "target/old", "target/b/old", "single", "other"})
        temp.write(file, file);
    temp.makeFolder("source/empty");
    temp.setReadOnly("source/b/f", true);
    fs::create_symlink("a", temp.path("source/link"));
    fs::create_symlink("../outside/y", temp.path("source/way"));
    fs::create_symlink("other", temp.path("link"));
    fs::create_symlink("outside", temp.path("decoy"));
    fs::create_symlink("nowhere", temp.path("lost"));
    fs::create_symlink("nothing", temp.path("gone"));
}

const TreeOptions KEEP_GOING;
const TreeOptions ALL_OR_NOTHING{.onFailure = OnFailure::RollBack};
const TreeOptions REPLACING{.overwrite = Overwrite::Always, .onFailure = OnFailure::RollBack};

using Act = bool (*)(const TempFolder&);

/// What may be lost in a failure, besides what `act` says that it did.
struct Operation
{
    const char* name;
    Act act;
    /// A failure changes nothing at all.
    bool isAtomic = false;
    /// Below these, whatever happens.
    const char* unchanged = "outside";
    const char* maybeLost = "nothing";
};

void PrintTo(const Operation& operation, std::ostream* stream) { *stream << operation.name; }

bool save(const TempFolder& temp, const char* name)
{
    SafeWriter writer(*temp.file(name));
    writer.stream() << "saved";
    return writer.commit();
}

bool isAllSeen(const TempFolder& temp, bool followLinks, std::size_t count)
{
    TreeWalk walk(*temp.directory("source"), {.followLinks = followLinks});
    std::set<String> names;
    for (const WalkEntry& entry : walk) names.insert(entry.fullName());
    EXPECT_TRUE(!walk.isWhole() || names.size() == count);
    return walk.isWhole();
}

constexpr std::array OPERATIONS{
    Operation{"copy a file", [](const TempFolder& t) { return t.file("single")->copy(*t.file("new"), false, {}) == 0; },
              true},
    Operation{"replace a file",
              [](const TempFolder& t) { return t.file("single")->copy(*t.file("other"), true, {}) == 0; }, true},
    Operation{"replace behind a link",
              [](const TempFolder& t) { return t.file("single")->copy(*t.file("link"), true, {}) == 0; }, true},
    Operation{"replace a lost link",
              [](const TempFolder& t) { return t.file("lost")->copy(*t.file("gone"), true, {}) == 0; }, true},
    Operation{"move a file", [](const TempFolder& t) { return t.file("single")->move(*t.file("new"), false); }, true},
    Operation{"move over a file", [](const TempFolder& t) { return t.file("single")->move(*t.file("other"), true); },
              true},
    Operation{"save a file", [](const TempFolder& t) { return save(t, "other"); }, true},
    Operation{"save a new file", [](const TempFolder& t) { return save(t, "new"); }, true},
    Operation{"save behind a link", [](const TempFolder& t) { return save(t, "link"); }, true},
    Operation{"remove a file", [](const TempFolder& t) { return t.file("single")->remove(); }, true},
    Operation{"touch a file", [](const TempFolder& t) { return t.file("new")->touch(); }},
    Operation{"measure",
              [](const TempFolder& t)
              {
                  unsigned long long bytes = 0;
                  unsigned long long more = 0;
                  if (!t.directory("source")->size(bytes) || !t.file("link")->size(more)) return false;
                  EXPECT_EQ(bytes + more, 59 + 5);
                  return true;
              },
              true},
    Operation{"copy a folder",
              [](const TempFolder& t)
              { return t.directory("source")->copy(*t.directory("target"), false, {}) != nullptr; },
              false, "source"},
    Operation{"copy contents",
              [](const TempFolder& t)
              { return t.directory("source")->copyContents(*t.directory("target"), true, false, {}); },
              false, "source"},
    Operation{"move a folder",
              [](const TempFolder& t) { return t.directory("source")->move(*t.directory("new"), false); }},
    Operation{"merge folders",
              [](const TempFolder& t) { return t.directory("source")->move(*t.directory("target"), false); }},
    Operation{"move over a folder",
              [](const TempFolder& t) { return t.directory("source")->move(*t.directory("target"), true); }, false,
              "outside", "target"},
    Operation{"move into itself",
              [](const TempFolder& t) { return t.directory("source")->move(*t.directory("source/b"), true); }, true},
    Operation{"move a link over its place",
              [](const TempFolder& t) { return t.directory("source/way")->move(*t.directory("outside"), true); }, true},
    Operation{"remove a folder",
              [](const TempFolder& t)
              {
                  t.file("source/b/f")->unsetAsReadOnly();
                  return t.directory("source")->remove(true);
              },
              false, "outside", "source"},
    Operation{"fill a folder",
              [](const TempFolder& t)
              { return copyTree(*t.directory("source"), *t.directory("target"), KEEP_GOING).isDone(); },
              false, "source"},
    Operation{"fill a folder or leave it",
              [](const TempFolder& t)
              { return copyTree(*t.directory("source"), *t.directory("target"), ALL_OR_NOTHING).isDone(); },
              true},
    Operation{"make a new tree",
              [](const TempFolder& t)
              { return copyTree(*t.directory("source"), *t.directory("new/copy"), ALL_OR_NOTHING).isDone(); },
              true},
    Operation{"join folders", [](const TempFolder& t)
              { return moveTree(*t.directory("source"), *t.directory("target"), KEEP_GOING).isDone(); }},
    Operation{"join folders or stop", [](const TempFolder& t)
              { return moveTree(*t.directory("source"), *t.directory("target"), ALL_OR_NOTHING).isDone(); }},
    Operation{"empty a folder into another",
              [](const TempFolder& t)
              { return moveTree(*t.directory("source/b/d"), *t.directory("target"), ALL_OR_NOTHING).isDone(); },
              true},
    Operation{"rename a folder",
              [](const TempFolder& t)
              { return moveTree(*t.directory("source"), *t.directory("new/place"), ALL_OR_NOTHING).isDone(); },
              true},
    Operation{"put a file aside",
              [](const TempFolder& t) { return moveFile(*t.file("single"), *t.file("other"), REPLACING).isDone(); },
              true},
    Operation{"clear a folder",
              [](const TempFolder& t) { return removeTree(*t.directory("source"), {.readOnlyToo = true}).isDone(); },
              false, "outside", "source"},
    Operation{"walk", [](const TempFolder& t) { return isAllSeen(t, false, 9) && isAllSeen(t, true, 10); }, true},
    Operation{"list",
              [](const TempFolder& t)
              {
                  const auto all = t.directory("source")->collectContents("*", true);
                  EXPECT_TRUE(!Directory::isLastListWhole() || all.size() == 10);
                  if (!Directory::isLastListWhole()) return false;
                  const auto folders = t.directory("source")->collectDirectories("*", false);
                  EXPECT_TRUE(!Directory::isLastListWhole() || folders.size() == 3);
                  return Directory::isLastListWhole();
              },
              true},
    Operation{"empty a folder", [](const TempFolder& t) { return !t.directory("target")->removeContents(true); }, false,
              "outside", "target"},
};

/// More with an environment variable.
std::span<const int> errors()
{
    static constexpr std::array ALL{EACCES, EIO, EMFILE, ENOSPC, ENOMEM, EINTR, EPERM, EBUSY};
    return std::span(ALL).first(std::getenv("OXA_TEST_LONG") != nullptr ? ALL.size() : 2);
}

class FailingCalls : public testing::TestWithParam<Operation>
{
   protected:
    /// Whether the operation claims success, and the number of its calls.
    std::pair<bool, int> run(const SystemCalls::Before& before, std::string* failed = nullptr)
    {
        SystemCalls calls(before);
        const bool result = GetParam().act(temp);
        if (failed != nullptr) *failed = calls.failed();
        return {result, calls.count()};
    }

    const TempFolder temp;
    Messages messages;
};

INSTANTIATE_TEST_SUITE_P(Operations, FailingCalls, testing::ValuesIn(OPERATIONS),
                         [](const auto& parameter)
                         {
                             std::string name = parameter.param.name;
                             std::ranges::replace(name, ' ', '_');
                             return name;
                         });

TEST_P(FailingCalls, AreNotKeptSecret)
{
    const Operation& operation = GetParam();
    makeWorld(temp);
    const World before = worldIn(temp);
    const auto [isDone, calls] = run([](int) { return 0; });
    const World done = worldIn(temp);
    World after = done;
    for (int number = 1; number <= calls; ++number)
        for (const int error : errors())
        {
            if (after != before) makeWorld(temp);
            std::string failed;
            const bool result = run([&](int call) { return call == number ? error : 0; }, &failed).first;
            SCOPED_TRACE("call " + std::to_string(number) + " of " + std::to_string(calls) + ", " + failed + ": " +
                         std::strerror(error));
            after = worldIn(temp);
            World told = after;
            // What cannot be removed to make place is told by a message, and stays.
            if (std::string_view(operation.maybeLost) == "target")
            {
                std::erase_if(told, [&](const auto& e) { return before.contains(e.first) && !done.contains(e.first); });
            }
            if (result)
            {
                EXPECT_EQ(told, isDone ? done : before);
            }
            if (!result && operation.isAtomic)
            {
                EXPECT_EQ(after, before);
            }
            for (const char* const part : {"outside", operation.unchanged})
                EXPECT_EQ(below(after, part), below(before, part));
            std::set<std::string> expected = contentsOf(before);
            for (const auto& content : contentsOf(below(before, operation.maybeLost))) expected.erase(content);
            if (!result)
            {
                EXPECT_TRUE(std::ranges::includes(contentsOf(after), expected));
            }
            if (HasFailure()) return;
        }
}

// Not what followed from it.
TEST(FailingCall, IsTheReasonThatIsTold)
{
    const TempFolder temp;
    Messages messages;
    const std::array<Act, 3> acts{
        [](const TempFolder& t) { return t.file("single")->copy(*t.file("other"), true, {}) == 0; },
        [](const TempFolder& t) { return t.directory("source/b")->copy(*t.directory("target"), true, {}) != nullptr; },
        [](const TempFolder& t) { return t.directory("source/b")->move(*t.directory("target"), true); }};
    for (const Act act : acts)
        for (int number = 1;; ++number)
        {
            makeWorld(temp);
            SystemCalls failing([&](int call) { return call == number ? EIO : 0; });
            forgetFailure();
            const bool isDone = act(temp);
            if (failing.count() < number) break;
            if (isDone) continue;
            EXPECT_EQ(lastFailure()->code, std::errc::io_error) << number << ": " << failing.failed();
        }
}

TEST_P(FailingCalls, FindNoWayOutsideThroughExchangedFolders)
{
    const std::string name = GetParam().name;
    if (name.starts_with("copy") || name.find("folder") == std::string::npos) return;
    makeWorld(temp);
    const World before = below(worldIn(temp), "outside");
    const int calls = run([](int) { return 0; }).second;
    const std::string decoy = temp.path("decoy").string();
    for (const char* const folder : {"source/b", "target/b", "source/b/d"})
        for (int number = 1; number <= calls; ++number)
        {
            makeWorld(temp);
            const std::string exchanged = temp.path(folder).string();
            run(
                [&](int call)
                {
                    // A link that leads to the same from everywhere.
                    if (call == 1) fs::remove(decoy), fs::create_symlink(temp.path("outside"), decoy);
                    if (call == number)
                        renameat2(AT_FDCWD, exchanged.c_str(), AT_FDCWD, decoy.c_str(), RENAME_EXCHANGE);
                    return 0;
                });
            World after = below(worldIn(temp), "outside");
            // What is merged into a folder that is a link by then goes where that leads.
            if (name.starts_with("merge"))
                std::erase_if(after, [&](const auto& e) { return !before.contains(e.first); });
            EXPECT_EQ(after, before) << folder << " before call " << number;
            if (HasFailure()) return;
        }
}

// From a few calls on, the target has been looked at, and then it is that one or none.
TEST(ReplacingMove, DoesNotGoWhereAnExchangedTargetLeads)
{
    const TempFolder temp;
    Messages messages;
    for (int number = 10; number < 40; ++number)
    {
        makeWorld(temp);
        temp.write("outside/a", "another");
        SystemCalls calls(
            [&](int call)
            {
                if (call == number)
                    renameat2(AT_FDCWD, temp.path("target").c_str(), AT_FDCWD, temp.path("decoy").c_str(),
                              RENAME_EXCHANGE);
                return 0;
            });
        temp.directory("source")->move(*temp.directory("target"), true);
        EXPECT_EQ(temp.read("outside/a"), "another") << "before call " << number;
    }
}

// What goes then is the target, not what somebody has put in its place.
TEST(FailedCopy, RemovesNoFolderInThePlaceOfItsTarget)
{
    const TempFolder temp;
    Messages messages;
    for (int number = 1; number < 80; ++number)
    {
        makeWorld(temp);
        temp.write("target/source/a", "in the way");
        int left = number;
        SystemCalls calls(
            [&](int)
            {
                const bool hasBegun = left != number || temp.has("target/source/b");
                if (hasBegun && --left == 0)
                    renameat2(AT_FDCWD, temp.path("target/source").c_str(), AT_FDCWD, temp.path("outside").c_str(),
                              RENAME_EXCHANGE);
                return 0;
            });
        EXPECT_EQ(temp.directory("source")->copy(*temp.directory("target"), false, {}), nullptr);
        EXPECT_TRUE(temp.has("outside/x") || temp.has("target/source/x")) << "after call " << number;
    }
}

}  // namespace

}  // namespace Oxa_1_1::test
