// A process that ends at once, in the middle of work on a tree.

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <map>

#include "base/platform/files/file_observer.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

constexpr int KILLED = 9;

/// Ends the process before the nth change on disk; counts them when there are fewer.
class Killer final : public platform::FileObserver
{
   public:
    explicit Killer(int change) : m_change(change), m_former(platform::setFileObserver(this)) {}
    ~Killer() override { platform::setFileObserver(m_former); }

    std::optional<DWORD> called(std::string_view operation, TextView /*path*/, TextView /*target*/) override
    {
        constexpr std::array<std::string_view, 5> CHANGES = {"renameFile", "createFolder", "removeFolder", "deleteFile",
                                                             "copyFile"};
        if (std::ranges::find(CHANGES, operation) != CHANGES.end() && ++changes == m_change) std::_Exit(KILLED);
        return std::nullopt;
    }

    int changes = 0;

   private:
    int m_change;
    platform::FileObserver* m_former;
};

using Contents = std::map<std::string, std::string>;

/// The files below a folder.
Contents filesIn(const TempFolder& temp, const std::string& folder)
{
    Contents contents;
    if (!temp.has(folder)) return contents;
    for (const auto& name : temp.contents(folder))
        if (!name.ends_with('/')) contents[name] = temp.read(folder + "/" + name);
    return contents;
}

void prepare(const TempFolder& temp)
{
    for (const char* const folder : {"source", "target"}) std::filesystem::remove_all(temp.path(folder));
    for (const char* const file : {"a", "b/c", "b/d/e"}) temp.write("source/" + std::string(file), file);
    temp.makeFolder("source/empty");
    temp.write("target/source/b/old", "old");
}

class KilledDeathTest : public testing::Test
{
   protected:
    /// Calls `check` after each way to be killed. It is called by the process to be killed, too: nobody looks at that.
    template <class Act, class Check>
    void killEverywhere(const Act& act, const Check& check)
    {
        prepare(temp);
        int changes = 0;
        {
            const Killer counter(-1);
            act();
            changes = counter.changes;
        }
        ASSERT_GE(changes, 3);
        for (int change = 1; change <= changes; ++change)
        {
            SCOPED_TRACE(change);
            prepare(temp);
            const auto actKilled = [&]
            {
                const Killer killer(change);
                act();
            };
            EXPECT_EXIT(actKilled(), testing::ExitedWithCode(KILLED), "");
            check();
        }
    }

    const TempFolder temp;
};

TEST_F(KilledDeathTest, MovesGoOnWhereTheyEnded)
{
    const auto act = [&] { return temp.directory("source")->move(*temp.directory("target/source"), false); };
    prepare(temp);
    const Contents all = filesIn(temp, "source");
    killEverywhere(act,
                   [&]
                   {
                       Contents both = filesIn(temp, "target/source");
                       const std::size_t moved = both.size() - both.erase("b/old");
                       const Contents left = filesIn(temp, "source");
                       EXPECT_EQ(moved + left.size(), all.size());
                       both.insert(left.begin(), left.end());
                       EXPECT_EQ(both, all);
                       EXPECT_TRUE(act());
                       EXPECT_FALSE(temp.has("source"));
                       Contents target = filesIn(temp, "target/source");
                       EXPECT_EQ(target.erase("b/old"), 1U);
                       EXPECT_EQ(target, all);
                   });
}

TEST_F(KilledDeathTest, CopiesLeaveTheSourceAndCanBeRepeated)
{
    const auto act = [&] { return temp.directory("source")->copy(*temp.directory("target"), true, nullptr); };
    prepare(temp);
    const Contents all = filesIn(temp, "source");
    killEverywhere(act,
                   [&]
                   {
                       EXPECT_EQ(filesIn(temp, "source"), all);
                       EXPECT_NE(act(), nullptr);
                       Contents target = filesIn(temp, "target/source");
                       EXPECT_EQ(target.erase("b/old"), 1U);
                       EXPECT_EQ(target, all);
                       EXPECT_EQ(filesIn(temp, "source"), all);
                   });
}

}  // namespace

}  // namespace Oxa_1_1::test
