#pragma once

#include <cstdint>
#include <iosfwd>
#include <set>
#include <vector>

#include "base/export.h"
#include "base/string/oxa_string.h"

namespace Oxa_1_1
{

/// The names that a resource header defines, and their values. Names that differ only in letter case are the same
/// name; a name is defined once, a value may have several names.
class OXA_API SymbolTable
{
   public:
    /// Values that mean something else.
    enum ReservedValue : unsigned int
    {
        /// What looking up an unknown name gives.
        UNKNOWN = 0xFFFFFFFF
    };
    /// Of a module that carries no header, or one that was not accepted.
    static const SymbolTable EMPTY;

    /// Adds the definitions of a resource header. False when the stream is bad or a line was not accepted (a name that
    /// is defined already, or a value that is neither a decimal number nor a name); the other lines are kept.
    bool parseHeaderFile(std::istream& in);

    /// The value of `name`, UNKNOWN when it is not defined.
    /// @{
    unsigned int lookupSymbol(const String& name) const noexcept;
    unsigned int operator[](const String& name) const noexcept { return lookupSymbol(name); }
    /// @}

    /// All names that are defined with `value`.
    /// @{
    std::set<String, StringLess2> lookupValue(unsigned int value) const;
    std::set<String, StringLess2> operator[](unsigned int value) const { return lookupValue(value); }
    /// @}

    /// The number of names.
    std::size_t size() const noexcept { return m_symbols.size(); }
    /// All names, in the order of their definition.
    std::vector<String> names() const;

   private:
    struct Symbol
    {
        String name;
        unsigned int value;
        std::uint32_t nameHash;
        // The next symbol with an equal value hash, or NONE.
        std::uint32_t next;
    };
    enum : std::uint32_t
    {
        NONE = 0xFFFFFFFF
    };

    OXA_HIDDEN bool parseLineHeaderFile(const String& line);
    OXA_HIDDEN bool parseLine(TextView line);
    OXA_HIDDEN bool define(TextView name, unsigned int value);
    OXA_HIDDEN std::size_t findSlot(TextView name, std::uint32_t hash) const noexcept;
    OXA_HIDDEN unsigned int valueOf(TextView name) const noexcept;
    OXA_HIDDEN void grow();
    OXA_HIDDEN void link(std::uint32_t index);

    // In the order of definition. Both indexes hold numbers of symbols and have a power of two as size: names by open
    // addressing, values as the heads of chains.
    std::vector<Symbol> m_symbols;
    std::vector<std::uint32_t> m_byName;
    std::vector<std::uint32_t> m_byValue;
};

}  // namespace Oxa_1_1
