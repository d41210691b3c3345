#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "base/formats/debug_lines.h"
#include "base/formats/debug_unit.h"

namespace Oxa_1_1::formats
{

/// A place in the source.
struct SourceFrame
{
    /// As the linker knows it.
    std::string function;
    std::string file;
    /// Counted from 1; 0 where it is not known.
    std::uint32_t line = 0;
};

/// Finds the source of addresses in the debug information of one module. Not for several threads at once.
class DebugInfo
{
   public:
    DebugInfo() = default;
    /// What the sections lie in must live as long.
    explicit DebugInfo(const DebugSections& sections);

    /// Appends the function that the code at an address, as it is meant, was written in, then the ones that it was
    /// inlined into, from the inside to the outside. False when nothing is known.
    bool find(std::uint64_t address, std::vector<SourceFrame>& frames);

   private:
    struct UnitRange
    {
        AddressRange range;
        std::size_t unit;
    };
    struct Function
    {
        AddressRange range;
        std::uint64_t entry;
    };
    /// What is read of a unit when one of its addresses is looked for.
    struct LoadedUnit
    {
        std::size_t unit = 0;
        AbbreviationTable table;
        /// Ascending by address.
        std::vector<Function> functions;
        DebugLines lines;

        std::size_t size() const { return lines.size() + functions.size() * sizeof(Function) + sizeof *this; }
    };
    /// An inlined call, or the function that all are part of.
    struct Call
    {
        std::uint64_t entry;
        std::uint64_t file;
        std::uint64_t line;
    };

    /// Null when no unit has code there.
    LoadedUnit* loadedAt(std::uint64_t address);
    LoadedUnit& load(std::size_t unit);
    void readFunctions(LoadedUnit& loaded) const;
    void findCalls(const LoadedUnit& loaded, std::uint64_t address, std::vector<Call>& calls) const;
    bool contains(const DebugUnit& unit, const DebugEntry& entry, std::uint64_t address) const;
    const DebugUnit* unitOf(std::uint64_t entry) const;
    std::string functionName(const LoadedUnit& loaded, std::uint64_t entry) const;

    DebugSections m_sections;
    /// Ascending by their place.
    std::vector<DebugUnit> m_units;
    /// Ascending by address.
    std::vector<UnitRange> m_ranges;
    /// The last ones used, which come first.
    std::list<LoadedUnit> m_loaded;
};

}  // namespace Oxa_1_1::formats
