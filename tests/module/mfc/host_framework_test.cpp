// The back end for the real framework, in front of a stand-in: what it calls, and in which order.

#include "base/platform/modules/host_framework.h"

#include <gtest/gtest.h>

#include "tests/module/mfc/afxwin.h"

namespace Oxa_1_1::platform
{

namespace
{

using Calls = std::vector<std::string>;

TEST(HostFramework, IsToldOfTheLibraryAndOfItsEnd)
{
    for (int round = 0; round < 2; ++round)
    {
        calls.clear();
        EXPECT_TRUE(attachExtension(reinterpret_cast<HINSTANCE>(&calls)));
        EXPECT_EQ(calls, (Calls{"init", "link"}));
        detachExtension();
        EXPECT_EQ(calls, (Calls{"init", "link", "unlink", "term"}));
    }
}

TEST(HostFramework, MayRefuseTheLibrary)
{
    calls.clear();
    refuses = true;
    EXPECT_FALSE(attachExtension(nullptr));
    refuses = false;
    EXPECT_EQ(calls, Calls{"init"});
}

TEST(HostFramework, TakesItsResourcesFromTheCurrentHandle)
{
    const auto handle = reinterpret_cast<HINSTANCE>(&calls);
    setCurrentResourceHandle(handle);
    EXPECT_EQ(AfxGetModuleState()->m_hCurrentResourceHandle, handle);
    EXPECT_EQ(currentResourceHandle(), handle);
}

}  // namespace

}  // namespace Oxa_1_1::platform
