#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/formats/bytes.h"

namespace Oxa_1_1::formats
{

/// The symbols of a program or library for Windows, as GCC writes them into the file: a table of names, and sections of
/// debug information. What does not fit counts as absent.
class CoffFile
{
   public:
    /// Empty for bytes that are no such file. `bytes` must live as long.
    static std::optional<CoffFile> read(Bytes bytes);

    /// The address that the first byte of the module is meant for.
    std::uint64_t imageBase() const { return m_imageBase; }
    bool hasSymbols() const { return !m_symbols.empty(); }
    /// What a section holds; empty without one.
    Bytes section(std::string_view name) const;
    /// The function that an address, counted from the module's beginning, lies in; empty when none is known. `begin` is
    /// where it begins.
    std::string_view functionAt(std::uint32_t address, std::uint32_t& begin) const;

   private:
    struct Section
    {
        std::string_view name;
        std::uint32_t address;
        std::uint32_t size;
        bool isCode;
        Bytes bytes;
    };

    void readSymbolTable(Bytes bytes, std::uint32_t offset, std::uint32_t count);
    void readSections(Bytes bytes, std::size_t offset, std::size_t count);
    std::string_view longName(std::uint64_t offset) const;

    std::uint64_t m_imageBase = 0;
    std::vector<Section> m_sections;
    /// Whole records only.
    Bytes m_symbols;
    Bytes m_names;
};

}  // namespace Oxa_1_1::formats
