#include "base/platform/linux/stack/quick_walk.h"

#include <dlfcn.h>

namespace Oxa_1_1::platform
{

using formats::UnwindRow;
using formats::UnwindTable;

namespace detail
{

std::uint64_t findRule(const UnwindTable& table, std::uint64_t address, std::uint64_t instruction)
{
    const std::uint64_t beside = ruleCache.findBeside(address, instruction, table.stamp);
    if (beside != QuickRule::NONE) return beside;
    UnwindRow row;
    if (!findUnwindRow(table, instruction, row)) return QuickRule::OUTERMOST;
    const std::uint64_t rule = QuickRule::pack(row);
    if (rule != QuickRule::NONE) ruleCache.store(address, instruction, table.stamp, rule);
    return rule;
}

}  // namespace detail

bool findUnwindTable(std::uint64_t address, UnwindTable& table) noexcept
{
    dl_find_object found{};
    if (_dl_find_object(reinterpret_cast<void*>(address), &found) != 0 || found.dlfo_eh_frame == nullptr) return false;
    table.begin = reinterpret_cast<std::uintptr_t>(found.dlfo_map_start);
    table.end = reinterpret_cast<std::uintptr_t>(found.dlfo_map_end);
    table.index = static_cast<const std::uint8_t*>(found.dlfo_eh_frame);
    table.shift = 0;
    table.data = {static_cast<const std::uint8_t*>(found.dlfo_map_start), table.end - table.begin};
    return checkUnwindTable(table);
}

}  // namespace Oxa_1_1::platform
