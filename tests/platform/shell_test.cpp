// What the desktop is asked for.

#include "base/platform/system/shell.h"

#include <gtest/gtest.h>

namespace Oxa_1_1::platform
{

namespace
{

ShellRequest received;
std::intptr_t answer = 0;

std::intptr_t receive(const ShellRequest& request)
{
    received = request;
    return answer;
}

class Shell : public testing::Test
{
   protected:
    Shell() { setShellHook(receive); }
    ~Shell() override { setShellHook(nullptr); }
};

TEST_F(Shell, Requests)
{
    answer = 33;
    EXPECT_TRUE(openWithDefaultApp(OXA_TEXT("C:\\a b.txt")));
    EXPECT_EQ(received.verb, nullptr);
    EXPECT_EQ(received.path, OXA_TEXT("C:\\a b.txt"));
    EXPECT_EQ(received.workingFolder, TextView(OXA_TEXT("%HOMEPATH%")));
    EXPECT_EQ(received.show, 1);
    EXPECT_FALSE(received.isSelection);

    EXPECT_TRUE(openFolderWindow(OXA_TEXT("C:\\d\\")));
    EXPECT_EQ(received.verb, TextView(OXA_TEXT("open")));
    EXPECT_EQ(received.path, OXA_TEXT("C:\\d\\"));
    EXPECT_EQ(received.workingFolder, nullptr);
    EXPECT_EQ(received.show, 10);
    EXPECT_FALSE(received.isSelection);

    EXPECT_TRUE(showInFolder(OXA_TEXT("\\\\?\\C:\\f")));
    EXPECT_EQ(received.path, OXA_TEXT("\\\\?\\C:\\f"));
    EXPECT_TRUE(received.isSelection);
}

TEST_F(Shell, Results)
{
    for (const std::intptr_t result : {0, 2, 31, 32, 33, 1000})
    {
        answer = result;
        EXPECT_EQ(openWithDefaultApp(OXA_TEXT("f")), result >= 32) << result;
        EXPECT_EQ(openFolderWindow(OXA_TEXT("f")), result > 32) << result;
        EXPECT_EQ(showInFolder(OXA_TEXT("f")), result > 32) << result;
    }
}

}  // namespace

}  // namespace Oxa_1_1::platform
