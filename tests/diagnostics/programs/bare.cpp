// Walks its stack in a program without symbols: every frame is found and has a module, and nothing is made up.

#include <cstdio>
#include <string>

#include "tests/diagnostics/stack_samples.h"

int main()
{
    Oxa_1_1::test::RecordingWalker walker;
    auto work = [&] { walker.ShowCallstack(); };
    Oxa_1_1::test::knownFunction<32>(work);

    int own = 0;
    for (const Oxa_1_1::test::SeenFrame& frame : walker.frames)
    {
        if (frame.module.find("diagnostics_bare") == std::string::npos) continue;
        ++own;
        if (!frame.file.empty() || frame.line != 0 || frame.fullName.find("known") != std::string::npos) return 1;
    }
    std::printf("%d frames of this program\n", own);
    return own > 32 && walker.errors.empty() ? 0 : 1;
}
