#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/formats/debug_unit.h"

namespace Oxa_1_1::formats
{

/// The lines of one unit by their addresses.
class DebugLines
{
   public:
    DebugLines() = default;
    /// Runs the line program of a unit. Texts stay in the sections.
    DebugLines(const DebugUnit& unit, const DebugSections& sections);

    struct Line
    {
        std::uint32_t file = 0;
        /// 0 where the code has none.
        std::uint32_t number = 0;
    };

    /// False for code of no line.
    bool find(std::uint64_t address, Line& line) const;
    /// A file by the number that lines and calls name it by, with its folder as far as it is known.
    std::string file(std::uint64_t number) const;

    /// The memory that it takes, about.
    std::size_t size() const { return m_rows.size() * sizeof(Row) + m_files.size() * sizeof(File); }

   private:
    struct Row
    {
        std::uint64_t address;
        Line line;
    };
    /// Rows without gaps; the last one only ends them.
    struct Sequence
    {
        AddressRange range;
        std::size_t first;
        std::size_t count;
    };
    struct File
    {
        std::string_view name;
        std::uint64_t folder;
    };
    struct Program;

    bool readHead(ByteReader& reader, const DebugUnit& unit, const DebugSections& sections, Program& program);
    void readOldFiles(ByteReader& reader);
    void readFiles(ByteReader& reader, const DebugSections& sections, const DebugEncoding& encoding, bool areFolders);
    void run(ByteReader& reader, const Program& program);
    void endSequence(std::size_t first);

    std::vector<Row> m_rows;
    /// Ascending by address.
    std::vector<Sequence> m_sequences;
    std::vector<std::string_view> m_folders;
    std::vector<File> m_files;
    std::string_view m_unitFolder;
};

}  // namespace Oxa_1_1::formats
