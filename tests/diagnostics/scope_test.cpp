#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "base/diagnostics/debug_output.h"
#include "base/diagnostics/hooks.h"
#include "base/diagnostics/kp_stack_walker.h"
#include "tests/diagnostics/stack_samples.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1
{

namespace
{

[[gnu::noinline]] int depthHere()
{
    const OutputDebugParenthesesScope scope;
    const int depth = OutputDebugParenthesesScope::depth();
    test::keepFrame();
    return depth;
}

TEST(DebugScope, RecordsTheDepthOfItsFunctionAndPutsTheFormerOneBack)
{
    EXPECT_EQ(OutputDebugParenthesesScope::depth(), 0);
    const int outer = depthHere();
    EXPECT_GT(outer, 1);
    EXPECT_EQ(OutputDebugParenthesesScope::depth(), 0);

    int inner = 0;
    auto measure = [&] { inner = depthHere(); };
    const OutputDebugParenthesesScope scope;
    EXPECT_EQ(OutputDebugParenthesesScope::depth(), outer - 1);
    EXPECT_EQ(KpStackWalker::initialCallStackDepth, outer - 1);
    test::knownFunction<1>(measure);
    const int atOne = inner;
    test::knownFunction<32>(measure);
    EXPECT_EQ(inner - atOne, 31);
    EXPECT_EQ(OutputDebugParenthesesScope::depth(), outer - 1);
}

TEST(DebugScope, ThreadsMayCountAtOnce)
{
    std::vector<int> counts(4);
    std::vector<std::thread> threads;
    for (int& count : counts)
        threads.emplace_back(
            [&count]
            {
                for (int i = 0; i < 1000; ++i) count = KpStackWalker::globalStackWalker.countFrames();
            });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(counts, std::vector<int>(4, counts[0]));
}

std::vector<String> written;

TEST(DebugScope, OutputOfTheWalkerIsIndentedByTheDepthWithinTheOutermostScope)
{
    class Writer : public StackWalker
    {
       public:
        Writer() : StackWalker(0, nullptr) {}
        void write(const char* text) { OnOutput(text); }
    } writer;

    DiagnosticHooks hooks;
    hooks.debugOutput = [](const Char* text) { written.emplace_back(text); };
    const DiagnosticHooks former = setDiagnosticHooks(hooks);
    writer.write("plain\n");
    EXPECT_EQ(KpStackWalker::callStackDepthOfPreviousOutput, 0);
    {
        const OutputDebugParenthesesScope outer;
        writer.write("outer\n");
        auto nested = [&]
        {
            const OutputDebugParenthesesScope inner;
            writer.write("inner\n");
            EXPECT_EQ(KpStackWalker::callStackDepthOfPreviousOutput, OutputDebugParenthesesScope::depth());
        };
        test::knownFunction<4>(nested);
        writer.write(nullptr);
    }
    setDiagnosticHooks(former);

    ASSERT_EQ(written.size(), 3U);
    EXPECT_EQ(written[0], OXA_TEXT("plain\n"));
    EXPECT_EQ(written[1], OXA_TEXT("outer\n"));
    // Four functions; the closure may be a fifth or part of the first.
    const int blanks = written[2].find(OXA_TEXT("inner\n"));
    EXPECT_TRUE(blanks == 4 || blanks == 5) << blanks;
}

}  // namespace

}  // namespace Oxa_1_1
