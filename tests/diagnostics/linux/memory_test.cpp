// What stacks cost as modules come and go.

#include <gtest/gtest.h>

#include <cstddef>
#include <string_view>

#include "base/diagnostics/resolved_stack.h"
#include "tests/diagnostics/plugin.h"
#include "tests/diagnostics/stack_samples.h"
#include "tests/memory_in_use.h"

namespace Oxa_1_1
{

namespace
{

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
        if (round == ROUNDS / 4) before = test::memoryInUse();
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
    // A reader of lines that is made anew takes more each time.
    EXPECT_LT(test::memoryInUse(), before + (std::size_t{1} << 20));
}

}  // namespace

}  // namespace Oxa_1_1
