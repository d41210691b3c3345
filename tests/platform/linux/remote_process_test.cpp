// Modules of live processes, and the files that they come from.

#include "base/platform/linux/stack/remote_process.h"

#include <gtest/gtest.h>

#include "base/formats/elf_file.h"
#include "base/platform/linux/files/mapped_file.h"
#include "base/platform/linux/stack/walk_stack.h"

namespace Oxa_1_1::platform
{

namespace
{

TEST(RemoteProcess, FunctionsOfThisProgramAreFoundInItsFile)
{
    const MappedFile file("/proc/self/exe");
    const formats::ElfFile elf(file.bytes());
    ASSERT_TRUE(elf.isValid());
    EXPECT_TRUE(elf.hasSection(".text"));
    EXPECT_FALSE(elf.hasSection(".no such section"));
    EXPECT_FALSE(elf.hasSection(".bss"));
    std::uint64_t offset = 0;
    std::uint64_t address = 0;
    EXPECT_TRUE(elf.findUnwindIndex(offset, address));

    // Where this program is, and so which address a function is meant for.
    const auto code = reinterpret_cast<std::uintptr_t>(&remotePath);
    const RemoteModules modules(processOf(nullptr));
    const RemoteModules::Entry* const own = modules.find(code);
    ASSERT_NE(own, nullptr);
    std::uint64_t begin = 0;
    const std::uint64_t meant = code - own->module.begin + elf.firstAddress();
    EXPECT_NE(elf.functionAt(meant + 1, begin).find("remotePath"), std::string_view::npos);
    EXPECT_EQ(begin, meant);
    EXPECT_TRUE(elf.functionAt(1, begin).empty());
}

TEST(RemoteProcess, OneThatDoesNotExistHasNoModules) { EXPECT_TRUE(listRemoteModules(0).empty()); }

TEST(MappedFile, WhatIsNoModuleTellsNothing)
{
    for (const char* const name : {"/no/such/file", "/dev/null", "/", "/proc/self/status"})
    {
        const MappedFile file(name);
        const formats::ElfFile elf(file.bytes());
        EXPECT_FALSE(elf.isValid()) << name;
        EXPECT_FALSE(elf.hasSection(".text"));
        EXPECT_EQ(elf.buildId(), "");
    }
}

}  // namespace

}  // namespace Oxa_1_1::platform
