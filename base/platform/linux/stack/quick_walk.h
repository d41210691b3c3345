#pragma once

#include <cstdint>

#include "base/formats/unwind.h"

/// Walking the stack of the calling thread.
namespace Oxa_1_1::platform
{

/// The tables of the module of this process that `address` lies in. No lock and no memory.
bool findUnwindTable(std::uint64_t address, formats::UnwindTable& table) noexcept;

/// The calling thread's frames by the shortest way: remembered rules, memory read as it is. Returns false when a frame
/// needs more than that; then nothing counts.
class QuickWalk
{
   public:
    explicit QuickWalk(const formats::Registers& registers)
        : m_address(registers[formats::RIP]), m_stack(registers[formats::RSP]), m_frame(registers[formats::RBP])
    {
    }

    std::uint64_t address() const { return m_address; }
    std::uint64_t stackPointer() const { return m_stack; }
    formats::Step step();

   private:
    std::uint64_t m_address;
    std::uint64_t m_stack;
    std::uint64_t m_frame;
    bool m_isAfterCall = false;
    formats::UnwindTable m_table;
};

}  // namespace Oxa_1_1::platform
