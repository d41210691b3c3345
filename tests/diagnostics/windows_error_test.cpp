#include "base/diagnostics/windows_error.h"

#include <gtest/gtest.h>

#include "base/diagnostics/stack_walker.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

TEST(WindowsError, CodesWithoutATextAreShownAsNumbers)
{
    EXPECT_TRUE(getWindowsError(0).compareEquality(String::EMPTY));
    EXPECT_EQ(getWindowsError(0x20000001), OXA_TEXT("[0x20000001]"));
    EXPECT_EQ(getWindowsError(0xFFFFFFFF), OXA_TEXT("[0xffffffff]"));
    EXPECT_EQ(getWindowsError(0x2000ABCD), OXA_TEXT("[0x2000abcd]"));
}

TEST(WindowsError, KnownCodesHaveATextWithoutALineBreakAtItsEnd)
{
    for (const unsigned long code : {2UL, 3UL, 5UL, 6UL, 8UL, 19UL, 32UL, 80UL, 87UL, 112UL, 145UL, 183UL, 206UL})
    {
        const String text = getWindowsError(code);
        EXPECT_GT(text.length(), 3) << code;
        EXPECT_FALSE(text.startsWith(OXA_TEXT("[0x"))) << code;
        EXPECT_FALSE(text.endsWith(OXA_TEXT("\n")) || text.endsWith(OXA_TEXT("\r"))) << code;
    }
}

TEST(WindowsError, TheLastErrorIsThatOfTheThread)
{
    // Memory at address 0 cannot be read.
    char byte = 0;
    DWORD count = 1;
    ASSERT_FALSE(StackWalker::myReadProcMem(nullptr, 0, &byte, 1, &count, nullptr));
    EXPECT_EQ(count, 0U);
    EXPECT_GT(getWindowsError().length(), 3);
}

}  // namespace

}  // namespace Oxa_1_1
