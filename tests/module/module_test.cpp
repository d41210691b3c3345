// The list of modules, and what happens to their records when they come and go.

#include <gtest/gtest.h>

#include <algorithm>
#include <ranges>
#include <vector>

#include "base/module/module_entry.h"
#include "base/module/plug_in.h"
#include "base/module/symbol_table.h"
#include "base/object/uz_class.h"
#include "tests/module/loaded_fixture.h"
#include "tests/string/string_printer.h"

namespace Oxa_1_1::test
{

namespace
{

template <class Range>
std::vector<const Module*> collect(const Range& range)
{
    std::vector<const Module*> modules;
    for (const Module& module : range) modules.push_back(&module);
    return modules;
}

struct CountingClass final : uZClass
{
    CountingClass(const Module& owner) : uZClass(OXA_TEXT("Counting"), owner, ClassVersion()) {}
    void initClassStatics() const override { ++initialised; }
    void clearClassStatics() const override { ++cleared; }

    mutable int initialised = 0;
    mutable int cleared = 0;
};

TEST(ModuleList, KeepsTheOrderOfRegistrationInBothDirections)
{
    const std::vector<const Module*> before = collect(Module::all());
    ASSERT_FALSE(before.empty());
    EXPECT_EQ(before.front(), &getThisModule());

    {
        const LoadedFixture scanner("scanner");
        const LoadedFixture plain("plain");
        ASSERT_TRUE(scanner.isLoaded() && plain.isLoaded());
        std::vector<const Module*> expected = before;
        expected.push_back(&scanner.module());
        expected.push_back(&plain.module());
        EXPECT_EQ(collect(Module::all()), expected);
        EXPECT_EQ(Module::count, expected.size());
        EXPECT_EQ(collect(Module::allReversed()), std::vector<const Module*>(expected.rbegin(), expected.rend()));
    }
    EXPECT_EQ(collect(Module::all()), before);
    EXPECT_EQ(Module::count, before.size());
}

TEST(ModuleList, LosesARecordFromItsMiddle)
{
    void* const scanner = loadLibrary(OXA_FIXTURES "/scanner/scanner.x.module");
    const LoadedFixture plain("plain");
    unloadLibrary(scanner);
    EXPECT_EQ(findModule(OXA_TEXT("scanner.x")), nullptr);
    const std::vector<const Module*> forward = collect(Module::all());
    EXPECT_EQ(forward.back(), &plain.module());
    EXPECT_EQ(collect(Module::allReversed()), std::vector<const Module*>(forward.rbegin(), forward.rend()));
}

TEST(ModuleList, HasOnePositionForBothEnds)
{
    const LoadedFixture plain("plain");
    Module::const_iterator it = Module::end();
    EXPECT_EQ(&*++it, &getThisModule());
    EXPECT_EQ(it, Module::begin());
    it = Module::end();
    EXPECT_EQ(&*--it, &plain.module());
    // The postfix forms move as the prefix forms do.
    EXPECT_EQ(it++, Module::end());
    EXPECT_EQ(&*it--, &plain.module());
}

TEST(PlugIn, IsHeldByItsCopiesUnlessItIsKept)
{
    const String file = OXA_FIXTURES "/plain/plain.x.module";
    PlugIn plugIn = PlugIn::load(file);
    ASSERT_TRUE(plugIn);
    EXPECT_EQ(plugIn.module(), Module::find(OXA_TEXT("Plain.X")));
    EXPECT_EQ(plugIn.function<const Module*()>("plainModule")(), plugIn.module());
    for (const char* const name : {"no such thing", "", static_cast<const char*>(nullptr)})
        EXPECT_EQ(plugIn.symbol(name), nullptr);
    PlugIn copy = plugIn;
    plugIn = {};
    EXPECT_NE(Module::find(OXA_TEXT("plain.x")), nullptr);
    copy = {};
    EXPECT_EQ(Module::find(OXA_TEXT("plain.x")), nullptr);

    for (const String& missing : {file + OXA_TEXT(".none"), String::EMPTY, String::NIL})
    {
        String reason;
        EXPECT_FALSE(PlugIn::load(missing, reason));
        EXPECT_FALSE(reason.isEmpty());
    }
    EXPECT_TRUE(PlugIn().module() == nullptr && PlugIn().symbol("x") == nullptr);
}

TEST(ModuleList, IsARangeOfTheStandardLibrary)
{
    static_assert(std::ranges::bidirectional_range<Module::Range> && std::ranges::view<Module::ReverseRange>);
    const LoadedFixture plain("plain");
    const auto isPlain = [](const Module& module) { return module.getModuleName() == OXA_TEXT("plain.x"); };
    EXPECT_EQ(&*std::ranges::find_if(Module::all(), isPlain), &plain.module());
    EXPECT_EQ(std::ranges::distance(Module::allReversed()), static_cast<std::ptrdiff_t>(Module::count));
    EXPECT_EQ(Module::find(OXA_TEXT("nobody")), nullptr);
}

TEST(Module, IsNamedAfterItsFileAndCarriesItsSymbols)
{
    const LoadedFixture scanner("scanner");
    EXPECT_EQ(scanner.module().getModuleName(), OXA_TEXT("scanner.x"));
    const SymbolTable& symbols = scanner.module().getResourceSymbols();
    EXPECT_EQ(symbols[OXA_TEXT("ids_greeting")], 101U);
    EXPECT_EQ(symbols[OXA_TEXT("IDS_EMPTY")], 103U);
    EXPECT_EQ(symbols[7U], (std::set<String, StringLess2>{OXA_TEXT("IDB_FLAG"), OXA_TEXT("IDB_FLAG_AGAIN")}));

    const LoadedFixture plain("plain");
    EXPECT_EQ(&plain.module().getResourceSymbols(), &SymbolTable::EMPTY);
    using OwnModule = const Module* (*)();
    EXPECT_EQ(reinterpret_cast<OwnModule>(plain.symbol("plainModule"))(), &plain.module());
}

TEST(Module, KeepsItsNameButNotItsSymbolsWhenItIsTerminated)
{
    const LoadedFixture scanner("scanner");
    EXPECT_NE(&scanner.module().getResourceSymbols(), &SymbolTable::EMPTY);
    reinterpret_cast<void (*)()>(scanner.symbol("detachScanner"))();
    EXPECT_EQ(&scanner.module().getResourceSymbols(), &SymbolTable::EMPTY);
    EXPECT_EQ(scanner.module().getModuleName(), OXA_TEXT("scanner.x"));
}

TEST(Module, TellsItsClassesOfItsStartAndItsEnd)
{
    int cleared = 0;
    {
        const LoadedFixture scanner("scanner");
        using Watch = int (*)(int*);
        EXPECT_EQ(reinterpret_cast<Watch>(scanner.symbol("watchClass"))(&cleared), 1);
        EXPECT_EQ(cleared, 0);
    }
    EXPECT_EQ(cleared, 1);
    for (const uZClass* c : uZClass::allClasses()) EXPECT_NE(String(c->name), OXA_TEXT("Scanner"));
}

TEST(Module, ThatIsNotTerminatedTerminatesTheLibraryAtItsEnd)
{
    const CountingClass ofTheLibrary(getThisModule());
    {
        const LoadedFixture forgetful("forgetful");
        ASSERT_TRUE(forgetful.isLoaded());
        EXPECT_EQ(ofTheLibrary.cleared, 0);
    }
    EXPECT_EQ(ofTheLibrary.cleared, 1);
    // Nothing of it is left that the next module would come by.
    EXPECT_TRUE(LoadedFixture("scanner").isLoaded());
}

/// The record of this program, which has no start-up code: it is initialised here.
class OwnRecord : public testing::Test
{
   protected:
    ~OwnRecord() override { ModuleEntry::detach(); }

    static bool attach() { return ModuleEntry::attach(moduleHandleOf(&handleAnchor)); }

    static inline int handleAnchor = 0;
};

TEST_F(OwnRecord, IsInitialisedOnceUntilItIsTerminated)
{
    const CountingClass own(ownModule());
    const CountingClass foreign(getThisModule());
    EXPECT_TRUE(ownModule().getModuleName().isEmpty());

    const std::byte script[32] = {std::byte{}, std::byte{}, std::byte{}, std::byte{}, std::byte{32}};
    EXPECT_FALSE(ModuleEntry::attach(nullptr));
    EXPECT_FALSE(ModuleEntry::attach(nullptr, script));
    EXPECT_TRUE(ownModule().getModuleName().isEmpty());
    for (int round = 1; round <= 2; ++round)
    {
        EXPECT_TRUE(attach());
        EXPECT_FALSE(attach());
        EXPECT_EQ(ownModule().getModuleName(), OXA_TEXT("module_test"));
        EXPECT_EQ(own.initialised, round);
        ModuleEntry::detach();
        ModuleEntry::detach();
        EXPECT_EQ(own.cleared, round);
        EXPECT_EQ(ownModule().getModuleName(), OXA_TEXT("module_test"));
    }
    EXPECT_EQ(foreign.initialised + foreign.cleared, 0);
}

}  // namespace

}  // namespace Oxa_1_1::test
