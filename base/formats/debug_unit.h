#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/formats/byte_reader.h"

/// Debug information of modules (DWARF 2 to 5): units and their entries.
namespace Oxa_1_1::formats
{

/// The parts of a module's file that hold debug information. Missing ones are empty.
struct DebugSections
{
    Bytes info;
    Bytes abbreviations;
    Bytes lines;
    Bytes texts;
    Bytes lineTexts;
    Bytes textOffsets;
    Bytes addresses;
    Bytes ranges;
    Bytes rangeLists;
};

struct AddressRange
{
    std::uint64_t begin;
    std::uint64_t end;

    bool contains(std::uint64_t address) const { return address >= begin && address < end; }
};

/// A value as it is written: some are places where the value stands.
struct DebugValue
{
    enum class Kind : std::uint8_t
    {
        None,
        Number,
        Address,
        AddressIndex,
        Text,
        TextIndex,
        /// An entry, by its offset in the section.
        Reference,
        SectionOffset,
        RangeIndex
    };
    Kind kind = Kind::None;
    std::uint64_t number = 0;
    std::string_view text;

    explicit operator bool() const { return kind != Kind::None; }
};

/// How the numbers of a unit are written.
struct DebugEncoding
{
    std::uint16_t version = 0;
    std::uint8_t addressSize = 8;
    std::uint8_t offsetSize = 4;
    /// Where the unit begins, which references within it count from.
    std::uint64_t unitOffset = 0;
};

/// Reads or skips one value. `constant` is what the form itself holds, for the form that does.
DebugValue readDebugValue(ByteReader& reader, std::uint64_t form, std::int64_t constant, const DebugEncoding& encoding,
                          const DebugSections& sections);

/// The length that a unit begins with; sets whether its offsets are of four or eight bytes.
std::uint64_t readUnitLength(ByteReader& reader, std::uint8_t& offsetSize);

/// The kinds of entries of a unit.
class AbbreviationTable
{
   public:
    struct Attribute
    {
        std::uint64_t name;
        std::uint64_t form;
        std::int64_t constant;
    };
    struct Abbreviation
    {
        std::uint64_t code;
        std::uint64_t tag;
        bool hasChildren;
        std::uint32_t firstAttribute;
        std::uint32_t attributeCount;
    };

    AbbreviationTable() = default;
    AbbreviationTable(Bytes section, std::uint64_t offset);

    const Abbreviation* find(std::uint64_t code) const;
    const Attribute* attributes(const Abbreviation& abbreviation) const
    {
        return m_attributes.data() + abbreviation.firstAttribute;
    }

   private:
    /// Ascending by code.
    std::vector<Abbreviation> m_abbreviations;
    std::vector<Attribute> m_attributes;
};

/// What is looked at of an entry.
struct DebugEntry
{
    std::uint64_t offset = 0;
    /// 0 for the end of a list of children.
    std::uint64_t tag = 0;
    bool hasChildren = false;
    DebugValue name;
    DebugValue linkageName;
    DebugValue low;
    DebugValue high;
    DebugValue ranges;
    DebugValue origin;
    DebugValue specification;
    std::uint64_t sibling = 0;
    std::uint64_t callFile = 0;
    std::uint64_t callLine = 0;
};

/// One compiled source with what it includes.
class DebugUnit
{
   public:
    /// Reads the head of the unit at the reader, and moves the reader behind the unit. A unit of another kind, or of a
    /// version that is not known, holds no code.
    static DebugUnit read(ByteReader& reader, const DebugSections& sections);

    bool holdsCode() const { return m_firstEntry != 0; }
    std::uint64_t begin() const { return m_encoding.unitOffset; }
    std::uint64_t end() const { return m_end; }
    std::uint64_t firstEntry() const { return m_firstEntry; }
    std::uint64_t lineOffset() const { return m_lineOffset; }
    bool hasLines() const { return m_hasLines; }
    std::string_view folder() const { return m_folder; }
    std::string_view name() const { return m_name; }
    const std::vector<AddressRange>& ranges() const { return m_ranges; }
    void dropRanges() { m_ranges = {}; }

    AbbreviationTable abbreviations(const DebugSections& sections) const;
    /// Reads the entry at the reader; false at the end of the unit, or where it does not fit.
    bool readEntry(ByteReader& reader, const DebugSections& sections, const AbbreviationTable& table,
                   DebugEntry& entry) const;

    std::string_view textOf(const DebugValue& value, const DebugSections& sections) const;
    /// The addresses that an entry's code takes, without those that the linker has dropped.
    std::vector<AddressRange> rangesOf(const DebugEntry& entry, const DebugSections& sections) const;

   private:
    void readRoot(const DebugSections& sections);
    std::uint64_t addressOf(const DebugValue& value, const DebugSections& sections) const;
    std::uint64_t addressAt(std::uint64_t index, const DebugSections& sections) const;
    void readOldRanges(std::uint64_t offset, const DebugSections& sections, std::vector<AddressRange>& ranges) const;
    void readRangeList(std::uint64_t offset, const DebugSections& sections, std::vector<AddressRange>& ranges) const;

    DebugEncoding m_encoding;
    std::uint64_t m_end = 0;
    std::uint64_t m_firstEntry = 0;
    std::uint64_t m_abbreviationOffset = 0;
    std::uint64_t m_lineOffset = 0;
    std::uint64_t m_low = 0;
    std::uint64_t m_addressBase = 0;
    std::uint64_t m_textOffsetsBase = 0;
    std::uint64_t m_rangeListsBase = 0;
    bool m_hasLines = false;
    std::string_view m_folder;
    std::string_view m_name;
    std::vector<AddressRange> m_ranges;
};

}  // namespace Oxa_1_1::formats
