// Walks that begin at a fault, and walks of other processes.

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <string>
#include <thread>

#include "tests/diagnostics/stack_samples.h"

extern "C" int fork();
extern "C" int getpid();
extern "C" int waitpid(int process, int* status, int options);

namespace Oxa_1_1
{

namespace
{

using test::RecordingWalker;

CONTEXT faultContext;
int framesInHandler = 0;
std::atomic<bool> hasFault{false};
std::atomic<bool> isWalked{false};

/// Keeps the thread at its fault until another one has looked at it.
void onFault(int, siginfo_t*, void* signalContext)
{
    static void* addresses[256];
    framesInHandler = StackWalker::captureFrames(addresses, 256);
    faultContext = StackWalker::contextOfFault(signalContext);
    hasFault = true;
    while (!isWalked) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

TEST(StackWalkerFault, AnotherThreadWalksFromTheRegistersOfASignal)
{
    struct sigaction action = {};
    struct sigaction former = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO;
    ASSERT_EQ(sigaction(SIGUSR1, &action, &former), 0);
    RecordingWalker walker;
    std::thread reporter(
        [&]
        {
            while (!hasFault) std::this_thread::yield();
            EXPECT_TRUE(walker.ShowCallstack(nullptr, &faultContext));
            isWalked = true;
        });
    auto fail = [] { std::raise(SIGUSR1); };
    test::knownFunction<12>(fail);
    reporter.join();
    sigaction(SIGUSR1, &former, nullptr);
    EXPECT_EQ(walker.framesNamed("knownFunction<").size(), 12U);
    EXPECT_TRUE(walker.framesNamed("onFault").empty());
    // The handler's own stack goes on through the frame that the system made.
    EXPECT_GT(framesInHandler, 12 + 2);
}

TEST(StackWalkerFault, ACallOfNothingIsSeenWhereItHappened)
{
    RecordingWalker walker;
    CONTEXT context{};
    // As the processor leaves it after a call through a null pointer: the return address lies on top of the stack.
    static std::uint64_t stack[64] = {};
    const auto code = reinterpret_cast<std::uintptr_t>(&test::knownFunction<3, void (*)()>);
    stack[0] = code + 8;
    context.Rip = 0;
    context.Rsp = reinterpret_cast<std::uintptr_t>(stack);
    EXPECT_TRUE(walker.ShowCallstack(nullptr, &context));
    ASSERT_GE(walker.frames.size(), 2U);
    EXPECT_EQ(walker.frames[0].address, 0U);
    EXPECT_NE(walker.frames[1].fullName.find("knownFunction<3"), std::string::npos);
}

TEST(StackWalkerFault, AThreadThatBlocksAllSignalsIsGivenUp)
{
    std::atomic<HANDLE> handle{nullptr};
    std::atomic<bool> stop{false};
    std::thread thread(
        [&]
        {
            sigset_t all;
            sigfillset(&all);
            pthread_sigmask(SIG_SETMASK, &all, nullptr);
            handle = StackWalker::openCurrentThread();
            while (!stop) std::this_thread::yield();
        });
    while (handle.load() == nullptr) std::this_thread::yield();
    RecordingWalker walker(StackWalker::AddressesOnly);
    EXPECT_FALSE(walker.ShowCallstack(handle));
    ASSERT_EQ(walker.errors.size(), 1U);
    EXPECT_EQ(walker.errors[0].code, 1460U);
    stop = true;
    thread.join();
}

void walkAndLeave(int)
{
    void* addresses[64];
    std::_Exit(StackWalker::captureFrames(addresses, 64) > 0 ? 0 : 1);
}

TEST(StackWalkerFault, ACorruptStackEndsTheWalkOfItsHandler)
{
    const int child = fork();
    if (child == 0)
    {
        static char stack[1 << 16];
        stack_t own = {};
        own.ss_sp = stack;
        own.ss_size = sizeof stack;
        sigaltstack(&own, nullptr);
        struct sigaction action = {};
        action.sa_handler = walkAndLeave;
        action.sa_flags = SA_ONSTACK;
        sigaction(SIGSEGV, &action, nullptr);
        asm volatile("movq $64, %rsp\n\tpushq %rax");
        std::_Exit(2);
    }
    ASSERT_GT(child, 0);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(StackWalkerFault, AForkedChildWalksItself)
{
    for (const bool byHandle : {false, true})
    {
        const HANDLE self = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(byHandle ? -1 : 0));
        RecordingWalker walker(StackWalker::AllOptions, nullptr, static_cast<DWORD>(getpid()), self);
        const int child = fork();
        if (child == 0)
        {
            auto walk = [&] { walker.ShowCallstack(); };
            test::knownFunction<7>(walk);
            std::_Exit(walker.framesNamed("knownFunction<").size() == 7 ? 0 : 1);
        }
        ASSERT_GT(child, 0);
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
}

/// Walks another process, whose handle is its number.
class OtherProcessWalker : public RecordingWalker
{
   public:
    OtherProcessWalker(int process, int options) : RecordingWalker(options, nullptr, static_cast<DWORD>(process)) {}
};

TEST(StackWalkerFault, WalksAnotherProcess)
{
    const int child = fork();
    if (child == 0)
    {
        auto wait = [] { std::this_thread::sleep_for(std::chrono::seconds(60)); };
        test::knownFunction<9>(wait);
        std::_Exit(0);
    }
    ASSERT_GT(child, 0);
    // Until it sleeps.
    for (std::string state; state != "S" && state != "Z";)
    {
        std::ifstream status("/proc/" + std::to_string(child) + "/stat");
        std::string skipped;
        status >> skipped >> skipped >> state;
    }
    OtherProcessWalker walker(child, StackWalker::AllOptions);
    EXPECT_TRUE(walker.ShowCallstack());
    const auto known = walker.framesNamed("knownFunction<");
    EXPECT_EQ(known.size(), 9U);
    for (const auto& frame : known) EXPECT_TRUE(frame.file.ends_with("stack_samples.h")) << frame.file;
    EXPECT_GE(walker.modules.size(), 3U);
    EXPECT_TRUE(walker.errors.empty());

    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    OtherProcessWalker late(child, StackWalker::AllOptions);
    EXPECT_FALSE(late.LoadModules());
    EXPECT_FALSE(late.ShowCallstack());
    ASSERT_EQ(late.errors.size(), 2U);
    EXPECT_EQ(late.errors[0].code, 87U);
}

}  // namespace

}  // namespace Oxa_1_1
