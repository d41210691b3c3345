#include "base/formats/unwind.h"

#include "base/formats/dwarf_codes.h"

namespace Oxa_1_1::formats
{

using namespace dwarf;

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
        if (code >= DW_OP_lit0 && code <= DW_OP_lit31)
            push(static_cast<std::uint64_t>(code - DW_OP_lit0));
        else if (code >= DW_OP_breg0 && code <= DW_OP_breg16)
            push(m_registers[static_cast<std::size_t>(code - DW_OP_breg0)] +
                 static_cast<std::uint64_t>(reader.signedNumber()));
        else if (!runConstant(code, reader) && !runOperation(code, reader))
            m_ok = false;
    }

    bool runConstant(std::uint8_t code, TableReader& reader)
    {
        switch (code)
        {
            case DW_OP_const1u:
                push(reader.read<std::uint8_t>());
                return true;
            case DW_OP_const1s:
                push(static_cast<std::uint64_t>(reader.read<std::int8_t>()));
                return true;
            case DW_OP_const2u:
                push(reader.read<std::uint16_t>());
                return true;
            case DW_OP_const2s:
                push(static_cast<std::uint64_t>(reader.read<std::int16_t>()));
                return true;
            case DW_OP_const4u:
                push(reader.read<std::uint32_t>());
                return true;
            case DW_OP_const4s:
                push(static_cast<std::uint64_t>(reader.read<std::int32_t>()));
                return true;
            case DW_OP_constu:
                push(reader.unsignedNumber());
                return true;
            case DW_OP_consts:
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
            case DW_OP_deref:
            {
                std::uint64_t value = 0;
                m_ok = m_source.read(pop(), value) && m_ok;
                push(value);
                return true;
            }
            case DW_OP_plus_uconst:
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
            case DW_OP_and:
                push(first & second);
                return true;
            case DW_OP_minus:
                push(first - second);
                return true;
            case DW_OP_plus:
                push(first + second);
                return true;
            case DW_OP_shl:
                push(second < 64 ? first << second : 0);
                return true;
            case DW_OP_ge:
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

}  // namespace Oxa_1_1::formats
