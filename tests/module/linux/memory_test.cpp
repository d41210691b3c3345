// What modules leave behind that come and go.

#include <gtest/gtest.h>

#include "base/module/plug_in.h"
#include "base/object/uz_class.h"
#include "tests/memory_in_use.h"
#include "tests/module/fixtures/resource.h"
#include "tests/module/system.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(PlugIn, LeavesNoMemoryBehind)
{
    std::size_t before = 0;
    constexpr int ROUNDS = 400;
    for (int round = 0; round < ROUNDS; ++round)
    {
        if (round == ROUNDS / 4) before = memoryInUse();
        int cleared = 0;
        const PlugIn plugIn = PlugIn::load(OXA_FIXTURES "/scanner/scanner.x.module");
        ASSERT_TRUE(plugIn.module() != nullptr && plugIn.module()->loadText(IDS_GREETING));
        plugIn.function<int(int*)>("watchClass")(&cleared);
        EXPECT_NE(uZClass::find(OXA_TEXT("Scanner")), nullptr);
    }
    EXPECT_LT(memoryInUse(), before + (std::size_t{1} << 18));
}

}  // namespace

}  // namespace Oxa_1_1::test
