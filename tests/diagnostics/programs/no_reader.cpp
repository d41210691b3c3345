// Runs where the debug-help library cannot be loaded: that is reported once a call, and harms nothing.

#include <cstdio>

#include "base/diagnostics/debug_output.h"
#include "tests/diagnostics/stack_samples.h"

int main()
{
    Oxa_1_1::test::RecordingWalker walker;
    const bool walked = walker.ShowCallstack() != 0 || walker.LoadModules() != 0;
    const Oxa_1_1::OutputDebugParenthesesScope scope;
    std::printf("%s\n", walker.output.empty() ? "no output" : walker.output.front().c_str());
    const bool isReported = walker.errors.size() == 2 &&
                            walker.errors[0].text == "Error while initializing dbghelp.dll" &&
                            walker.errors[0].code != 0;
    return !walked && isReported && walker.frames.empty() && Oxa_1_1::OutputDebugParenthesesScope::depth() > 0 ? 0 : 1;
}
