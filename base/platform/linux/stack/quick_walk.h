#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "base/formats/unwind.h"

// The stack of another function is read as it lies there; sanitizers would object to its unused parts.
#define OXA_READS_FOREIGN_STACKS __attribute__((no_sanitize_address, no_sanitize_thread))

/// Walking the stack of the calling thread.
namespace Oxa_1_1::platform
{

/// The tables of the module of this process that `address` lies in. No lock and no memory.
bool findUnwindTable(std::uint64_t address, formats::UnwindTable& table) noexcept;

namespace detail
{

/// A rule in one word: the frame address from the stack or frame pointer, and where the caller's frame pointer lies.
class QuickRule
{
   public:
    static constexpr std::uint64_t NONE = 0;
    static constexpr std::uint64_t OUTERMOST = 1;

    explicit QuickRule(std::uint64_t bits) : m_bits(bits) {}

    /// NONE for rules that do not fit.
    static std::uint64_t pack(const formats::UnwindRow& row)
    {
        using Kind = formats::RegisterRule::Kind;
        if (row.registers[formats::RIP].kind == Kind::Undefined) return OUTERMOST;
        const formats::RegisterRule& frameRegister = row.registers[formats::RBP];
        const bool isSaved = frameRegister.kind == Kind::Offset;
        const bool fits = !row.isSignal && row.frame.kind == Kind::Register &&
                          (row.frame.value == formats::RSP || row.frame.value == formats::RBP) &&
                          fitsOffset(row.frameOffset) && fitsOffset(frameRegister.value) &&
                          (isSaved || frameRegister.kind == Kind::Same) &&
                          row.registers[formats::RIP].kind == Kind::Offset && row.registers[formats::RIP].value == -8 &&
                          row.registers[formats::RSP].kind == Kind::Same;
        if (!fits) return NONE;
        return USABLE | (row.frame.value == formats::RBP ? BY_FRAME : 0) | (isSaved ? SAVED : 0) |
               static_cast<std::uint64_t>(row.frameOffset & OFFSET_MASK) << FRAME_SHIFT |
               static_cast<std::uint64_t>(frameRegister.value & OFFSET_MASK) << SAVED_SHIFT;
    }

    bool isByFramePointer() const { return (m_bits & BY_FRAME) != 0; }
    bool isFramePointerSaved() const { return (m_bits & SAVED) != 0; }
    std::uint64_t frameOffset() const { return signedOffset(m_bits); }
    std::uint64_t savedOffset() const { return signedOffset(m_bits << OFFSET_BITS); }

   private:
    static constexpr std::uint64_t USABLE = 2;
    static constexpr std::uint64_t BY_FRAME = 4;
    static constexpr std::uint64_t SAVED = 8;
    static constexpr unsigned OFFSET_BITS = 30;
    static constexpr unsigned SAVED_SHIFT = 4;
    static constexpr unsigned FRAME_SHIFT = SAVED_SHIFT + OFFSET_BITS;
    static constexpr std::int64_t OFFSET_MASK = (std::int64_t{1} << OFFSET_BITS) - 1;

    static bool fitsOffset(std::int64_t offset)
    {
        constexpr std::int64_t LIMIT = std::int64_t{1} << (OFFSET_BITS - 1);
        return offset >= -LIMIT && offset < LIMIT;
    }

    /// Of the highest bits.
    static std::uint64_t signedOffset(std::uint64_t bits)
    {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(bits) >> FRAME_SHIFT);
    }

    std::uint64_t m_bits;
};

/// Rules of the addresses that were met before. Threads and signal handlers share it without a lock: a slot counts only
/// when both of its words belong together. Two addresses that belong into one slot have it and its neighbour.
class RuleCache
{
   public:
    /// For the frame at `address`, whose rule is that of `instruction`.
    std::uint64_t find(std::uint64_t address, std::uint64_t instruction, std::uint64_t stamp)
    {
        return slotOf(address).find(instruction, stamp);
    }
    std::uint64_t findBeside(std::uint64_t address, std::uint64_t instruction, std::uint64_t stamp)
    {
        return besideOf(address).find(instruction, stamp);
    }

    void store(std::uint64_t address, std::uint64_t instruction, std::uint64_t stamp, std::uint64_t rule)
    {
        Slot& slot = slotOf(address);
        if (slot.rule.load(std::memory_order_relaxed) != QuickRule::NONE) besideOf(address).copyFrom(slot);
        slot.store(instruction, stamp, rule);
    }

   private:
    static constexpr std::size_t SLOTS = 4096;

    struct Slot
    {
        std::atomic<std::uint64_t> rule{QuickRule::NONE};
        std::atomic<std::uint64_t> check{0};

        std::uint64_t find(std::uint64_t instruction, std::uint64_t stamp) const
        {
            const std::uint64_t found = rule.load(std::memory_order_relaxed);
            return check.load(std::memory_order_relaxed) == checkOf(instruction, stamp, found) ? found
                                                                                               : QuickRule::NONE;
        }
        void store(std::uint64_t instruction, std::uint64_t stamp, std::uint64_t found)
        {
            rule.store(found, std::memory_order_relaxed);
            check.store(checkOf(instruction, stamp, found), std::memory_order_relaxed);
        }
        void copyFrom(const Slot& other)
        {
            rule.store(other.rule.load(std::memory_order_relaxed), std::memory_order_relaxed);
            check.store(other.check.load(std::memory_order_relaxed), std::memory_order_relaxed);
        }
    };

    /// In bytes: half a slot for each address, of which no two that calls return to are neighbours. Each frame waits
    /// for the one before it, so that one step more, to mix in the higher bits, would show.
    static std::size_t placeOf(std::uint64_t address) { return (address & (2 * SLOTS - 2)) * (sizeof(Slot) / 2); }
    Slot& slotAt(std::size_t place)
    {
        return *reinterpret_cast<Slot*>(reinterpret_cast<char*>(m_slots.data()) + place);
    }
    Slot& slotOf(std::uint64_t address) { return slotAt(placeOf(address)); }
    Slot& besideOf(std::uint64_t address) { return slotAt(placeOf(address) ^ sizeof(Slot)); }

    static std::uint64_t checkOf(std::uint64_t instruction, std::uint64_t stamp, std::uint64_t rule)
    {
        return instruction ^ stamp ^ rule * 0x9E3779B97F4A7C15U;
    }

    std::array<Slot, SLOTS> m_slots{};
};

inline constinit RuleCache ruleCache;

/// The rule as the tables have it, which is remembered.
std::uint64_t findRule(const formats::UnwindTable& table, std::uint64_t address, std::uint64_t instruction);

OXA_READS_FOREIGN_STACKS inline std::uint64_t wordAt(std::uint64_t address)
{
    return *reinterpret_cast<const volatile std::uint64_t*>(address);
}

}  // namespace detail

/// Where a quick walk begins.
struct QuickStart
{
    std::uint64_t address;
    std::uint64_t stack;
    std::uint64_t framePointer;
    bool isAfterCall;
};

/// Calls `visit(address, stackPointer, isAfterCall)` for the calling thread's frames until it returns false, by the
/// shortest way: remembered rules, memory read as it is. False when a frame needs more than that; then nothing counts.
template <class Visit>
bool walkQuickly(const QuickStart& start, Visit visit)
{
    using detail::QuickRule;
    constexpr std::uint64_t LARGEST_FRAME = 256 << 20;
    std::uint64_t address = start.address;
    std::uint64_t stack = start.stack;
    std::uint64_t framePointer = start.framePointer;
    formats::UnwindTable table;
    // Of the table; variables of their own stay in registers.
    std::uint64_t begin = 0;
    std::uint64_t size = 0;
    std::uint64_t stamp = 0;
    for (bool isAfterCall = start.isAfterCall; visit(address, stack, isAfterCall); isAfterCall = true)
    {
        const std::uint64_t instruction = address - (isAfterCall ? 1 : 0);
        if (instruction - begin >= size)
        {
            if (!findUnwindTable(instruction, table)) return true;
            begin = table.begin;
            size = table.end - begin;
            stamp = table.stamp;
        }
        std::uint64_t bits = detail::ruleCache.find(address, instruction, stamp);
        if (bits == QuickRule::NONE) bits = detail::findRule(table, address, instruction);
        if (bits <= QuickRule::OUTERMOST) return bits == QuickRule::OUTERMOST;
        const QuickRule rule(bits);
        std::uint64_t frame = stack;
        if (rule.isByFramePointer())
        {
            frame = framePointer;
            // A branch that is foretold takes no time; a choice without one would wait for the rule.
            asm volatile("" : "+r"(frame));
        }
        frame += rule.frameOffset();
        // Frames lie one behind the other; anything else is no stack.
        if (frame <= stack || frame - stack > LARGEST_FRAME || frame % sizeof(frame) != 0) return true;
        if (rule.isFramePointerSaved()) framePointer = detail::wordAt(frame + rule.savedOffset());
        address = detail::wordAt(frame - sizeof(std::uint64_t));
        stack = frame;
        if (address == 0) return true;
    }
    return true;
}

}  // namespace Oxa_1_1::platform
