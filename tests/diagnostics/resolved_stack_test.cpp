#include "base/diagnostics/resolved_stack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "tests/diagnostics/plugin.h"
#include "tests/diagnostics/stack_samples.h"

namespace Oxa_1_1
{

namespace
{

std::vector<void*> captured()
{
    std::vector<void*> addresses(64);
    addresses.resize(static_cast<std::size_t>(StackWalker::captureFrames(addresses.data(), 64)));
    return addresses;
}

auto findFunction(const ResolvedStack& stack, std::string_view name)
{
    return std::find_if(stack.begin(), stack.end(),
                        [name](const ResolvedFrame& frame) { return frame.function.find(name) != std::string::npos; });
}

TEST(ResolvedStack, NamesFramesOnAnotherThreadWithWhatIsInlined)
{
    const test::Plugin plugin;
    std::vector<void*> addresses;
    plugin.call([&] { addresses = captured(); });
    ResolvedStack stack;
    std::thread([&] { stack = resolveFrames(addresses); }).join();

    auto frame = findFunction(stack, "inlinedInPlugin");
    ASSERT_LE(frame + 3, stack.end());
    const struct
    {
        const char* function;
        bool isInlined;
        std::uint32_t line;
    } expected[] = {{"inlinedInPlugin", true, 7}, {"hiddenInPlugin", false, 13}, {"callFromPlugin", false, 19}};
    for (const auto& e : expected)
    {
        EXPECT_EQ(frame->function, e.function);
        EXPECT_EQ(frame->isInlined, e.isInlined) << e.function;
        // Where a call returns to may be the next line, and is not.
        EXPECT_EQ(frame->line, e.line) << e.function;
        EXPECT_TRUE(frame->file.ends_with("plugin.cpp")) << frame->file;
        EXPECT_EQ(frame->module, "diagnostics.plugin");
        EXPECT_TRUE(frame->symbolType == "DWARF" || frame->symbolType == "COFF") << frame->symbolType;
        ++frame;
    }
    EXPECT_NE(stack.text().find("  hiddenInPlugin(void (*)(void*), void*) ("), std::string::npos) << stack.text();

    // A walker reports frames, as before: what is inlined is a part of its function.
    test::RecordingWalker walker;
    plugin.call([&] { walker.ShowCallstack(); });
    EXPECT_EQ(walker.framesNamed("inlinedInPlugin").size(), 0U);
    ASSERT_EQ(walker.framesNamed("hiddenInPlugin").size(), 1U);
    EXPECT_EQ(walker.framesNamed("hiddenInPlugin")[0].line, 13U);
}

TEST(ResolvedStack, UnknownAddressesStayFrames)
{
    EXPECT_TRUE(resolveFrames({}).empty());
    void* const addresses[] = {nullptr, reinterpret_cast<void*>(64), reinterpret_cast<void*>(~std::uintptr_t{0})};
    const ResolvedStack stack = resolveFrames(addresses);
    ASSERT_EQ(stack.size(), 3U);
    EXPECT_EQ(stack[1].address, addresses[1]);
    EXPECT_TRUE(stack[1].function.empty() && stack[1].module.empty() && stack[1].line == 0);
    EXPECT_EQ(stack.text(1), "  0x40\n  0xffffffffffffffff\n");
    // More than are looked up at once.
    EXPECT_EQ(resolveFrames(std::vector<void*>(1000, addresses[1])).size(), 1000U);
}

TEST(ResolvedStack, StacksOfAllThreads)
{
    std::atomic<int> ready{0};
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back(
            [&]
            {
                auto wait = [&]
                {
                    ++ready;
                    while (!stop) std::this_thread::yield();
                };
                test::knownFunction<5>(wait);
            });
    while (ready < 3) std::this_thread::yield();
    const std::vector<ThreadStack> stacks = captureAllThreads();
    stop = true;
    for (std::thread& thread : threads) thread.join();
    ASSERT_GE(stacks.size(), 4U);
    EXPECT_NE(resolveFrames(stacks[0].addresses).text().find("StacksOfAllThreads"), std::string::npos);
    const auto below =
        std::count_if(stacks.begin(), stacks.end(),
                      [](const ThreadStack& stack)
                      { return resolveFrames(stack.addresses).text().find("knownFunction<5") != std::string::npos; });
    EXPECT_EQ(below, 3);
}

}  // namespace

}  // namespace Oxa_1_1
