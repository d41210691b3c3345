#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/formats/coff_file.h"
#include "base/formats/debug_info.h"
#include "base/formats/elf_file.h"

namespace Oxa_1_1::formats
{

/// All that the file of one module, of either system, tells of the module's code. Not for several threads at once.
class SymbolFile
{
   public:
    /// `debugFile` holds the debug information when it was put into a file of its own; otherwise it is empty. Both must
    /// live as long.
    SymbolFile(Bytes file, Bytes debugFile);
    SymbolFile(const SymbolFile&) = delete;
    SymbolFile& operator=(const SymbolFile&) = delete;

    bool hasDebugInformation() const { return m_hasDebugInformation; }
    /// A table of the functions' names in the form that GCC writes on Windows.
    bool hasCoffSymbols() const { return m_coff.has_value() && m_coff->hasSymbols(); }

    /// Appends what is known of an address, counted from the module's beginning, as DebugInfo::find does. Stores how
    /// far it is from the beginning of the function that all are part of, where that is known. False without anything.
    bool find(std::uint64_t offset, std::vector<SourceFrame>& frames, std::uint64_t& functionOffset);

   private:
    DebugSections elfSections(const ElfFile& file);

    ElfFile m_elf;
    std::optional<CoffFile> m_coff;
    bool m_hasDebugInformation = false;
    /// Sections that are packed in the file.
    std::vector<std::vector<std::byte>> m_unpacked;
    /// Made when an address is first looked for.
    std::optional<DebugInfo> m_debugInfo;
    DebugSections m_sections;
};

}  // namespace Oxa_1_1::formats
