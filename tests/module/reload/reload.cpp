// The library is loaded, used, unloaded, and loaded again.

#include <gtest/gtest.h>

#include "tests/module/system.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(Reload, LeavesNothingBehind)
{
    for (int round = 0; round < 3; ++round)
    {
        void* const library = loadLibrary(OXA_LIBRARY);
        ASSERT_NE(library, nullptr);
        EXPECT_TRUE(isLoaded(OXA_LIBRARY));
        unloadLibrary(library);
        EXPECT_FALSE(isLoaded(OXA_LIBRARY));
    }
}

}  // namespace

}  // namespace Oxa_1_1::test
