// What stacks cost as modules come and go.

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

#include "base/diagnostics/resolved_stack.h"
#include "tests/diagnostics/plugin.h"
#include "tests/diagnostics/stack_samples.h"

namespace Oxa_1_1
{

namespace
{

std::size_t residentPages()
{
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident;
}

/// Walks and drops what it sees.
class QuietWalker : public StackWalker
{
   public:
    QuietWalker() : StackWalker(FunctionNames | SourceLines | FrameModules, nullptr, 0, nullptr) {}

    int named = 0;

   protected:
    void OnCallstackEntry(CallstackEntryType, CallstackEntry& entry) override
    {
        if (std::string_view(entry.undName) == "hiddenInPlugin" && entry.lineNumber == 13) ++named;
    }
    void OnOutput(const char*) override {}
};

TEST(StackMemory, StaysTheSameOverLoadedAndUnloadedModules)
{
    QuietWalker walker;
    std::size_t before = 0;
    constexpr int ROUNDS = 400;
    for (int round = 0; round < ROUNDS; ++round)
    {
        if (round == ROUNDS / 4) before = residentPages();
        const test::Plugin plugin;
        plugin.call(
            [&]
            {
                walker.ShowCallstack();
                void* addresses[32];
                const int count = StackWalker::captureFrames(addresses, 32);
                resolveFrames({addresses, static_cast<std::size_t>(count)});
            });
    }
    EXPECT_EQ(walker.named, ROUNDS);
    // 4 MiB, for what sanitizers keep; a reader of lines that is made anew takes more each time.
    EXPECT_LT(residentPages(), before + 1024);
}

}  // namespace

}  // namespace Oxa_1_1

/// The address sanitizer, in a build with it, keeps freed memory for a while; then it would count as in use.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
extern "C" const char* __asan_default_options() { return "quarantine_size_mb=0:thread_local_quarantine_size_kb=0"; }
