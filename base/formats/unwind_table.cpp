#include "base/formats/unwind_table.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "base/formats/dwarf_codes.h"

namespace Oxa_1_1::formats
{

using namespace dwarf;

namespace
{

// How the index of the tables is written; no other way is known to be in use.
constexpr std::uint8_t COUNT_ENCODING = DW_EH_PE_udata4;
constexpr std::uint8_t SORTED_PAIRS = DW_EH_PE_datarel | DW_EH_PE_sdata4;

/// Head of the index: version, three encodings, the place of the tables, the number of pairs; then the pairs.
constexpr std::size_t INDEX_HEAD = 12;

struct IndexPair
{
    std::int32_t address;
    std::int32_t description;
};

IndexPair pairAt(const std::uint8_t* index, std::size_t number)
{
    IndexPair pair{};
    std::memcpy(&pair, index + INDEX_HEAD + number * sizeof pair, sizeof pair);
    return pair;
}

/// How many bytes there are from `at` on.
std::size_t room(const UnwindTable& table, const std::uint8_t* at)
{
    const auto begin = reinterpret_cast<std::uintptr_t>(table.data.data());
    const auto position = reinterpret_cast<std::uintptr_t>(at);
    return position < begin || position - begin > table.data.size() ? 0 : table.data.size() - (position - begin);
}

std::uint32_t pairCount(const UnwindTable& table)
{
    std::uint32_t count = 0;
    const std::uint8_t* const index = table.index;
    if (index[0] == 1 && index[2] == COUNT_ENCODING && index[3] == SORTED_PAIRS)
        std::memcpy(&count, index + 8, sizeof count);
    return count;
}

std::uint64_t mix(std::uint64_t stamp, std::uint64_t value)
{
    stamp = (stamp ^ value) * 0x9E3779B97F4A7C15U;
    return stamp ^ stamp >> 29;
}

/// Of the place, the sizes, and samples of the index.
std::uint64_t stampOf(const UnwindTable& table)
{
    const std::uint8_t* const index = table.index;
    std::uint64_t head = 0;
    std::memcpy(&head, index + 4, sizeof head);
    std::uint64_t stamp = mix(reinterpret_cast<std::uintptr_t>(index), head);
    const std::uint32_t count = pairCount(table);
    for (const std::uint32_t sample : {count / 2, count - 1})
    {
        if (count == 0) break;
        const IndexPair pair = pairAt(index, sample);
        stamp =
            mix(stamp, static_cast<std::uint64_t>(pair.address) << 32 ^ static_cast<std::uint32_t>(pair.description));
    }
    return stamp;
}

/// The description of the last function that begins at or before `address`.
const std::uint8_t* findDescription(const UnwindTable& table, std::uint64_t address)
{
    const std::uint64_t base = reinterpret_cast<std::uintptr_t>(table.index) + table.shift;
    const auto offset = static_cast<std::int64_t>(address - base);
    std::size_t low = 0;
    std::size_t high = pairCount(table);
    if (high == 0 || pairAt(table.index, 0).address > offset) return nullptr;
    while (high - low > 1)
    {
        const std::size_t middle = low + (high - low) / 2;
        (pairAt(table.index, middle).address <= offset ? low : high) = middle;
    }
    return table.index + pairAt(table.index, low).description;
}

/// What the descriptions of many functions share.
struct Common
{
    std::uint64_t codeUnit = 1;
    std::int64_t dataUnit = 1;
    std::uint8_t encoding = 0;
    bool hasData = false;
    bool isSignal = false;
    const std::uint8_t* program = nullptr;
    const std::uint8_t* end = nullptr;
};

/// The bytes of one entry after its length; none when it does not lie within the tables.
TableReader entryAt(const UnwindTable& table, const std::uint8_t* at, const std::uint8_t*& end)
{
    std::uint32_t length = 0;
    const std::size_t size = room(table, at);
    end = at;
    if (size < sizeof length) return {at, at, table.shift};
    std::memcpy(&length, at, sizeof length);
    // This also rules out the marker of entries of over 4 GiB, which nobody makes.
    if (length > size - sizeof length) return {at, at, table.shift};
    end = at + sizeof length + length;
    return {at + sizeof length, end, table.shift};
}

bool readCommon(const UnwindTable& table, const std::uint8_t* at, Common& common)
{
    TableReader reader = entryAt(table, at, common.end);
    reader.read<std::uint32_t>();
    const auto version = reader.read<std::uint8_t>();
    const auto* const augmentation = reinterpret_cast<const char*>(reader.position());
    while (reader.ok() && reader.read<char>() != 0)
    {
    }
    common.codeUnit = reader.unsignedNumber();
    common.dataUnit = reader.signedNumber();
    const std::uint64_t returnRegister = version == 1 ? reader.read<std::uint8_t>() : reader.unsignedNumber();
    if (!reader.ok() || returnRegister != RIP) return false;

    common.hasData = augmentation[0] == 'z';
    if (!common.hasData)
    {
        common.program = reader.position();
        return augmentation[0] == 0;
    }
    const std::uint64_t size = reader.unsignedNumber();
    TableReader behind = reader;
    behind.skip(size);
    if (!behind.ok()) return false;
    common.program = behind.position();
    for (const char* letter = augmentation + 1; *letter != 0 && reader.ok(); ++letter)
    {
        switch (*letter)
        {
            case 'R':
                common.encoding = reader.read<std::uint8_t>();
                break;
            case 'P':
                reader.pointer(reader.read<std::uint8_t>());
                break;
            case 'L':
                reader.read<std::uint8_t>();
                break;
            case 'S':
                common.isSignal = true;
                break;
            default:
                // Unknown letters have their size counted above.
                return reader.ok();
        }
    }
    return reader.ok();
}

/// Runs the instructions that build the rules, up to those for one address.
class RowProgram
{
   public:
    RowProgram(const Common& common, std::uint64_t location, std::uint64_t target, UnwindRow& row)
        : m_common(common), m_location(location), m_target(target), m_row(row)
    {
    }

    /// What later instructions go back to.
    void markInitial() { m_initial = m_row; }

    bool run(TableReader reader)
    {
        while (reader.ok() && !reader.atEnd() && m_location <= m_target)
            if (!runOne(reader)) return false;
        return reader.ok();
    }

   private:
    static constexpr std::size_t MAX_DEPTH = 4;

    RegisterRule* rule(std::uint64_t number)
    {
        // Others than the general ones are of no use for a walk.
        return number < REGISTER_COUNT ? &m_row.registers[number] : &m_unused;
    }

    void set(std::uint64_t number, RegisterRule::Kind kind, std::int64_t value)
    {
        *rule(number) = {kind, value, nullptr};
    }

    void restore(std::uint64_t number)
    {
        if (number < REGISTER_COUNT) m_row.registers[number] = m_initial.registers[number];
    }

    void setExpression(std::uint64_t number, RegisterRule::Kind kind, TableReader& reader)
    {
        *rule(number) = {kind, 0, reader.position()};
        reader.skip(reader.unsignedNumber());
    }

    void advance(std::uint64_t units) { m_location += units * m_common.codeUnit; }

    /// Tables of nonsense may wrap around.
    std::int64_t dataOffset(std::uint64_t units) const
    {
        return static_cast<std::int64_t>(units * static_cast<std::uint64_t>(m_common.dataUnit));
    }

    std::int64_t signedDataOffset(TableReader& reader) const
    {
        return dataOffset(static_cast<std::uint64_t>(reader.signedNumber()));
    }

    bool runOne(TableReader& reader)
    {
        const auto code = reader.read<std::uint8_t>();
        const std::uint64_t operand = code & PRIMARY_OPERAND;
        switch (code & PRIMARY_INSTRUCTION)
        {
            case DW_CFA_advance_loc:
                advance(operand);
                return true;
            case DW_CFA_offset:
                set(operand, RegisterRule::Kind::Offset, dataOffset(reader.unsignedNumber()));
                return true;
            case DW_CFA_restore:
                restore(operand);
                return true;
            default:
                return runExtended(code, reader) || runFrame(code, reader);
        }
    }

    bool runExtended(std::uint8_t code, TableReader& reader)
    {
        using Kind = RegisterRule::Kind;
        std::uint64_t number = 0;
        switch (code)
        {
            case DW_CFA_nop:
                return true;
            case DW_CFA_set_loc:
                m_location = reader.pointer(m_common.encoding);
                return true;
            case DW_CFA_advance_loc1:
                advance(reader.read<std::uint8_t>());
                return true;
            case DW_CFA_advance_loc2:
                advance(reader.read<std::uint16_t>());
                return true;
            case DW_CFA_advance_loc4:
                advance(reader.read<std::uint32_t>());
                return true;
            case DW_CFA_offset_extended:
                number = reader.unsignedNumber();
                set(number, Kind::Offset, dataOffset(reader.unsignedNumber()));
                return true;
            case DW_CFA_restore_extended:
                restore(reader.unsignedNumber());
                return true;
            case DW_CFA_undefined:
                set(reader.unsignedNumber(), Kind::Undefined, 0);
                return true;
            case DW_CFA_same_value:
                set(reader.unsignedNumber(), Kind::Same, 0);
                return true;
            case DW_CFA_register:
                number = reader.unsignedNumber();
                set(number, Kind::Register, static_cast<std::int64_t>(reader.unsignedNumber()));
                return true;
            case DW_CFA_expression:
                setExpression(reader.unsignedNumber(), Kind::Expression, reader);
                return true;
            case DW_CFA_offset_extended_sf:
                number = reader.unsignedNumber();
                set(number, Kind::Offset, signedDataOffset(reader));
                return true;
            case DW_CFA_val_offset:
                number = reader.unsignedNumber();
                set(number, Kind::ValueOffset, dataOffset(reader.unsignedNumber()));
                return true;
            case DW_CFA_val_offset_sf:
                number = reader.unsignedNumber();
                set(number, Kind::ValueOffset, signedDataOffset(reader));
                return true;
            case DW_CFA_val_expression:
                setExpression(reader.unsignedNumber(), Kind::ValueExpression, reader);
                return true;
            case DW_CFA_GNU_args_size:
                reader.unsignedNumber();
                return true;
            default:
                return false;
        }
    }

    /// Instructions on the frame address and on whole rows.
    bool runFrame(std::uint8_t code, TableReader& reader)
    {
        using Kind = RegisterRule::Kind;
        switch (code)
        {
            case DW_CFA_remember_state:
                if (m_depth == MAX_DEPTH) return false;
                m_saved[m_depth++] = m_row;
                return true;
            case DW_CFA_restore_state:
                if (m_depth == 0) return false;
                m_row = m_saved[--m_depth];
                return true;
            case DW_CFA_def_cfa:
                m_row.frame = {Kind::Register, static_cast<std::int64_t>(reader.unsignedNumber()), nullptr};
                m_row.frameOffset = static_cast<std::int64_t>(reader.unsignedNumber());
                return true;
            case DW_CFA_def_cfa_register:
                m_row.frame = {Kind::Register, static_cast<std::int64_t>(reader.unsignedNumber()), nullptr};
                return true;
            case DW_CFA_def_cfa_offset:
                m_row.frameOffset = static_cast<std::int64_t>(reader.unsignedNumber());
                return true;
            case DW_CFA_def_cfa_expression:
                m_row.frame = {Kind::Expression, 0, reader.position()};
                reader.skip(reader.unsignedNumber());
                return true;
            case DW_CFA_def_cfa_sf:
                m_row.frame = {Kind::Register, static_cast<std::int64_t>(reader.unsignedNumber()), nullptr};
                m_row.frameOffset = signedDataOffset(reader);
                return true;
            case DW_CFA_def_cfa_offset_sf:
                m_row.frameOffset = signedDataOffset(reader);
                return true;
            default:
                return false;
        }
    }

    const Common& m_common;
    std::uint64_t m_location;
    std::uint64_t m_target;
    UnwindRow& m_row;
    UnwindRow m_initial;
    std::array<UnwindRow, MAX_DEPTH> m_saved;
    std::size_t m_depth = 0;
    RegisterRule m_unused;
};

}  // namespace

void TableReader::skip(std::uint64_t count)
{
    if (count > static_cast<std::uint64_t>(m_end - std::min(m_at, m_end)))
    {
        m_ok = false;
        m_at = m_end;
        return;
    }
    m_at += count;
}

template <class T>
T TableReader::read()
{
    T value{};
    const std::uint8_t* const at = m_at;
    skip(sizeof value);
    if (m_ok) std::memcpy(&value, at, sizeof value);
    return value;
}

template std::int8_t TableReader::read();
template std::int16_t TableReader::read();
template std::int32_t TableReader::read();
template std::int64_t TableReader::read();
template std::uint8_t TableReader::read();
template std::uint16_t TableReader::read();
template std::uint32_t TableReader::read();
template std::uint64_t TableReader::read();

std::uint64_t TableReader::unsignedNumber()
{
    std::uint64_t value = 0;
    for (unsigned shift = 0;; shift += 7)
    {
        const auto byte = read<std::uint8_t>();
        if (shift < 64) value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if ((byte & 0x80) == 0) return value;
    }
}

std::int64_t TableReader::signedNumber()
{
    std::uint64_t value = 0;
    for (unsigned shift = 0;;)
    {
        const auto byte = read<std::uint8_t>();
        if (shift < 64) value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        shift += 7;
        if ((byte & 0x80) != 0) continue;
        if (shift < 64 && (byte & 0x40) != 0) value |= std::numeric_limits<std::uint64_t>::max() << shift;
        return static_cast<std::int64_t>(value);
    }
}

std::uint64_t TableReader::pointer(std::uint8_t encoding, std::uint64_t base)
{
    if (encoding == DW_EH_PE_omit) return 0;
    const std::uint64_t here = reinterpret_cast<std::uintptr_t>(m_at) + m_shift;
    std::uint64_t value = 0;
    switch (encoding & POINTER_FORMAT)
    {
        case DW_EH_PE_absptr:
        case DW_EH_PE_udata8:
        case DW_EH_PE_sdata8:
            value = read<std::uint64_t>();
            break;
        case DW_EH_PE_uleb128:
            value = unsignedNumber();
            break;
        case DW_EH_PE_udata2:
            value = read<std::uint16_t>();
            break;
        case DW_EH_PE_udata4:
            value = read<std::uint32_t>();
            break;
        case DW_EH_PE_sleb128:
            value = static_cast<std::uint64_t>(signedNumber());
            break;
        case DW_EH_PE_sdata2:
            value = static_cast<std::uint64_t>(read<std::int16_t>());
            break;
        case DW_EH_PE_sdata4:
            value = static_cast<std::uint64_t>(read<std::int32_t>());
            break;
        default:
            m_ok = false;
            return 0;
    }
    if ((encoding & POINTER_BASE) == DW_EH_PE_pcrel) return value + here;
    if ((encoding & POINTER_BASE) == DW_EH_PE_datarel) return value + base;
    return value;
}

bool checkUnwindTable(UnwindTable& table) noexcept
{
    const std::size_t size = room(table, table.index);
    if (size < INDEX_HEAD || (size - INDEX_HEAD) / sizeof(IndexPair) < pairCount(table)) return false;
    table.stamp = stampOf(table);
    return true;
}

bool findUnwindRow(const UnwindTable& table, std::uint64_t address, UnwindRow& row) noexcept
{
    const std::uint8_t* const description = findDescription(table, address);
    if (description == nullptr) return false;
    const std::uint8_t* end = nullptr;
    TableReader reader = entryAt(table, description, end);
    const std::uint8_t* const here = reader.position();
    const auto back = reader.read<std::int32_t>();
    Common common;
    if (!reader.ok() || back <= 0 || !readCommon(table, here - back, common)) return false;

    const std::uint64_t begin = reader.pointer(common.encoding);
    const std::uint64_t size = reader.pointer(common.encoding & POINTER_FORMAT);
    if (!reader.ok() || address < begin || address - begin >= size) return false;
    if (common.hasData) reader.skip(reader.unsignedNumber());

    row = UnwindRow{};
    row.isSignal = common.isSignal;
    RowProgram program(common, begin, address, row);
    if (!program.run({common.program, common.end, table.shift})) return false;
    program.markInitial();
    return program.run({reader.position(), end, table.shift});
}

}  // namespace Oxa_1_1::formats
