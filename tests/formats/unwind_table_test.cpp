// Rules read from tables that are written here byte by byte.

#include "base/formats/unwind_table.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include "base/formats/unwind.h"

namespace Oxa_1_1::formats
{

namespace
{

using Bytes = std::vector<std::uint8_t>;
using Kind = RegisterRule::Kind;

constexpr std::uint64_t CODE = 0x400000;
constexpr std::uint64_t CODE_SIZE = 0x100;

/// The tables of a module with one function at CODE.
class Module
{
   public:
    explicit Module(const Bytes& program, const char* augmentation = "zR")
    {
        appendWords({0, 0, 1});
        m_bytes[0] = 1;
        m_bytes[1] = 0x1B;
        m_bytes[2] = 0x03;
        m_bytes[3] = 0x3B;
        appendWords({0, 0});

        const std::size_t common = begin();
        appendWords({0});
        append({1});
        for (const char* letter = augmentation; *letter != 0; ++letter) append({static_cast<std::uint8_t>(*letter)});
        // Code unit 1, data unit -8, return address in register 16; one byte of data: absolute addresses.
        append({0, 1, 0x78, 16, 1, 0x00});
        // The frame address is the stack pointer plus 8, and the return address lies below it.
        append({0x0C, 7, 8, 0x90, 1});
        finish(common);

        const std::size_t description = begin();
        appendWords({static_cast<std::uint32_t>(description + 4 - common)});
        appendLong(CODE);
        appendLong(CODE_SIZE);
        append({0});
        append(program);
        finish(description);

        table.data = m_bytes;
        table.index = m_bytes.data();
        table.shift = CODE - reinterpret_cast<std::uintptr_t>(m_bytes.data());
        table.begin = CODE;
        table.end = CODE + CODE_SIZE;
        // The index speaks of the place CODE itself, so the function is at distance 0.
        setWord(16, static_cast<std::uint32_t>(description));
    }

    Bytes& bytes() { return m_bytes; }
    UnwindTable table;

   private:
    void append(const Bytes& bytes) { m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end()); }
    void appendWords(std::initializer_list<std::uint32_t> words)
    {
        for (const std::uint32_t word : words)
        {
            m_bytes.resize(m_bytes.size() + sizeof word);
            std::memcpy(m_bytes.data() + m_bytes.size() - sizeof word, &word, sizeof word);
        }
    }
    void appendLong(std::uint64_t value)
    {
        appendWords({static_cast<std::uint32_t>(value), static_cast<std::uint32_t>(value >> 32)});
    }
    void setWord(std::size_t at, std::uint32_t word) { std::memcpy(m_bytes.data() + at, &word, sizeof word); }
    std::size_t begin()
    {
        appendWords({0});
        return m_bytes.size() - 4;
    }
    void finish(std::size_t entry) { setWord(entry, static_cast<std::uint32_t>(m_bytes.size() - entry - 4)); }

    Bytes m_bytes;
};

TEST(UnwindTable, RulesHoldFromTheirAddressOn)
{
    // push rbp at 1; mov rbp, rsp at 4; epilogue remembered, undone at 16.
    Module module({0x41, 0x0E, 16, 0x86, 2, 0x43, 0x0D, 6, 0x0A, 0x48, 0x0C, 7, 8, 0xC6, 0x44, 0x0B});
    const struct
    {
        std::uint64_t address;
        std::int64_t frameRegister;
        std::int64_t frameOffset;
        Kind savedFrame;
    } cases[] = {{0, RSP, 8, Kind::Same},    {1, RSP, 16, Kind::Offset},  {3, RSP, 16, Kind::Offset},
                 {4, RBP, 16, Kind::Offset}, {11, RBP, 16, Kind::Offset}, {12, RSP, 8, Kind::Same},
                 {15, RSP, 8, Kind::Same},   {16, RBP, 16, Kind::Offset}, {255, RBP, 16, Kind::Offset}};
    for (const auto& c : cases)
    {
        UnwindRow row;
        ASSERT_TRUE(findUnwindRow(module.table, CODE + c.address, row)) << c.address;
        EXPECT_EQ(row.frame.value, c.frameRegister) << c.address;
        EXPECT_EQ(row.frameOffset, c.frameOffset) << c.address;
        EXPECT_EQ(row.registers[RBP].kind, c.savedFrame) << c.address;
        EXPECT_EQ(row.registers[RIP].value, -8);
        EXPECT_FALSE(row.isSignal);
    }
    UnwindRow row;
    EXPECT_FALSE(findUnwindRow(module.table, CODE + CODE_SIZE, row));
    EXPECT_FALSE(findUnwindRow(module.table, CODE - 1, row));
}

TEST(UnwindTable, EveryKindOfRuleIsRead)
{
    const struct
    {
        Bytes program;
        unsigned number;
        Kind kind;
        std::int64_t value;
    } cases[] = {
        {{0x07, 16}, RIP, Kind::Undefined, 0},
        {{0x08, 3}, RBX, Kind::Same, 0},
        {{0x09, 3, 5}, RBX, Kind::Register, RDI},
        {{0x05, 12, 3}, R12, Kind::Offset, -24},
        {{0x11, 12, 0x7D}, R12, Kind::Offset, 24},
        {{0x14, 12, 2}, R12, Kind::ValueOffset, -16},
        {{0x15, 12, 0x7F}, R12, Kind::ValueOffset, 8},
        {{0x10, 3, 2, 0x77, 0}, RBX, Kind::Expression, 0},
        {{0x16, 3, 2, 0x77, 0}, RBX, Kind::ValueExpression, 0},
        {{0x83, 4, 0xC3}, RBX, Kind::Same, 0},
        {{0x83, 4, 0x06, 3}, RBX, Kind::Same, 0},
        // Wide steps, then a rule at their end.
        {{0x02, 9, 0x83, 4}, RBX, Kind::Offset, -32},
        {{0x03, 9, 0, 0x83, 4}, RBX, Kind::Offset, -32},
        {{0x04, 9, 0, 0, 0, 0x83, 4}, RBX, Kind::Offset, -32},
        {{0x2E, 16, 0x83, 4}, RBX, Kind::Offset, -32},
        // A vector register is of no use, but does no harm.
        {{0x05, 20, 3, 0x83, 4}, RBX, Kind::Offset, -32},
    };
    for (const auto& c : cases)
    {
        Module module(c.program);
        UnwindRow row;
        ASSERT_TRUE(findUnwindRow(module.table, CODE + 9, row));
        EXPECT_EQ(row.registers[c.number].kind, c.kind) << int{c.program[0]};
        EXPECT_EQ(row.registers[c.number].value, c.value) << int{c.program[0]};
    }
}

TEST(UnwindTable, BadProgramsAndTablesGiveNoRules)
{
    UnwindRow row;
    for (const Bytes& program : {Bytes{0x3F}, Bytes{0x0B}, Bytes{0x02}, Bytes{0x10, 3, 100, 1}, Bytes{0x83, 0x80, 0x80},
                                 Bytes{0x0A, 0x0A, 0x0A, 0x0A, 0x0A}})
    {
        Module module(program);
        EXPECT_FALSE(findUnwindRow(module.table, CODE + 9, row)) << int{program[0]};
    }
    // Any byte may be anything, and the end anywhere.
    Module whole({0x41, 0x0E, 16, 0x86, 2, 0x43, 0x0D, 6});
    for (std::size_t i = 0; i < whole.bytes().size(); ++i)
    {
        const std::uint8_t former = std::exchange(whole.bytes()[i], std::uint8_t{0xFF});
        if (checkUnwindTable(whole.table)) findUnwindRow(whole.table, CODE + 9, row);
        whole.bytes()[i] = former;
        UnwindTable cut = whole.table;
        const Bytes head(whole.bytes().begin(), whole.bytes().begin() + static_cast<std::ptrdiff_t>(i));
        cut.data = head;
        cut.index = head.data();
        EXPECT_FALSE(checkUnwindTable(cut) && findUnwindRow(cut, CODE + 9, row)) << i;
    }
    EXPECT_TRUE(checkUnwindTable(whole.table) && findUnwindRow(whole.table, CODE + 9, row));
}

/// A stack of a few words.
class SmallStack : public UnwindSource
{
   public:
    SmallStack(const UnwindTable& table, std::vector<std::uint64_t> words) : m_table(table), m_words(std::move(words))
    {
    }

    bool read(std::uint64_t address, std::uint64_t& value) const override
    {
        if (address < BEGIN || (address - BEGIN) / 8 >= m_words.size()) return false;
        value = m_words[(address - BEGIN) / 8];
        return true;
    }
    bool findTable(std::uint64_t address, UnwindTable& table) const override
    {
        table = m_table;
        return table.contains(address);
    }

    static constexpr std::uint64_t BEGIN = 0x7000;

   private:
    const UnwindTable& m_table;
    std::vector<std::uint64_t> m_words;
};

TEST(Unwind, StepsByTheRules)
{
    const struct
    {
        Bytes program;
        std::uint64_t frame;
        std::uint64_t returnAddress;
    } cases[] = {
        {{}, SmallStack::BEGIN + 8, 0x1000},
        {{0x0E, 24}, SmallStack::BEGIN + 24, 0x1002},
        // The frame address by expressions: rsp + 16; what lies at rsp + 24, plus 8.
        {{0x0F, 2, 0x77, 16}, SmallStack::BEGIN + 16, 0x1001},
        {{0x0F, 5, 0x77, 24, 0x06, 0x23, 8}, SmallStack::BEGIN + 8, 0x1000},
        // As the entries of a linkage table have it: 8 more in the last bytes of each 16.
        {{0x0F, 11, 0x77, 8, 0x80, 0, 0x3F, 0x1A, 0x3B, 0x2A, 0x33, 0x24, 0x22}, SmallStack::BEGIN + 8, 0x1000},
        // The return address at the result of an expression on the frame address.
        {{0x10, 16, 2, 0x23, 8}, SmallStack::BEGIN + 8, 0x1002},
    };
    for (const auto& c : cases)
    {
        const Module module(c.program);
        const SmallStack stack(module.table, {0x1000, 0x1001, 0x1002, SmallStack::BEGIN, 0x1004});
        Registers registers{};
        registers[RIP] = CODE + 4;
        registers[RSP] = SmallStack::BEGIN;
        UnwindTable table;
        bool isAfterCall = false;
        ASSERT_EQ(stepOut(stack, table, registers, isAfterCall), Step::Done);
        EXPECT_EQ(registers[RSP], c.frame);
        EXPECT_EQ(registers[RIP], c.returnAddress);
        EXPECT_TRUE(isAfterCall);
    }
}

TEST(Unwind, EndsWhereTheRulesDo)
{
    const struct
    {
        Bytes program;
        std::uint64_t stackPointer;
        Step step;
    } cases[] = {
        {{0x07, 16}, SmallStack::BEGIN, Step::Outermost},   {{}, 0x10, Step::Failed},
        {{0x0F, 1, 0x06}, SmallStack::BEGIN, Step::Failed}, {{0x0F, 1, 0xF0}, SmallStack::BEGIN, Step::Failed},
        {{0x0F, 0}, SmallStack::BEGIN, Step::Failed},       {{0x0C, 20, 8}, SmallStack::BEGIN, Step::Failed},
    };
    for (const auto& c : cases)
    {
        const Module module(c.program);
        const SmallStack stack(module.table, {0x1000});
        Registers registers{};
        registers[RIP] = CODE + 4;
        registers[RSP] = c.stackPointer;
        UnwindTable table;
        bool isAfterCall = true;
        EXPECT_EQ(stepOut(stack, table, registers, isAfterCall), c.step);
    }
}

TEST(Unwind, AFrameOfTheSystemIsLeftWithoutACall)
{
    const Module module({}, "zRS");
    const SmallStack stack(module.table, {0x1000});
    Registers registers{};
    registers[RIP] = CODE;
    registers[RSP] = SmallStack::BEGIN;
    UnwindTable table;
    bool isAfterCall = false;
    EXPECT_EQ(stepOut(stack, table, registers, isAfterCall), Step::Done);
    EXPECT_FALSE(isAfterCall);
}

}  // namespace

}  // namespace Oxa_1_1::formats
