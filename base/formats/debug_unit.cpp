#include "base/formats/debug_unit.h"

#include <algorithm>

#include "base/formats/debug_codes.h"

namespace Oxa_1_1::formats
{

namespace
{

using namespace dwarf;
using Kind = DebugValue::Kind;

/// More than code is ever divided into; what goes on beyond is no list.
constexpr std::size_t MOST_RANGES = 65536;

DebugValue numberOf(std::uint64_t number) { return {Kind::Number, number, {}}; }

DebugValue textAt(Bytes section, std::uint64_t offset)
{
    ByteReader reader(section, offset);
    const std::string_view text = reader.text();
    return reader.ok() ? DebugValue{Kind::Text, 0, text} : DebugValue();
}

DebugValue skipped(ByteReader& reader, std::uint64_t count)
{
    reader.skip(count);
    return {};
}

/// A list that ends with zeros at 0 belongs to code that the linker has dropped.
void addRange(std::vector<AddressRange>& ranges, std::uint64_t begin, std::uint64_t end)
{
    if (begin != 0 && begin < end) ranges.push_back({begin, end});
}

/// What an attribute says of an entry; attributes that nobody asks for are passed over.
void take(DebugEntry& entry, std::uint64_t attribute, const DebugValue& value)
{
    switch (attribute)
    {
        case DW_AT_name:
            entry.name = value;
            break;
        case DW_AT_linkage_name:
        case DW_AT_MIPS_linkage_name:
            entry.linkageName = value;
            break;
        case DW_AT_low_pc:
            entry.low = value;
            break;
        case DW_AT_high_pc:
            entry.high = value;
            break;
        case DW_AT_ranges:
            entry.ranges = value;
            break;
        case DW_AT_abstract_origin:
            entry.origin = value;
            break;
        case DW_AT_specification:
            entry.specification = value;
            break;
        case DW_AT_sibling:
            entry.sibling = value.kind == Kind::Reference ? value.number : 0;
            break;
        case DW_AT_call_file:
            entry.callFile = value.number;
            break;
        case DW_AT_call_line:
            entry.callLine = value.number;
            break;
        default:
            break;
    }
}

}  // namespace

std::uint64_t readUnitLength(ByteReader& reader, std::uint8_t& offsetSize)
{
    constexpr std::uint32_t LONG_FORM = 0xFFFFFFFF;
    const auto length = reader.read<std::uint32_t>();
    offsetSize = length == LONG_FORM ? 8 : 4;
    return length == LONG_FORM ? reader.read<std::uint64_t>() : length;
}

DebugValue readDebugValue(ByteReader& reader, std::uint64_t form, std::int64_t constant, const DebugEncoding& encoding,
                          const DebugSections& sections)
{
    if (form == DW_FORM_indirect) form = reader.unsignedLeb();
    switch (form)
    {
        case DW_FORM_addr:
            return {Kind::Address, reader.number(encoding.addressSize), {}};
        case DW_FORM_data1:
        case DW_FORM_flag:
            return numberOf(reader.number(1));
        case DW_FORM_data2:
            return numberOf(reader.number(2));
        case DW_FORM_data4:
            return numberOf(reader.number(4));
        case DW_FORM_data8:
            return numberOf(reader.number(8));
        case DW_FORM_udata:
            return numberOf(reader.unsignedLeb());
        case DW_FORM_sdata:
            return numberOf(static_cast<std::uint64_t>(reader.signedLeb()));
        case DW_FORM_implicit_const:
            return numberOf(static_cast<std::uint64_t>(constant));
        case DW_FORM_flag_present:
            return numberOf(1);
        case DW_FORM_sec_offset:
            return {Kind::SectionOffset, reader.number(encoding.offsetSize), {}};
        case DW_FORM_string:
            return {Kind::Text, 0, reader.text()};
        case DW_FORM_strp:
            return textAt(sections.texts, reader.number(encoding.offsetSize));
        case DW_FORM_line_strp:
            return textAt(sections.lineTexts, reader.number(encoding.offsetSize));
        case DW_FORM_strx:
            return {Kind::TextIndex, reader.unsignedLeb(), {}};
        case DW_FORM_strx1:
        case DW_FORM_strx2:
        case DW_FORM_strx3:
        case DW_FORM_strx4:
            return {Kind::TextIndex, reader.number(static_cast<unsigned>(form - DW_FORM_strx1 + 1)), {}};
        case DW_FORM_addrx:
            return {Kind::AddressIndex, reader.unsignedLeb(), {}};
        case DW_FORM_addrx1:
        case DW_FORM_addrx2:
        case DW_FORM_addrx3:
        case DW_FORM_addrx4:
            return {Kind::AddressIndex, reader.number(static_cast<unsigned>(form - DW_FORM_addrx1 + 1)), {}};
        case DW_FORM_rnglistx:
            return {Kind::RangeIndex, reader.unsignedLeb(), {}};
        case DW_FORM_ref1:
            return {Kind::Reference, encoding.unitOffset + reader.number(1), {}};
        case DW_FORM_ref2:
            return {Kind::Reference, encoding.unitOffset + reader.number(2), {}};
        case DW_FORM_ref4:
            return {Kind::Reference, encoding.unitOffset + reader.number(4), {}};
        case DW_FORM_ref8:
            return {Kind::Reference, encoding.unitOffset + reader.number(8), {}};
        case DW_FORM_ref_udata:
            return {Kind::Reference, encoding.unitOffset + reader.unsignedLeb(), {}};
        case DW_FORM_ref_addr:
            return {
                Kind::Reference, reader.number(encoding.version < 3 ? encoding.addressSize : encoding.offsetSize), {}};
        case DW_FORM_block1:
            return skipped(reader, reader.number(1));
        case DW_FORM_block2:
            return skipped(reader, reader.number(2));
        case DW_FORM_block4:
            return skipped(reader, reader.number(4));
        case DW_FORM_block:
        case DW_FORM_exprloc:
            return skipped(reader, reader.unsignedLeb());
        case DW_FORM_data16:
            return skipped(reader, 16);
        case DW_FORM_loclistx:
            reader.unsignedLeb();
            return {};
        case DW_FORM_ref_sup4:
            return skipped(reader, 4);
        case DW_FORM_ref_sup8:
        case DW_FORM_ref_sig8:
            return skipped(reader, 8);
        case DW_FORM_strp_sup:
        case DW_FORM_GNU_ref_alt:
        case DW_FORM_GNU_strp_alt:
            return skipped(reader, encoding.offsetSize);
        default:
            // Its length is not known, so neither is what follows.
            return skipped(reader, ~std::uint64_t{0});
    }
}

AbbreviationTable::AbbreviationTable(Bytes section, std::uint64_t offset)
{
    ByteReader reader(section, offset);
    for (std::uint64_t code = reader.unsignedLeb(); code != 0 && reader.ok(); code = reader.unsignedLeb())
    {
        Abbreviation abbreviation{code, reader.unsignedLeb(), reader.number(1) != 0,
                                  static_cast<std::uint32_t>(m_attributes.size()), 0};
        while (reader.ok())
        {
            Attribute attribute{reader.unsignedLeb(), reader.unsignedLeb(), 0};
            if (attribute.form == DW_FORM_implicit_const) attribute.constant = reader.signedLeb();
            if (attribute.name == 0 && attribute.form == 0) break;
            m_attributes.push_back(attribute);
        }
        abbreviation.attributeCount = static_cast<std::uint32_t>(m_attributes.size()) - abbreviation.firstAttribute;
        m_abbreviations.push_back(abbreviation);
    }
    const auto byCode = [](const Abbreviation& a, const Abbreviation& b) { return a.code < b.code; };
    if (!std::is_sorted(m_abbreviations.begin(), m_abbreviations.end(), byCode))
        std::stable_sort(m_abbreviations.begin(), m_abbreviations.end(), byCode);
}

const AbbreviationTable::Abbreviation* AbbreviationTable::find(std::uint64_t code) const
{
    // Compilers number them 1, 2, 3.
    if (code - 1 < m_abbreviations.size() && m_abbreviations[code - 1].code == code) return &m_abbreviations[code - 1];
    const auto found =
        std::lower_bound(m_abbreviations.begin(), m_abbreviations.end(), code,
                         [](const Abbreviation& abbreviation, std::uint64_t c) { return abbreviation.code < c; });
    return found == m_abbreviations.end() || found->code != code ? nullptr : &*found;
}

DebugUnit DebugUnit::read(ByteReader& reader, const DebugSections& sections)
{
    DebugUnit unit;
    DebugEncoding& encoding = unit.m_encoding;
    encoding.unitOffset = reader.offset();
    const std::uint64_t length = readUnitLength(reader, encoding.offsetSize);
    ByteReader head = reader;
    reader.skip(length);
    unit.m_end = reader.offset();
    if (!reader.ok()) return unit;

    encoding.version = head.read<std::uint16_t>();
    if (encoding.version < 2 || encoding.version > 5) return unit;
    std::uint8_t type = DW_UT_compile;
    if (encoding.version >= 5)
    {
        type = head.read<std::uint8_t>();
        encoding.addressSize = head.read<std::uint8_t>();
        unit.m_abbreviationOffset = head.number(encoding.offsetSize);
        if (type == DW_UT_skeleton || type == DW_UT_split_compile) head.skip(8);
    }
    else
    {
        unit.m_abbreviationOffset = head.number(encoding.offsetSize);
        encoding.addressSize = head.read<std::uint8_t>();
    }
    const bool isKnown = type == DW_UT_compile || type == DW_UT_partial || type == DW_UT_skeleton;
    const bool isSized = encoding.addressSize == 4 || encoding.addressSize == 8;
    if (!isKnown || !isSized || !head.ok() || head.offset() >= unit.m_end) return unit;
    unit.m_firstEntry = head.offset();
    unit.readRoot(sections);
    return unit;
}

AbbreviationTable DebugUnit::abbreviations(const DebugSections& sections) const
{
    return {sections.abbreviations, m_abbreviationOffset};
}

bool DebugUnit::readEntry(ByteReader& reader, const DebugSections& sections, const AbbreviationTable& table,
                          DebugEntry& entry) const
{
    entry = {};
    entry.offset = reader.offset();
    if (entry.offset < m_firstEntry || entry.offset >= m_end) return false;
    const std::uint64_t code = reader.unsignedLeb();
    if (code == 0) return reader.ok();
    const AbbreviationTable::Abbreviation* const abbreviation = table.find(code);
    if (abbreviation == nullptr) return false;
    entry.tag = abbreviation->tag;
    entry.hasChildren = abbreviation->hasChildren;
    const AbbreviationTable::Attribute* attribute = table.attributes(*abbreviation);
    for (std::uint32_t i = 0; i < abbreviation->attributeCount; ++i, ++attribute)
        take(entry, attribute->name,
             readDebugValue(reader, attribute->form, attribute->constant, m_encoding, sections));
    return reader.ok();
}

void DebugUnit::readRoot(const DebugSections& sections)
{
    const AbbreviationTable table = abbreviations(sections);
    ByteReader reader(sections.info.first(static_cast<std::size_t>(m_end)), m_firstEntry);
    const AbbreviationTable::Abbreviation* const root = table.find(reader.unsignedLeb());
    if (root == nullptr) return;
    DebugEntry entry;
    DebugValue folder;
    const AbbreviationTable::Attribute* attribute = table.attributes(*root);
    for (std::uint32_t i = 0; i < root->attributeCount; ++i, ++attribute)
    {
        const DebugValue value = readDebugValue(reader, attribute->form, attribute->constant, m_encoding, sections);
        if (!reader.ok()) return;
        switch (attribute->name)
        {
            case DW_AT_comp_dir:
                folder = value;
                break;
            case DW_AT_stmt_list:
                m_lineOffset = value.number;
                m_hasLines = static_cast<bool>(value);
                break;
            case DW_AT_str_offsets_base:
                m_textOffsetsBase = value.number;
                break;
            case DW_AT_addr_base:
                m_addressBase = value.number;
                break;
            case DW_AT_rnglists_base:
                m_rangeListsBase = value.number;
                break;
            default:
                take(entry, attribute->name, value);
                break;
        }
    }
    // Only now the places are known that indexes count from.
    m_name = textOf(entry.name, sections);
    m_folder = textOf(folder, sections);
    m_low = addressOf(entry.low, sections);
    m_ranges = rangesOf(entry, sections);
}

std::string_view DebugUnit::textOf(const DebugValue& value, const DebugSections& sections) const
{
    if (value.kind == Kind::Text) return value.text;
    if (value.kind != Kind::TextIndex || value.number > sections.textOffsets.size()) return {};
    ByteReader reader(sections.textOffsets, m_textOffsetsBase + value.number * m_encoding.offsetSize);
    const std::uint64_t offset = reader.number(m_encoding.offsetSize);
    return reader.ok() ? textAt(sections.texts, offset).text : std::string_view();
}

std::uint64_t DebugUnit::addressAt(std::uint64_t index, const DebugSections& sections) const
{
    if (index > sections.addresses.size()) return 0;
    return ByteReader(sections.addresses, m_addressBase + index * m_encoding.addressSize)
        .number(m_encoding.addressSize);
}

std::uint64_t DebugUnit::addressOf(const DebugValue& value, const DebugSections& sections) const
{
    return value.kind == Kind::AddressIndex ? addressAt(value.number, sections) : value.number;
}

std::vector<AddressRange> DebugUnit::rangesOf(const DebugEntry& entry, const DebugSections& sections) const
{
    std::vector<AddressRange> ranges;
    if (!entry.ranges)
    {
        const std::uint64_t low = addressOf(entry.low, sections);
        // The end is an address itself, or counts from the beginning.
        const bool isAddress = entry.high.kind == Kind::Address || entry.high.kind == Kind::AddressIndex;
        const std::uint64_t high = addressOf(entry.high, sections);
        if (entry.low && entry.high) addRange(ranges, low, isAddress ? high : low + high);
    }
    else if (m_encoding.version < 5)
    {
        readOldRanges(entry.ranges.number, sections, ranges);
    }
    else if (entry.ranges.kind == Kind::RangeIndex)
    {
        if (entry.ranges.number > sections.rangeLists.size()) return ranges;
        ByteReader offsets(sections.rangeLists, m_rangeListsBase + entry.ranges.number * m_encoding.offsetSize);
        const std::uint64_t offset = offsets.number(m_encoding.offsetSize);
        if (offsets.ok()) readRangeList(m_rangeListsBase + offset, sections, ranges);
    }
    else
    {
        readRangeList(entry.ranges.number, sections, ranges);
    }
    return ranges;
}

void DebugUnit::readOldRanges(std::uint64_t offset, const DebugSections& sections,
                              std::vector<AddressRange>& ranges) const
{
    const std::uint64_t newBase = m_encoding.addressSize == 8 ? ~std::uint64_t{0} : 0xFFFFFFFF;
    std::uint64_t base = m_low;
    ByteReader reader(sections.ranges, offset);
    while (ranges.size() < MOST_RANGES)
    {
        const std::uint64_t begin = reader.number(m_encoding.addressSize);
        const std::uint64_t end = reader.number(m_encoding.addressSize);
        if (!reader.ok() || (begin == 0 && end == 0)) return;
        if (begin == newBase)
            base = end;
        else
            addRange(ranges, base + begin, base + end);
    }
}

void DebugUnit::readRangeList(std::uint64_t offset, const DebugSections& sections,
                              std::vector<AddressRange>& ranges) const
{
    std::uint64_t base = m_low;
    ByteReader reader(sections.rangeLists, offset);
    while (ranges.size() < MOST_RANGES)
    {
        const auto kind = reader.read<std::uint8_t>();
        if (!reader.ok()) return;
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
        switch (kind)
        {
            case DW_RLE_base_addressx:
                base = addressAt(reader.unsignedLeb(), sections);
                continue;
            case DW_RLE_base_address:
                base = reader.number(m_encoding.addressSize);
                continue;
            case DW_RLE_startx_endx:
                begin = addressAt(reader.unsignedLeb(), sections);
                end = addressAt(reader.unsignedLeb(), sections);
                break;
            case DW_RLE_startx_length:
                begin = addressAt(reader.unsignedLeb(), sections);
                end = begin + reader.unsignedLeb();
                break;
            case DW_RLE_offset_pair:
                begin = base + reader.unsignedLeb();
                end = base + reader.unsignedLeb();
                break;
            case DW_RLE_start_end:
                begin = reader.number(m_encoding.addressSize);
                end = reader.number(m_encoding.addressSize);
                break;
            case DW_RLE_start_length:
                begin = reader.number(m_encoding.addressSize);
                end = begin + reader.unsignedLeb();
                break;
            default:
                return;
        }
        if (reader.ok()) addRange(ranges, begin, end);
    }
}

}  // namespace Oxa_1_1::formats
