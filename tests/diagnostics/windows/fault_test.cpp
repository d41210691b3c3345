// Walks that begin at a fault, and walks of other processes.

#include <gtest/gtest.h>

#include "tests/diagnostics/stack_samples.h"
#include "tests/diagnostics/windows/child_program.h"

namespace Oxa_1_1
{

namespace
{

using test::ChildProgram;
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
    const ChildProgram program("diagnostics_wait.exe");
    ASSERT_TRUE(program.runs());
    // Until it sleeps where it is to be found.
    for (int attempt = 1;; ++attempt)
    {
        Sleep(500);
        RecordingWalker walker(StackWalker::AllOptions, nullptr, program.id(), program.process());
        const bool isWalked = walker.ShowCallstack(program.thread()) != 0;
        if (walker.framesNamed("knownFunction<").size() != 9U && attempt < 60) continue;
        EXPECT_TRUE(isWalked);
        EXPECT_EQ(walker.framesNamed("knownFunction<").size(), 9U);
        EXPECT_GE(walker.modules.size(), 3U);
        for (const auto& error : walker.errors) ADD_FAILURE() << error.text << " " << error.code;
        break;
    }
    // The number of the process is enough.
    RecordingWalker byNumber(StackWalker::AllOptions, nullptr, program.id());
    EXPECT_TRUE(byNumber.ShowCallstack(program.thread()));
    EXPECT_EQ(byNumber.framesNamed("knownFunction<").size(), 9U);
}

}  // namespace

}  // namespace Oxa_1_1
