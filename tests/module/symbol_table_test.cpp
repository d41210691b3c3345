// Resource headers, and what can be looked up in them.

#include "base/module/symbol_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

using Names = std::set<String, StringLess2>;

TEST(SymbolTable, TakesDefinitionsAndNothingElse)
{
    struct Case
    {
        const char* header;
        bool accepted;
        std::vector<std::pair<const char*, unsigned int>> symbols;
    };
    constexpr unsigned int UNKNOWN = SymbolTable::UNKNOWN;
    const std::vector<Case> cases = {
        {"", true, {}},
        {"// a comment\n#pragma once\n\n", true, {}},
        {"#define A 1", true, {{"A", 1}, {"a", 1}, {"AB", UNKNOWN}, {"", UNKNOWN}}},
        {"#define ID_NULL 57343\t// (0xDFFF)\r\n", true, {{"ID_NULL", 57343}}},
        {"//#define IN_COMMENT\t \v12 13", true, {{"IN_COMMENT", 12}}},
        {"#define A 0x8000\n#define B -1\n#define C (7)\n#define D (A+1)\n#define E 12L",
         true,
         {{"A", 0}, {"B", 1}, {"C", 7}, {"D", 0}, {"E", 12}}},
        {"#define A B\n#define B 7\n#define C b\n", false, {{"A", UNKNOWN}, {"B", 7}, {"C", 7}}},
        {"#define _APS_NEXT 101\n#define _aps_x 1\n", true, {{"_APS_NEXT", UNKNOWN}, {"_aps_x", 1}}},
        {"#defineA 1\n#define\n#define \n#define B 2", false, {{"A", UNKNOWN}, {"B", 2}}},
        {"#define A\n#define A 2", false, {{"A", 2}}},
        {"#define A 1\n#define a 2\n", false, {{"A", 1}}},
        {"#define A 4294967294", true, {{"A", 4294967294U}}},
        {"#define A 1 #define B 2", true, {{"A", 1}, {"B", UNKNOWN}}},
    };
    for (const Case& c : cases)
    {
        SymbolTable table;
        std::istringstream in(c.header);
        EXPECT_EQ(table.parseHeaderFile(in), c.accepted) << c.header;
        for (const auto& [name, value] : c.symbols) EXPECT_EQ(table.lookupSymbol(name), value) << c.header << name;
    }
    EXPECT_EQ(SymbolTable::EMPTY[String::NIL], UNKNOWN);
    EXPECT_EQ(SymbolTable::EMPTY[1U], Names());
}

TEST(SymbolTable, ListsTheNamesOfAValueWithoutRegardToCase)
{
    SymbolTable table;
    std::istringstream in("#define IDR_SCANTYPE2 3\n#define other 4\n#define IDDEFAULTS 3\n");
    ASSERT_TRUE(table.parseHeaderFile(in));
    EXPECT_EQ(table.lookupValue(3), (Names{"IDDEFAULTS", "IDR_SCANTYPE2"}));
    EXPECT_EQ(table.lookupValue(5), Names());

    SymbolTable copy = table;
    EXPECT_EQ(copy["Other"], 4U);
    EXPECT_EQ(copy.names(), (std::vector<String>{"IDR_SCANTYPE2", "other", "IDDEFAULTS"}));
    const SymbolTable moved = std::move(copy);
    EXPECT_EQ(moved.lookupValue(3).size(), 2U);
}

TEST(SymbolTable, RefusesABadStream)
{
    SymbolTable table;
    std::istringstream in("#define A 1");
    in.setstate(std::ios::badbit);
    EXPECT_FALSE(table.parseHeaderFile(in));
    std::istringstream failed("#define A 1");
    failed.setstate(std::ios::failbit);
    EXPECT_FALSE(table.parseHeaderFile(failed));
    std::istringstream throwing("#define A 1");
    throwing.exceptions(std::ios::failbit | std::ios::badbit);
    EXPECT_TRUE(table.parseHeaderFile(throwing));
    EXPECT_EQ(throwing.exceptions(), std::ios::failbit | std::ios::badbit);
}

TEST(SymbolTable, AgreesWithMapsOverManySymbols)
{
    std::mt19937 random(7);
    std::map<String, unsigned int, StringLess2> byName;
    std::map<unsigned int, Names> byValue;
    std::string header;
    for (int i = 0; i < 5000; ++i)
    {
        const std::string name = "Id_" + std::to_string(random() % 100000);
        const auto value = static_cast<unsigned int>(random() % 1000);
        header += "#define " + name + ' ' + std::to_string(value) + '\n';
        if (byName.emplace(name.c_str(), value).second) byValue[value].insert(name.c_str());
    }
    SymbolTable table;
    std::istringstream in(header);
    EXPECT_FALSE(table.parseHeaderFile(in));
    EXPECT_EQ(table.size(), byName.size());
    for (const auto& [name, value] : byName) ASSERT_EQ(table[name], value);
    for (const auto& [value, names] : byValue) ASSERT_EQ(table[value], names);
}

}  // namespace

}  // namespace Oxa_1_1::test
