#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// What compilers write down about the frames of each function, so that a stack can be walked.
namespace Oxa_1_1::formats
{

/// The registers that frames save, by their numbers in the tables.
enum RegisterNumber : unsigned
{
    RAX,
    RDX,
    RCX,
    RBX,
    RSI,
    RDI,
    RBP,
    RSP,
    R8,
    R9,
    R10,
    R11,
    R12,
    R13,
    R14,
    R15,
    /// The return address, and so the address of the frame itself.
    RIP,
    REGISTER_COUNT
};

/// How a register of the calling frame is found.
struct RegisterRule
{
    enum class Kind : std::uint8_t
    {
        Same,
        Undefined,
        /// In memory, at the frame address plus `value`.
        Offset,
        /// The frame address plus `value`.
        ValueOffset,
        /// What the register numbered `value` holds.
        Register,
        /// In memory, at the result of an expression.
        Expression,
        ValueExpression
    };
    Kind kind = Kind::Same;
    std::int64_t value = 0;
    /// The bytes of an expression, beginning with their number.
    const std::uint8_t* expression = nullptr;
};

/// The rules that hold at one address.
struct UnwindRow
{
    /// The frame address, which is the caller's stack pointer: a register plus an offset, or an expression.
    RegisterRule frame;
    std::int64_t frameOffset = 0;
    std::array<RegisterRule, REGISTER_COUNT> registers{};
    /// A frame that the system made to call a signal handler.
    bool isSignal = false;
};

/// The tables of one module.
struct UnwindTable
{
    /// The addresses that belong to the module.
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    /// The sorted index of the tables, as it lies in this process.
    const std::uint8_t* index = nullptr;
    /// What the tables lie in; nothing is read outside of it.
    std::span<const std::uint8_t> data;
    /// To be added to an address in this process for the one that the tables speak of; not 0 for another process.
    std::uint64_t shift = 0;
    /// Differs between modules that are loaded to the same place one after the other.
    std::uint64_t stamp = 0;

    bool contains(std::uint64_t address) const { return address >= begin && address < end; }
};

/// Fills in the rest of a table whose `data`, `index`, `begin` and `end` are known; false when the index does not fit.
bool checkUnwindTable(UnwindTable& table) noexcept;

/// The rules at `address`; false when the tables have none.
bool findUnwindRow(const UnwindTable& table, std::uint64_t address, UnwindRow& row) noexcept;

/// Reads the encoded numbers of the tables. Past the end everything reads as 0 and ok() is false.
class TableReader
{
   public:
    TableReader(const std::uint8_t* begin, const std::uint8_t* end, std::uint64_t shift = 0)
        : m_at(begin), m_end(end), m_shift(shift)
    {
    }

    bool ok() const { return m_ok; }
    bool atEnd() const { return m_at >= m_end; }
    const std::uint8_t* position() const { return m_at; }
    void skip(std::uint64_t count);
    void moveTo(const std::uint8_t* position) { m_at = position; }

    template <class T>
    T read();
    std::uint64_t unsignedNumber();
    std::int64_t signedNumber();
    /// A pointer in the encoding that the tables name. `base` is what data-relative ones count from.
    std::uint64_t pointer(std::uint8_t encoding, std::uint64_t base = 0);

   private:
    const std::uint8_t* m_at;
    const std::uint8_t* m_end;
    std::uint64_t m_shift;
    bool m_ok = true;
};

}  // namespace Oxa_1_1::formats
