#include "base/formats/debug_info.h"

#include <algorithm>

#include "base/formats/debug_codes.h"

namespace Oxa_1_1::formats
{

using namespace dwarf;

namespace
{

/// What units that were read may take together, before the one that was used least lately is given up.
constexpr std::size_t MOST_MEMORY = 8 << 20;

/// How far entries refer to entries.
constexpr int LONGEST_CHAIN = 16;

/// How many ranges that begin before an address are looked at for one that it lies in: they lie side by side, but for
/// few.
constexpr int MOST_OVERLAPS = 64;

template <class Ranges>
auto findRange(const Ranges& ranges, std::uint64_t address)
{
    auto found = std::upper_bound(ranges.begin(), ranges.end(), address,
                                  [](std::uint64_t a, const auto& entry) { return a < entry.range.begin; });
    for (int i = 0; i < MOST_OVERLAPS && found != ranges.begin(); ++i)
        if ((--found)->range.contains(address)) return found;
    return ranges.end();
}

template <class Ranges>
void sortRanges(Ranges& ranges)
{
    // Of two that begin together the smaller one is looked at first.
    std::stable_sort(ranges.begin(), ranges.end(),
                     [](const auto& a, const auto& b)
                     {
                         if (a.range.begin != b.range.begin) return a.range.begin < b.range.begin;
                         return a.range.end > b.range.end;
                     });
}

}  // namespace

DebugInfo::DebugInfo(const DebugSections& sections) : m_sections(sections)
{
    ByteReader reader(sections.info);
    while (!reader.atEnd())
    {
        DebugUnit unit = DebugUnit::read(reader, sections);
        if (!unit.holdsCode()) continue;
        for (const AddressRange& range : unit.ranges()) m_ranges.push_back({range, m_units.size()});
        unit.dropRanges();
        m_units.push_back(std::move(unit));
    }
    sortRanges(m_ranges);
}

bool DebugInfo::find(std::uint64_t address, std::vector<SourceFrame>& frames)
{
    LoadedUnit* const loaded = loadedAt(address);
    if (loaded == nullptr) return false;
    DebugLines::Line line;
    loaded->lines.find(address, line);
    std::vector<Call> calls;
    findCalls(*loaded, address, calls);
    if (calls.empty() && line.number == 0) return false;
    std::ranges::reverse(calls);
    for (const Call& call : calls)
    {
        frames.push_back({functionName(*loaded, call.entry), loaded->lines.file(line.file), line.number});
        // The function outside stands where it calls this one.
        line = {static_cast<std::uint32_t>(call.file), static_cast<std::uint32_t>(call.line)};
    }
    if (calls.empty()) frames.push_back({{}, loaded->lines.file(line.file), line.number});
    return true;
}

DebugInfo::LoadedUnit* DebugInfo::loadedAt(std::uint64_t address)
{
    const auto found = findRange(m_ranges, address);
    return found == m_ranges.end() ? nullptr : &load(found->unit);
}

DebugInfo::LoadedUnit& DebugInfo::load(std::size_t unit)
{
    const auto known = std::find_if(m_loaded.begin(), m_loaded.end(),
                                    [unit](const LoadedUnit& loaded) { return loaded.unit == unit; });
    if (known != m_loaded.end())
    {
        m_loaded.splice(m_loaded.begin(), m_loaded, known);
        return m_loaded.front();
    }
    LoadedUnit& loaded = m_loaded.emplace_front();
    loaded.unit = unit;
    loaded.table = m_units[unit].abbreviations(m_sections);
    loaded.lines = DebugLines(m_units[unit], m_sections);
    readFunctions(loaded);
    std::size_t size = 0;
    for (const LoadedUnit& other : m_loaded) size += other.size();
    while (size > MOST_MEMORY && m_loaded.size() > 1)
    {
        size -= m_loaded.back().size();
        m_loaded.pop_back();
    }
    return loaded;
}

void DebugInfo::readFunctions(LoadedUnit& loaded) const
{
    const DebugUnit& unit = m_units[loaded.unit];
    ByteReader reader(m_sections.info.first(static_cast<std::size_t>(unit.end())), unit.firstEntry());
    DebugEntry entry;
    while (unit.readEntry(reader, m_sections, loaded.table, entry))
    {
        if (entry.tag != DW_TAG_subprogram) continue;
        for (const AddressRange& range : unit.rangesOf(entry, m_sections))
            loaded.functions.push_back({range, entry.offset});
    }
    sortRanges(loaded.functions);
}

bool DebugInfo::contains(const DebugUnit& unit, const DebugEntry& entry, std::uint64_t address) const
{
    if (!entry.low && !entry.ranges) return false;
    const std::vector<AddressRange> ranges = unit.rangesOf(entry, m_sections);
    return std::any_of(ranges.begin(), ranges.end(), [&](const AddressRange& r) { return r.contains(address); });
}

void DebugInfo::findCalls(const LoadedUnit& loaded, std::uint64_t address, std::vector<Call>& calls) const
{
    const DebugUnit& unit = m_units[loaded.unit];
    const auto function = findRange(loaded.functions, address);
    if (function == loaded.functions.end()) return;
    calls.push_back({function->entry, 0, 0});
    ByteReader reader(m_sections.info.first(static_cast<std::size_t>(unit.end())), function->entry);
    DebugEntry entry;
    if (!unit.readEntry(reader, m_sections, loaded.table, entry) || !entry.hasChildren) return;
    // Entries that the address does not lie in are passed over with all that is in them.
    std::size_t depth = 1;
    std::size_t passedOver = 0;
    while (depth > 0 && unit.readEntry(reader, m_sections, loaded.table, entry))
    {
        if (entry.tag == 0)
        {
            --depth;
            if (depth < passedOver) passedOver = 0;
            continue;
        }
        if (passedOver == 0 && entry.tag == DW_TAG_inlined_subroutine && contains(unit, entry, address))
        {
            calls.push_back({entry.offset, entry.callFile, entry.callLine});
        }
        else if (passedOver == 0 && entry.hasChildren)
        {
            const bool isBlock =
                entry.tag == DW_TAG_lexical_block || entry.tag == DW_TAG_try_block || entry.tag == DW_TAG_catch_block;
            const bool isEntered = isBlock && ((!entry.low && !entry.ranges) || contains(unit, entry, address));
            if (!isEntered && entry.sibling > reader.offset())
            {
                reader.moveTo(entry.sibling);
                continue;
            }
            if (!isEntered) passedOver = depth + 1;
        }
        if (entry.hasChildren) ++depth;
    }
}

const DebugUnit* DebugInfo::unitOf(std::uint64_t entry) const
{
    const auto behind = std::upper_bound(m_units.begin(), m_units.end(), entry,
                                         [](std::uint64_t e, const DebugUnit& unit) { return e < unit.begin(); });
    return behind == m_units.begin() ? nullptr : &*(behind - 1);
}

std::string DebugInfo::functionName(const LoadedUnit& loaded, std::uint64_t offset) const
{
    std::string name;
    for (int i = 0; i < LONGEST_CHAIN; ++i)
    {
        const DebugUnit* const unit = unitOf(offset);
        if (unit == nullptr || offset >= unit->end()) break;
        const bool isSame = unit == &m_units[loaded.unit];
        const AbbreviationTable other = isSame ? AbbreviationTable() : unit->abbreviations(m_sections);
        ByteReader reader(m_sections.info.first(static_cast<std::size_t>(unit->end())), offset);
        DebugEntry entry;
        if (!unit->readEntry(reader, m_sections, isSame ? loaded.table : other, entry)) break;
        if (entry.linkageName) return std::string(unit->textOf(entry.linkageName, m_sections));
        if (name.empty()) name = unit->textOf(entry.name, m_sections);
        const DebugValue& next = entry.origin ? entry.origin : entry.specification;
        if (next.kind != DebugValue::Kind::Reference) break;
        offset = next.number;
    }
    return name;
}

}  // namespace Oxa_1_1::formats
