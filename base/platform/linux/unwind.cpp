#include "base/platform/linux/unwind.h"

#include <atomic>

// The stack of another function is read as it lies there; sanitizers would object to its unused parts.
#define OXA_READS_FOREIGN_STACKS __attribute__((no_sanitize_address, no_sanitize_thread))

namespace Oxa_1_1::platform
{

namespace
{

/// The small stack machine of the tables, as far as compilers and the system use it.
class Expression
{
   public:
    Expression(const UnwindSource& source, const Registers& registers) : m_source(source), m_registers(registers) {}

    void push(std::uint64_t value)
    {
        if (m_depth == m_stack.size())
            m_ok = false;
        else
            m_stack[m_depth++] = value;
    }

    bool evaluate(const std::uint8_t* expression, std::uint64_t& result)
    {
        TableReader head(expression, expression + 10);
        const std::uint64_t size = head.unsignedNumber();
        TableReader reader(head.position(), head.position() + size);
        while (m_ok && reader.ok() && !reader.atEnd()) run(reader.read<std::uint8_t>(), reader);
        result = pop();
        return m_ok && reader.ok();
    }

   private:
    std::uint64_t pop()
    {
        if (m_depth == 0)
        {
            m_ok = false;
            return 0;
        }
        return m_stack[--m_depth];
    }

    void run(std::uint8_t code, TableReader& reader)
    {
        if (code >= 0x30 && code <= 0x4F)  // lit0 to lit31
            push(code - 0x30U);
        else if (code >= 0x70 && code <= 0x80)  // breg0 to breg16
            push(m_registers[code - 0x70U] + static_cast<std::uint64_t>(reader.signedNumber()));
        else if (!runConstant(code, reader) && !runOperation(code, reader))
            m_ok = false;
    }

    bool runConstant(std::uint8_t code, TableReader& reader)
    {
        switch (code)
        {
            case 0x08:
                push(reader.read<std::uint8_t>());
                return true;
            case 0x09:
                push(static_cast<std::uint64_t>(reader.read<std::int8_t>()));
                return true;
            case 0x0A:
                push(reader.read<std::uint16_t>());
                return true;
            case 0x0B:
                push(static_cast<std::uint64_t>(reader.read<std::int16_t>()));
                return true;
            case 0x0C:
                push(reader.read<std::uint32_t>());
                return true;
            case 0x0D:
                push(static_cast<std::uint64_t>(reader.read<std::int32_t>()));
                return true;
            case 0x10:
                push(reader.unsignedNumber());
                return true;
            case 0x11:
                push(static_cast<std::uint64_t>(reader.signedNumber()));
                return true;
            default:
                return false;
        }
    }

    bool runOperation(std::uint8_t code, TableReader& reader)
    {
        switch (code)
        {
            case 0x06:  // deref
            {
                std::uint64_t value = 0;
                m_ok = m_source.read(pop(), value) && m_ok;
                push(value);
                return true;
            }
            case 0x23:  // plus_uconst
                push(pop() + reader.unsignedNumber());
                return true;
            default:
                return runBinary(code);
        }
    }

    bool runBinary(std::uint8_t code)
    {
        const std::uint64_t second = pop();
        const std::uint64_t first = pop();
        switch (code)
        {
            case 0x1A:
                push(first & second);
                return true;
            case 0x1C:
                push(first - second);
                return true;
            case 0x22:
                push(first + second);
                return true;
            case 0x24:
                push(second < 64 ? first << second : 0);
                return true;
            case 0x2A:  // ge
                push(static_cast<std::int64_t>(first) >= static_cast<std::int64_t>(second) ? 1 : 0);
                return true;
            default:
                return false;
        }
    }

    const UnwindSource& m_source;
    const Registers& m_registers;
    std::array<std::uint64_t, 16> m_stack{};
    std::size_t m_depth = 0;
    bool m_ok = true;
};

bool frameAddress(const UnwindSource& source, const UnwindRow& row, const Registers& registers, std::uint64_t& frame)
{
    if (row.frame.kind == RegisterRule::Kind::Expression)
        return Expression(source, registers).evaluate(row.frame.expression, frame);
    const auto number = static_cast<std::uint64_t>(row.frame.value);
    if (row.frame.kind != RegisterRule::Kind::Register || number >= REGISTER_COUNT) return false;
    frame = registers[number] + static_cast<std::uint64_t>(row.frameOffset);
    return true;
}

bool applyRule(const UnwindSource& source, const RegisterRule& rule, const Registers& registers, std::uint64_t frame,
               std::uint64_t& value)
{
    const std::uint64_t place = frame + static_cast<std::uint64_t>(rule.value);
    std::uint64_t result = frame;
    Expression expression(source, registers);
    switch (rule.kind)
    {
        case RegisterRule::Kind::Same:
            return true;
        case RegisterRule::Kind::Undefined:
            value = 0;
            return true;
        case RegisterRule::Kind::Offset:
            return source.read(place, value);
        case RegisterRule::Kind::ValueOffset:
            value = place;
            return true;
        case RegisterRule::Kind::Register:
            if (rule.value < 0 || rule.value >= static_cast<std::int64_t>(REGISTER_COUNT)) return false;
            value = registers[static_cast<std::size_t>(rule.value)];
            return true;
        case RegisterRule::Kind::Expression:
            expression.push(frame);
            return expression.evaluate(rule.expression, result) && source.read(result, value);
        case RegisterRule::Kind::ValueExpression:
            expression.push(frame);
            return expression.evaluate(rule.expression, value);
    }
    return false;
}

bool findRow(const UnwindSource& source, UnwindTable& table, std::uint64_t address, UnwindRow& row)
{
    if (!table.contains(address) && !source.findTable(address, table)) return false;
    return findUnwindRow(table, address, row);
}

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

Step stepOut(const UnwindSource& source, UnwindTable& table, Registers& registers, bool& isAfterCall)
{
    UnwindRow row;
    const std::uint64_t address = registers[RIP] - (isAfterCall ? 1 : 0);
    if (!findRow(source, table, address, row))
    {
        // A call of something that is no code leaves its return address on top of the stack.
        if (isAfterCall || !source.read(registers[RSP], registers[RIP])) return Step::Outermost;
        registers[RSP] += sizeof(std::uint64_t);
        isAfterCall = true;
        return Step::Done;
    }
    if (row.registers[RIP].kind == RegisterRule::Kind::Undefined) return Step::Outermost;

    std::uint64_t frame = 0;
    if (!frameAddress(source, row, registers, frame)) return Step::Failed;
    Registers caller = registers;
    caller[RSP] = frame;
    for (std::size_t number = 0; number < REGISTER_COUNT; ++number)
        if (!applyRule(source, row.registers[number], registers, frame, caller[number])) return Step::Failed;
    registers = caller;
    isAfterCall = !row.isSignal;
    return Step::Done;
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
