#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/formats/unwind_table.h"

/// Walking from frame to frame.
namespace Oxa_1_1::formats
{

using Registers = std::array<std::uint64_t, REGISTER_COUNT>;

/// Where a walk finds what it needs.
class UnwindSource
{
   public:
    UnwindSource() = default;
    UnwindSource(const UnwindSource&) = delete;
    UnwindSource& operator=(const UnwindSource&) = delete;
    virtual ~UnwindSource() = default;

    /// The eight bytes at an address; false when they cannot be read.
    virtual bool read(std::uint64_t address, std::uint64_t& value) const = 0;
    /// The tables of the module at an address.
    virtual bool findTable(std::uint64_t address, UnwindTable& table) const = 0;
};

/// Calls `visit(address, stackPointer, isAfterCall)` for each frame, innermost first, until it returns false.
template <class Visit>
void walkFrames(const UnwindSource& source, Registers registers, Visit visit);

/// One step out. `isAfterCall` says of the frame that it waits for a call to return, and is set for the next one.
enum class Step
{
    Done,
    Outermost,
    Failed
};
Step stepOut(const UnwindSource& source, UnwindTable& table, Registers& registers, bool& isAfterCall);

template <class Visit>
void walkFrames(const UnwindSource& source, Registers registers, Visit visit)
{
    UnwindTable table;
    bool isAfterCall = false;
    while (visit(registers[RIP], registers[RSP], isAfterCall))
    {
        const std::uint64_t address = registers[RIP];
        const std::uint64_t stack = registers[RSP];
        if (stepOut(source, table, registers, isAfterCall) != Step::Done || registers[RIP] == 0) return;
        if (registers[RIP] == address && registers[RSP] == stack) return;
    }
}

}  // namespace Oxa_1_1::formats
