// Assertions and call stacks by the library.

#include "base/diagnostics/assertion.h"
#include "base/diagnostics/debug_output.h"
#include "base/diagnostics/hooks.h"
#include "base/diagnostics/resolved_stack.h"
#include "base/diagnostics/stack_walker.h"
#include "benchmarks/contest.h"
#include "benchmarks/deep_stack.h"

namespace Oxa_1_1::bench
{

namespace
{

/// Looks at every text, keeps none.
class Reader : public StackWalker
{
   public:
    Reader() : StackWalker(FunctionNames | SourceLines, nullptr, 0, nullptr) {}

    std::size_t seen = 0;

   protected:
    void OnCallstackEntry(CallstackEntryType, CallstackEntry& entry) override
    {
        seen += entry.lineNumber + static_cast<unsigned char>(entry.undFullName[0]) +
                static_cast<unsigned char>(entry.lineFileName[0]);
    }
    void OnOutput(const char*) override {}
};

void passOver()
{
    DiagnosticHooks hooks;
    hooks.debugOutput = [](const Char*) {};
    hooks.ask = [](const Char*, const Char*) { return AssertionAnswer::Ignore; };
    const DiagnosticHooks former = setDiagnosticHooks(hooks);
    for (unsigned int line = 0; line < 100; ++line) __assert_fail_x("x", nullptr, "file.cpp", line, "f");
    setDiagnosticHooks(former);
}

[[maybe_unused]] const bool registered = []
{
    addBelow<STACK_DEPTH>(work::CAPTURE, OURS,
                          []
                          {
                              void* addresses[STACK_DEPTH];
                              keep(StackWalker::captureFrames(addresses, STACK_DEPTH));
                          });
    addBelow<STACK_DEPTH>(work::RESOLVE, OURS,
                          []
                          {
                              static void* addresses[STACK_DEPTH];
                              static const int count = StackWalker::captureFrames(addresses, STACK_DEPTH);
                              keep(resolveFrames({addresses, static_cast<std::size_t>(count)}).size());
                          });
    static Reader reader;
    addBelow<STACK_DEPTH>(work::CAPTURE_NAMED, OURS,
                          []
                          {
                              reader.ShowCallstack();
                              keep(reader.seen);
                          });
    addBelow<STACK_DEPTH>(work::COUNT_DEPTH, OURS, [] { keep(OutputDebugParenthesesScope()); });
    passOver();
    add(work::PASS_OVER, OURS, [] { __assert_fail_x("x", nullptr, "file.cpp", 50, "f"); });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
