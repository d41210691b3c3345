// Fails the same assertion twice under the default handler, for tests that answer its real question.

#include <cstdio>

#include "base/diagnostics/assertion.h"

int main()
{
    for (int round = 0; round < 2; ++round)
    {
        std::printf("round %d\n", round);
        std::fflush(stdout);
        OXA_ASSERT_MSG(round < 0, "größer als 0 ✓");
    }
    std::printf("end\n");
    return 0;
}
