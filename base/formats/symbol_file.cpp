#include "base/formats/symbol_file.h"

#include <array>
#include <string>
#include <utility>

namespace Oxa_1_1::formats
{

namespace
{

constexpr std::array<std::pair<const char*, Bytes DebugSections::*>, 9> SECTIONS{
    {{".debug_info", &DebugSections::info},
     {".debug_abbrev", &DebugSections::abbreviations},
     {".debug_line", &DebugSections::lines},
     {".debug_str", &DebugSections::texts},
     {".debug_line_str", &DebugSections::lineTexts},
     {".debug_str_offsets", &DebugSections::textOffsets},
     {".debug_addr", &DebugSections::addresses},
     {".debug_ranges", &DebugSections::ranges},
     {".debug_rnglists", &DebugSections::rangeLists}}};

std::span<const std::uint8_t> plain(Bytes bytes)
{
    return {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
}

}  // namespace

SymbolFile::SymbolFile(Bytes file, Bytes debugFile) : m_elf(plain(file)), m_coff(CoffFile::read(file))
{
    if (m_coff)
        for (const auto& [name, field] : SECTIONS) m_sections.*field = m_coff->section(name);
    else
        m_sections = elfSections(debugFile.empty() ? m_elf : ElfFile(plain(debugFile)));
    m_hasDebugInformation = !m_sections.info.empty() && !m_sections.abbreviations.empty();
}

DebugSections SymbolFile::elfSections(const ElfFile& file)
{
    DebugSections sections;
    for (const auto& [name, field] : SECTIONS)
    {
        std::vector<std::byte> unpacked;
        sections.*field = file.section(name, unpacked);
        // What it points to stays where it is.
        if (!unpacked.empty()) m_unpacked.push_back(std::move(unpacked));
    }
    return sections;
}

bool SymbolFile::find(std::uint64_t offset, std::vector<SourceFrame>& frames, std::uint64_t& functionOffset)
{
    const std::uint64_t meant = offset + (m_coff ? m_coff->imageBase() : m_elf.firstAddress());
    std::string symbol;
    functionOffset = 0;
    if (m_coff)
    {
        std::uint32_t begin = 0;
        symbol = m_coff->functionAt(static_cast<std::uint32_t>(offset), begin);
        if (!symbol.empty()) functionOffset = offset - begin;
    }
    else
    {
        std::uint64_t begin = 0;
        symbol = m_elf.functionAt(meant, begin);
        if (!symbol.empty()) functionOffset = meant - begin;
    }
    if (!m_debugInfo) m_debugInfo.emplace(m_sections);
    const std::size_t before = frames.size();
    m_debugInfo->find(meant, frames);
    if (frames.size() == before && symbol.empty()) return false;
    if (frames.size() == before) frames.emplace_back();
    // Without a name for the linker, the debug information has the bare name only.
    if (!symbol.empty() && !frames.back().function.starts_with("_Z")) frames.back().function = std::move(symbol);
    return true;
}

}  // namespace Oxa_1_1::formats
