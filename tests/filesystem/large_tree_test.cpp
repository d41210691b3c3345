// A tree of many entries: OXA_TEST_ENTRIES of them, if that is set.

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/filesystem/messages.h"
#include "tests/filesystem/temp_folder.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(LargeTree, IsListedMeasuredCopiedMovedAndRemoved)
{
    const TempFolder temp;
    Messages messages;
    const char* const wanted = std::getenv("OXA_TEST_ENTRIES");
    const std::size_t entries = wanted != nullptr ? std::strtoul(wanted, nullptr, 10) : 2000;
    // Most of them in one folder, more than the system tells of at once.
    std::size_t bytes = 0;
    temp.makeFolder("tree/flat");
    for (std::size_t i = 0; i < entries; ++i)
    {
        const std::string folder = i % 4 != 0 ? "flat" : std::to_string(i / 4 % 5) + "/" + std::to_string(i / 20 % 5);
        if (i < 200) temp.makeFolder("tree/" + folder);
        const std::string name = std::to_string(i);
        std::ofstream(temp.path("tree/" + folder + "/" + name)) << name;
        bytes += name.size();
    }
    const Names all = temp.contents("tree");
    const auto tree = temp.directory("tree");
    EXPECT_EQ(sorted(test::namesIn(*tree, tree->collectContents("*", true))), all);
    EXPECT_EQ(temp.directory("tree/flat")->collectFiles("*", false).size(), entries - (entries + 3) / 4);
    unsigned long long size = 0;
    EXPECT_TRUE(tree->size(size));
    EXPECT_EQ(size, bytes);
    temp.makeFolder("copies");
    EXPECT_NE(tree->copy(*temp.directory("copies"), false, nullptr), nullptr);
    EXPECT_EQ(temp.contents("copies/tree"), all);
    EXPECT_TRUE(temp.directory("copies/tree")->move(*temp.directory("moved"), false));
    EXPECT_EQ(temp.contents("moved"), all);
    EXPECT_TRUE(temp.directory("moved")->remove(true));
    EXPECT_TRUE(tree->remove(true));
    EXPECT_EQ(temp.contents(), Names{"copies/"});
    EXPECT_TRUE(messages.take().empty());
}

}  // namespace

}  // namespace Oxa_1_1::test
