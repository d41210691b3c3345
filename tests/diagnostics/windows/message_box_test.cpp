// The buttons of the message box of a failed assertion, pressed by another process.

#include <gtest/gtest.h>

#include "tests/diagnostics/windows/child_program.h"

namespace Oxa_1_1
{

namespace
{

using test::ChildProgram;

struct BoxOfProcess
{
    DWORD process;
    HWND box;
};

BOOL CALLBACK takeBox(HWND window, LPARAM search)
{
    BoxOfProcess& sought = *reinterpret_cast<BoxOfProcess*>(search);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != sought.process || !IsWindowVisible(window)) return TRUE;
    sought.box = window;
    return FALSE;
}

/// The box that a program shows, with its buttons; null when it ends without one.
HWND waitForBox(const ChildProgram& program, int button)
{
    BoxOfProcess sought{program.id(), nullptr};
    while (!program.endsWithin(50))
    {
        EnumWindows(takeBox, reinterpret_cast<LPARAM>(&sought));
        if (sought.box && GetDlgItem(sought.box, button)) return sought.box;
    }
    return nullptr;
}

/// What is pressed in the first box. A place that is passed over is not asked about again.
struct Answer
{
    int button;
    DWORD exitCode;
    const char* printed;
};

class MessageBoxOfAssertion : public testing::TestWithParam<Answer>
{
};

TEST_P(MessageBoxOfAssertion, DoesAsItsButtonSays)
{
    const Answer& answer = GetParam();
    const ChildProgram program("diagnostics_ask.exe");
    ASSERT_TRUE(program.runs());
    const HWND box = waitForBox(program, answer.button);
    ASSERT_NE(box, nullptr);
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(answer.button), 0);
    ASSERT_TRUE(program.endsWithin(60000));
    EXPECT_EQ(program.exitCode(), answer.exitCode);
    EXPECT_EQ(program.printed(), answer.printed);
}

INSTANTIATE_TEST_SUITE_P(Buttons, MessageBoxOfAssertion,
                         testing::Values(Answer{IDIGNORE, 0, "round 0\r\nround 1\r\nend\r\n"},
                                         Answer{IDABORT, 3, "round 0\r\n"}));

}  // namespace

}  // namespace Oxa_1_1
