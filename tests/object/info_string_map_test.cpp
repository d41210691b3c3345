// What observers are told.

#include "base/object/info_string_map.h"

#include <gtest/gtest.h>

#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

TEST(ObserverInfo, ExpiresUnlessToldOtherwise)
{
    ObserverInfo info;
    EXPECT_TRUE(info.willExpire());
    info.setExpire(false);
    const ObserverInfo copy = info;
    EXPECT_FALSE(copy.willExpire());
}

TEST(InfoStringMap, KeepsOneEntryForAKeyInAnyCase)
{
    InfoStringMap map;
    map.addInfo(String("Operator"), String("first"));
    map.addInfo(String("OPERATOR"), String("second"));
    map.addInfo(String(), String("of nothing"));
    map.addInfo(String("count"), 12);
    ASSERT_EQ(map.getNumberInfos(), 3U);
    EXPECT_EQ(map.getInfoByKey("operator"), "second");
    EXPECT_EQ(map.getInfoByKey("COUNT"), "12");
    EXPECT_EQ(map.getInfos().begin()->second, "of nothing");
    EXPECT_EQ(map.getInfos().rbegin()->first, "Operator");

    const String& missing = map.getInfoByKey("missing");
    EXPECT_TRUE(missing.compareEquality(String::EMPTY));
    EXPECT_EQ(&missing, &InfoStringMap().getInfoByKey("other"));
    EXPECT_EQ(map.getNumberInfos(), 3U);
}

TEST(InfoStringMap, TakesAWholeMapEvenItsOwn)
{
    InfoStringMap map(InfoStringMap::Map{{"a", "1"}, {"b", "2"}});
    map.setExpire(false);
    map.setInfos(map.getInfos());
    EXPECT_EQ(map.getNumberInfos(), 2U);
    const InfoStringMap copy = map;
    map.setInfos({{"c", "3"}});
    EXPECT_EQ(map.getInfoByKey("a"), "");
    EXPECT_EQ(map.getInfoByKey("C"), "3");
    EXPECT_EQ(copy.getNumberInfos(), 2U);
    EXPECT_FALSE(copy.willExpire());
}

TEST(InfoStringMap, MovesAndLosesEntries)
{
    InfoStringMap map(InfoStringMap::Map{{"a", "1"}, {"b", "2"}});
    map.setExpire(false);
    EXPECT_TRUE(map.contains("A") && map.remove("A"));
    EXPECT_FALSE(map.contains("a") || map.remove("a"));
    InfoStringMap moved = std::move(map);
    EXPECT_TRUE(moved.contains("b") && !moved.willExpire());
    map = std::move(moved);
    EXPECT_EQ(map.getNumberInfos(), 1U);
    EXPECT_EQ(moved.getNumberInfos(), 0U);
}

}  // namespace

}  // namespace Oxa_1_1::test
