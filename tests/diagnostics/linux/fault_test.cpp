// Walks that begin at a fault, and walks of other processes.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <fstream>
#include <thread>

#include "tests/diagnostics/stack_samples.h"

extern "C" int fork();
extern "C" int waitpid(int process, int* status, int options);

namespace Oxa_1_1
{

namespace
{

using test::RecordingWalker;

RecordingWalker* faultWalker = nullptr;
int framesInHandler = 0;

void onFault(int, siginfo_t*, void* signalContext)
{
    static void* addresses[256];
    framesInHandler = StackWalker::captureFrames(addresses, 256);
    const CONTEXT context = StackWalker::contextOfFault(signalContext);
    faultWalker->ShowCallstack(nullptr, &context);
}

/// Handles `signal` on a stack of its own while `work` runs below known functions.
template <int N, class Work>
void runWithHandler(int signal, RecordingWalker& walker, Work work)
{
    faultWalker = &walker;
    // Symbols are read by ordinary code, not in the handler.
    walker.LoadModules();
    struct sigaction action = {};
    struct sigaction former = {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO;
    ASSERT_EQ(sigaction(signal, &action, &former), 0);
    test::knownFunction<N>(work);
    sigaction(signal, &former, nullptr);
}

TEST(StackWalkerFault, WalksFromTheRegistersOfASignal)
{
    RecordingWalker walker;
    runWithHandler<12>(SIGUSR1, walker, [] { std::raise(SIGUSR1); });
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
    for (std::string state; state != "S";)
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
    EXPECT_FALSE(late.ShowCallstack());
    EXPECT_EQ(late.errors.size(), 1U);
}

}  // namespace

}  // namespace Oxa_1_1
