#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/formats/outside_bytes.h"

namespace Oxa_1_1::test
{

/// One of Wine's libraries, which have resources in many languages. They are read by each test of this fixture.
class WineLibrary : public testing::TestWithParam<const char*>
{
   protected:
    void SetUp() override
    {
        if (std::string_view(OXA_WINE_LIBRARIES).empty()) GTEST_SKIP() << "Wine's libraries are not installed.";
        bytes = readFile(path());
        index = formats::ResourceIndex::fromPortableExecutable(asBytes(bytes));
        ASSERT_TRUE(index);
    }

    static std::string path() { return std::string(OXA_WINE_LIBRARIES) + "/" + GetParam(); }

    std::string bytes;
    std::optional<formats::ResourceIndex> index;
};

inline auto wineLibraries()
{
    return testing::Values("comctl32.dll", "comdlg32.dll", "msi.dll", "oleaut32.dll", "regedit.exe", "shell32.dll",
                           "user32.dll", "wininet.dll");
}

inline std::string nameOfLibrary(const testing::TestParamInfo<const char*>& library)
{
    const std::string_view name = library.param;
    return std::string(name.substr(0, name.find('.')));
}

}  // namespace Oxa_1_1::test
