// System calls that signals interrupt.

#include <gtest/gtest.h>
#include <sys/time.h>

#include <csignal>

#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

/// A signal every half a millisecond, after which system calls do not go on by themselves.
class SignalStorm
{
   public:
    SignalStorm()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) {};
        sigaction(SIGALRM, &action, &m_former);
        setInterval(500);
    }
    SignalStorm(const SignalStorm&) = delete;
    SignalStorm& operator=(const SignalStorm&) = delete;
    ~SignalStorm()
    {
        setInterval(0);
        sigaction(SIGALRM, &m_former, nullptr);
    }

   private:
    static void setInterval(int microseconds)
    {
        const struct itimerval interval = {{0, microseconds}, {0, microseconds}};
        setitimer(ITIMER_REAL, &interval, nullptr);
    }

    struct sigaction m_former = {};
};

TEST(Signals, DoNotDisturb)
{
    const TempFolder temp;
    Messages messages;
    const std::string large(8 << 20, 'x');
    temp.write("tree/large", large);
    for (int i = 0; i < 100; ++i) temp.write("tree/" + std::to_string(i % 10) + "/" + std::to_string(i), "content");
    const Names all = temp.contents("tree");
    temp.makeFolder("copies");
    const auto tree = temp.directory("tree");
    const auto copied = temp.directory("copies/tree");
    const auto moved = temp.directory("moved");
    {
        const SignalStorm storm;
        EXPECT_EQ(tree->collectContents("*", true).size(), all.size());
        EXPECT_NE(tree->copy(*temp.directory("copies"), false, nullptr), nullptr);
        EXPECT_TRUE(copied->move(*moved, false));
    }
    EXPECT_EQ(temp.contents("moved"), all);
    EXPECT_EQ(temp.read("moved/large"), large);
    {
        const SignalStorm storm;
        EXPECT_TRUE(moved->remove(true));
    }
    EXPECT_EQ(temp.contents("copies"), Names{});
    EXPECT_FALSE(temp.has("moved"));
    EXPECT_TRUE(messages.take().empty());
}

}  // namespace

}  // namespace Oxa_1_1::test
