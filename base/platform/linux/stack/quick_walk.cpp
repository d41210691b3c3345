#include "base/platform/linux/stack/quick_walk.h"

#include <dlfcn.h>

#include <array>
#include <atomic>
#include <cstddef>

// The stack of another function is read as it lies there; sanitizers would object to its unused parts.
#define OXA_READS_FOREIGN_STACKS __attribute__((no_sanitize_address, no_sanitize_thread))

namespace Oxa_1_1::platform
{

using formats::RBP;
using formats::RegisterRule;
using formats::RIP;
using formats::RSP;
using formats::Step;
using formats::UnwindRow;
using formats::UnwindTable;

namespace
{

/// A rule in one word: the frame address from the stack or frame pointer, and where the caller's frame pointer lies.
class QuickRule
{
   public:
    static constexpr std::uint64_t NONE = 0;
    static constexpr std::uint64_t OUTERMOST = 1;

    explicit QuickRule(std::uint64_t bits) : m_bits(bits) {}

    /// NONE for rules that do not fit.
    static std::uint64_t pack(const UnwindRow& row)
    {
        using Kind = RegisterRule::Kind;
        if (row.registers[RIP].kind == Kind::Undefined) return OUTERMOST;
        const RegisterRule& frameRegister = row.registers[RBP];
        const bool isSaved = frameRegister.kind == Kind::Offset;
        const bool fits = !row.isSignal && row.frame.kind == Kind::Register &&
                          (row.frame.value == RSP || row.frame.value == RBP) && fitsOffset(row.frameOffset) &&
                          fitsOffset(frameRegister.value) && (isSaved || frameRegister.kind == Kind::Same) &&
                          row.registers[RIP].kind == Kind::Offset && row.registers[RIP].value == -8 &&
                          row.registers[RSP].kind == Kind::Same;
        if (!fits) return NONE;
        return USABLE | (row.frame.value == RBP ? BY_FRAME : 0) | (isSaved ? SAVED : 0) |
               static_cast<std::uint64_t>(row.frameOffset & OFFSET_MASK) << FRAME_SHIFT |
               static_cast<std::uint64_t>(frameRegister.value & OFFSET_MASK) << SAVED_SHIFT;
    }

    bool isByFramePointer() const { return (m_bits & BY_FRAME) != 0; }
    bool isFramePointerSaved() const { return (m_bits & SAVED) != 0; }
    std::uint64_t frameOffset() const { return signedOffset(m_bits >> FRAME_SHIFT); }
    std::uint64_t savedOffset() const { return signedOffset(m_bits >> SAVED_SHIFT); }

   private:
    static constexpr std::uint64_t USABLE = 2;
    static constexpr std::uint64_t BY_FRAME = 4;
    static constexpr std::uint64_t SAVED = 8;
    static constexpr unsigned OFFSET_BITS = 30;
    static constexpr unsigned FRAME_SHIFT = 4;
    static constexpr unsigned SAVED_SHIFT = FRAME_SHIFT + OFFSET_BITS;
    static constexpr std::int64_t OFFSET_MASK = (std::int64_t{1} << OFFSET_BITS) - 1;

    static bool fitsOffset(std::int64_t offset)
    {
        constexpr std::int64_t LIMIT = std::int64_t{1} << (OFFSET_BITS - 1);
        return offset >= -LIMIT && offset < LIMIT;
    }

    static std::uint64_t signedOffset(std::uint64_t bits)
    {
        constexpr unsigned UNUSED = 64 - OFFSET_BITS;
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(bits << UNUSED) >> UNUSED);
    }

    std::uint64_t m_bits;
};

/// Rules of the addresses that were met before. Threads and signal handlers share it without a lock: a slot counts only
/// when both of its words belong together.
class RuleCache
{
   public:
    std::uint64_t find(std::uint64_t address, std::uint64_t stamp) const
    {
        const Slot& slot = m_slots[indexOf(address)];
        const std::uint64_t rule = slot.rule.load(std::memory_order_relaxed);
        const std::uint64_t check = slot.check.load(std::memory_order_relaxed);
        return check == checkOf(address, stamp, rule) ? rule : QuickRule::NONE;
    }

    void store(std::uint64_t address, std::uint64_t stamp, std::uint64_t rule)
    {
        Slot& slot = m_slots[indexOf(address)];
        slot.rule.store(rule, std::memory_order_relaxed);
        slot.check.store(checkOf(address, stamp, rule), std::memory_order_relaxed);
    }

   private:
    static constexpr unsigned INDEX_BITS = 12;

    struct Slot
    {
        std::atomic<std::uint64_t> rule{QuickRule::NONE};
        std::atomic<std::uint64_t> check{0};
    };

    static std::size_t indexOf(std::uint64_t address) { return (address * 0x9E3779B97F4A7C15U) >> (64 - INDEX_BITS); }

    static std::uint64_t checkOf(std::uint64_t address, std::uint64_t stamp, std::uint64_t rule)
    {
        return address ^ stamp ^ rule * 0x9E3779B97F4A7C15U;
    }

    std::array<Slot, std::size_t{1} << INDEX_BITS> m_slots{};
};

constinit RuleCache ruleCache;

constexpr std::uint64_t LARGEST_FRAME = 256 << 20;

OXA_READS_FOREIGN_STACKS std::uint64_t wordAt(std::uint64_t address)
{
    return *reinterpret_cast<const volatile std::uint64_t*>(address);
}

/// The rule at `address`, remembered or found.
std::uint64_t quickRuleAt(UnwindTable& table, std::uint64_t address)
{
    if (!table.contains(address) && !findUnwindTable(address, table)) return QuickRule::OUTERMOST;
    std::uint64_t rule = ruleCache.find(address, table.stamp);
    if (rule != QuickRule::NONE) return rule;
    UnwindRow row;
    if (!findUnwindRow(table, address, row)) return QuickRule::OUTERMOST;
    rule = QuickRule::pack(row);
    if (rule != QuickRule::NONE) ruleCache.store(address, table.stamp, rule);
    return rule;
}

}  // namespace

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

Step QuickWalk::step()
{
    const std::uint64_t bits = quickRuleAt(m_table, m_address - (m_isAfterCall ? 1 : 0));
    if (bits == QuickRule::OUTERMOST) return Step::Outermost;
    if (bits == QuickRule::NONE) return Step::Failed;
    const QuickRule rule(bits);
    const std::uint64_t frame = (rule.isByFramePointer() ? m_frame : m_stack) + rule.frameOffset();
    // Frames lie one behind the other; anything else is no stack.
    if (frame <= m_stack || frame - m_stack > LARGEST_FRAME || frame % sizeof(frame) != 0) return Step::Outermost;
    if (rule.isFramePointerSaved()) m_frame = wordAt(frame + rule.savedOffset());
    m_address = wordAt(frame - sizeof(std::uint64_t));
    m_stack = frame;
    m_isAfterCall = true;
    return m_address == 0 ? Step::Outermost : Step::Done;
}

}  // namespace Oxa_1_1::platform
