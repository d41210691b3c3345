#include "base/formats/debug_lines.h"

#include <algorithm>
#include <array>

#include "base/formats/debug_codes.h"

namespace Oxa_1_1::formats
{

using namespace dwarf;

struct DebugLines::Program
{
    DebugEncoding encoding;
    std::uint8_t instructionLength = 1;
    std::uint8_t operationsAtOnce = 1;
    std::int8_t lineBase = 0;
    std::uint8_t lineRange = 1;
    std::uint8_t firstSpecial = 1;
    std::array<std::uint8_t, 256> operands{};
    Bytes bytes;
};

namespace
{

bool isAbsolute(std::string_view path)
{
    return path.starts_with('/') || path.starts_with('\\') || (path.size() > 1 && path[1] == ':');
}

void append(std::string& path, std::string_view part)
{
    if (part.empty()) return;
    if (isAbsolute(part)) path.clear();
    if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
    path += part;
}

}  // namespace

DebugLines::DebugLines(const DebugUnit& unit, const DebugSections& sections) : m_unitFolder(unit.folder())
{
    if (!unit.hasLines()) return;
    ByteReader reader(sections.lines, unit.lineOffset());
    Program program;
    if (!readHead(reader, unit, sections, program)) return;
    ByteReader instructions(program.bytes);
    run(instructions, program);
    std::stable_sort(m_sequences.begin(), m_sequences.end(),
                     [](const Sequence& a, const Sequence& b) { return a.range.begin < b.range.begin; });
}

bool DebugLines::readHead(ByteReader& reader, const DebugUnit& unit, const DebugSections& sections, Program& program)
{
    const std::uint64_t length = readUnitLength(reader, program.encoding.offsetSize);
    const std::size_t begin = reader.offset();
    reader.skip(length);
    if (!reader.ok()) return false;
    ByteReader head(sections.lines.first(reader.offset()), begin);
    program.encoding.version = head.read<std::uint16_t>();
    if (program.encoding.version < 2 || program.encoding.version > 5) return false;
    if (program.encoding.version >= 5)
    {
        program.encoding.addressSize = head.read<std::uint8_t>();
        head.skip(1);
    }
    const std::uint64_t headLength = head.number(program.encoding.offsetSize);
    ByteReader instructions = head;
    instructions.skip(headLength);
    program.instructionLength = head.read<std::uint8_t>();
    if (program.encoding.version >= 4) program.operationsAtOnce = head.read<std::uint8_t>();
    head.skip(1);
    program.lineBase = head.read<std::int8_t>();
    program.lineRange = head.read<std::uint8_t>();
    program.firstSpecial = head.read<std::uint8_t>();
    for (unsigned code = 1; code < program.firstSpecial; ++code) program.operands[code] = head.read<std::uint8_t>();
    if (program.encoding.version >= 5)
    {
        readFiles(head, sections, program.encoding, true);
        readFiles(head, sections, program.encoding, false);
    }
    else
    {
        m_folders.push_back(unit.folder());
        m_files.push_back({unit.name(), 0});
        readOldFiles(head);
    }
    program.bytes = instructions.take(instructions.left());
    return instructions.ok() && program.lineRange != 0;
}

void DebugLines::readOldFiles(ByteReader& reader)
{
    for (std::string_view folder = reader.text(); !folder.empty(); folder = reader.text()) m_folders.push_back(folder);
    for (std::string_view name = reader.text(); !name.empty(); name = reader.text())
    {
        m_files.push_back({name, reader.unsignedLeb()});
        // Time and size.
        reader.unsignedLeb();
        reader.unsignedLeb();
    }
}

void DebugLines::readFiles(ByteReader& reader, const DebugSections& sections, const DebugEncoding& encoding,
                           bool areFolders)
{
    struct Field
    {
        std::uint64_t content;
        std::uint64_t form;
    };
    std::vector<Field> fields(reader.read<std::uint8_t>());
    for (Field& field : fields) field = {reader.unsignedLeb(), reader.unsignedLeb()};
    // Entries of no field would not end.
    const std::uint64_t count = fields.empty() ? 0 : reader.unsignedLeb();
    if (fields.empty()) reader.unsignedLeb();
    for (std::uint64_t i = 0; i < count && reader.ok() && !reader.atEnd(); ++i)
    {
        File file{};
        for (const Field& field : fields)
        {
            const DebugValue value = readDebugValue(reader, field.form, 0, encoding, sections);
            if (field.content == DW_LNCT_path) file.name = value.text;
            if (field.content == DW_LNCT_directory_index) file.folder = value.number;
        }
        if (areFolders)
            m_folders.push_back(file.name);
        else
            m_files.push_back(file);
    }
}

void DebugLines::run(ByteReader& reader, const Program& program)
{
    struct State
    {
        std::uint64_t address = 0;
        std::uint64_t file = 1;
        std::uint64_t line = 1;
    };
    State state;
    std::size_t first = 0;
    const auto addRow = [&]
    {
        m_rows.push_back(
            {state.address, {static_cast<std::uint32_t>(state.file), static_cast<std::uint32_t>(state.line)}});
    };
    const auto advance = [&](std::uint64_t operations) { state.address += operations * program.instructionLength; };
    while (!reader.atEnd())
    {
        const auto code = reader.read<std::uint8_t>();
        if (code >= program.firstSpecial)
        {
            const unsigned special = code - static_cast<unsigned>(program.firstSpecial);
            advance(special / program.lineRange);
            state.line += static_cast<std::uint64_t>(program.lineBase + static_cast<int>(special % program.lineRange));
            addRow();
            continue;
        }
        switch (code)
        {
            case DW_LNS_extended:
            {
                ByteReader operands(reader.take(reader.unsignedLeb()));
                const auto extended = operands.read<std::uint8_t>();
                if (extended == DW_LNE_set_address)
                    state.address = operands.number(static_cast<unsigned>(std::min<std::size_t>(operands.left(), 8)));
                if (extended != DW_LNE_end_sequence) break;
                addRow();
                endSequence(first);
                first = m_rows.size();
                state = {};
                break;
            }
            case DW_LNS_copy:
                addRow();
                break;
            case DW_LNS_advance_pc:
                advance(reader.unsignedLeb());
                break;
            case DW_LNS_advance_line:
                state.line += static_cast<std::uint64_t>(reader.signedLeb());
                break;
            case DW_LNS_set_file:
                state.file = reader.unsignedLeb();
                break;
            case DW_LNS_const_add_pc:
                advance((255U - program.firstSpecial) / program.lineRange);
                break;
            case DW_LNS_fixed_advance_pc:
                state.address += reader.read<std::uint16_t>();
                break;
            default:
                for (unsigned i = 0; i < program.operands[code]; ++i) reader.unsignedLeb();
                break;
        }
    }
    // Without an end there is no last address.
    m_rows.resize(first);
}

void DebugLines::endSequence(std::size_t first)
{
    const auto begin = m_rows.begin() + static_cast<std::ptrdiff_t>(first);
    const auto byAddress = [](const Row& a, const Row& b) { return a.address < b.address; };
    if (!std::is_sorted(begin, m_rows.end(), byAddress)) std::stable_sort(begin, m_rows.end(), byAddress);
    const AddressRange range{begin->address, m_rows.back().address};
    // Code that the linker has dropped lies at 0.
    if (range.begin == 0 || range.begin >= range.end)
        m_rows.resize(first);
    else
        m_sequences.push_back({range, first, m_rows.size() - first});
}

bool DebugLines::find(std::uint64_t address, Line& line) const
{
    auto sequence = std::upper_bound(m_sequences.begin(), m_sequences.end(), address,
                                     [](std::uint64_t a, const Sequence& s) { return a < s.range.begin; });
    while (sequence != m_sequences.begin())
    {
        --sequence;
        if (!sequence->range.contains(address)) continue;
        const auto begin = m_rows.begin() + static_cast<std::ptrdiff_t>(sequence->first);
        const auto row = std::upper_bound(begin, begin + static_cast<std::ptrdiff_t>(sequence->count), address,
                                          [](std::uint64_t a, const Row& r) { return a < r.address; });
        line = (row - 1)->line;
        return true;
    }
    return false;
}

std::string DebugLines::file(std::uint64_t number) const
{
    if (number >= m_files.size()) return {};
    const File& file = m_files[static_cast<std::size_t>(number)];
    std::string path(m_unitFolder);
    if (file.folder < m_folders.size()) append(path, m_folders[static_cast<std::size_t>(file.folder)]);
    append(path, file.name);
    return path;
}

}  // namespace Oxa_1_1::formats
