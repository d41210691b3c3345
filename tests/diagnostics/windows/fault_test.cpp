// Walks that begin at a fault, and walks of other processes.

#include <gtest/gtest.h>

#include "tests/diagnostics/stack_samples.h"

namespace Oxa_1_1
{

namespace
{

using test::RecordingWalker;

RecordingWalker* faultWalker = nullptr;

LONG CALLBACK onFault(EXCEPTION_POINTERS* fault)
{
    constexpr DWORD OURS = 0xE0001234;
    if (fault->ExceptionRecord->ExceptionCode != OURS) return EXCEPTION_CONTINUE_SEARCH;
    const CONTEXT context = StackWalker::contextOfFault(fault);
    faultWalker->ShowCallstack(nullptr, &context);
    return EXCEPTION_CONTINUE_EXECUTION;
}

TEST(StackWalkerFault, WalksFromTheRegistersOfAnException)
{
    RecordingWalker walker;
    faultWalker = &walker;
    void* const handler = AddVectoredExceptionHandler(1, onFault);
    auto work = [] { RaiseException(0xE0001234, 0, 0, nullptr); };
    test::knownFunction<12>(work);
    RemoveVectoredExceptionHandler(handler);
    EXPECT_EQ(walker.framesNamed("knownFunction<").size(), 12U);
    EXPECT_TRUE(walker.framesNamed("onFault").empty());
}

TEST(StackWalkerFault, WalksAnotherProcess)
{
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    char command[] = "cmd.exe /c pause";
    ASSERT_NE(CreateProcessA(nullptr, command, nullptr, nullptr, FALSE, CREATE_NEW_CONSOLE, nullptr, nullptr, &startup,
                             &process),
              0);
    Sleep(1000);
    RecordingWalker walker(StackWalker::AllOptions, nullptr, process.dwProcessId, process.hProcess);
    EXPECT_TRUE(walker.ShowCallstack(process.hThread));
    EXPECT_GE(walker.frames.size(), 2U);
    EXPECT_GE(walker.modules.size(), 2U);
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, 10000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

}  // namespace

}  // namespace Oxa_1_1
