// Walks that begin at a fault, and walks of other processes.

#include <gtest/gtest.h>

#include "base/platform/windows/windows_api.h"
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
    std::string command(MAX_PATH, 0);
    command.resize(GetModuleFileNameA(nullptr, command.data(), MAX_PATH));
    command.replace(command.find_last_of('\\') + 1, std::string::npos, "diagnostics_wait.exe");
    ASSERT_NE(CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process),
              0);
    // Until it sleeps where it is to be found.
    for (int attempt = 1;; ++attempt)
    {
        Sleep(500);
        RecordingWalker walker(StackWalker::AllOptions, nullptr, process.dwProcessId, process.hProcess);
        const bool isWalked = walker.ShowCallstack(process.hThread) != 0;
        if (walker.framesNamed("knownFunction<").size() != 9U && attempt < 60) continue;
        EXPECT_TRUE(isWalked);
        EXPECT_EQ(walker.framesNamed("knownFunction<").size(), 9U);
        EXPECT_GE(walker.modules.size(), 3U);
        for (const auto& error : walker.errors) ADD_FAILURE() << error.text << " " << error.code;
        break;
    }
    // The number of the process is enough.
    RecordingWalker byNumber(StackWalker::AllOptions, nullptr, process.dwProcessId);
    EXPECT_TRUE(byNumber.ShowCallstack(process.hThread));
    EXPECT_EQ(byNumber.framesNamed("knownFunction<").size(), 9U);
    TerminateProcess(process.hProcess, 0);
    WaitForSingleObject(process.hProcess, 10000);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

}  // namespace

}  // namespace Oxa_1_1
