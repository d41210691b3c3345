#include "base/platform/stack/detail/symbol_files.h"

#include <utility>

#include "base/formats/demangle.h"
#include "base/formats/symbol_file.h"
#ifdef _WIN32
#include "base/platform/windows/files/mapped_file.h"
#else
#include "base/platform/linux/files/mapped_file.h"
#endif

namespace Oxa_1_1::platform::detail
{

struct SymbolFiles::Entry
{
    Entry(const std::string& path, FindDebugFile findDebugFile)
        : file(path),
          debugFile(findDebugFile == nullptr ? std::string() : findDebugFile(file.bytes())),
          symbols(std::as_bytes(file.bytes()), std::as_bytes(debugFile.bytes()))
    {
    }

    MappedFile file;
    MappedFile debugFile;
    formats::SymbolFile symbols;
};

SymbolFiles::SymbolFiles(FindDebugFile findDebugFile) : m_findDebugFile(findDebugFile) {}

SymbolFiles::~SymbolFiles() = default;

SymbolFiles::Found SymbolFiles::find(const std::string& path, std::uint64_t stamp, std::uint64_t offset)
{
    const std::lock_guard lock(m_mutex);
    std::unique_ptr<Entry>& entry = m_entries[stamp];
    if (entry == nullptr) entry = std::make_unique<Entry>(path, m_findDebugFile);
    Found found;
    entry->symbols.find(offset, found.frames, found.functionOffset);
    found.hasDebugInformation = entry->symbols.hasDebugInformation();
    found.hasCoffSymbols = entry->symbols.hasCoffSymbols();
    return found;
}

void SymbolFiles::keepOnly(const std::function<bool(std::uint64_t)>& isLoaded)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_entries, [&](const auto& entry) { return !isLoaded(entry.first); });
}

void takeFound(SymbolFiles::Found&& found, const SymbolParts& parts, SymbolInfo& info)
{
    if (found.frames.empty()) return;
    formats::SourceFrame& outermost = found.frames.back();
    if (parts.names && !outermost.function.empty())
    {
        info.name = std::move(outermost.function);
        info.offset = found.functionOffset;
        readPlainNames(info);
    }
    if (parts.lines && outermost.line != 0)
    {
        info.file = std::move(outermost.file);
        info.line = outermost.line;
        info.lineOffset = 0;
    }
    found.frames.pop_back();
    if (!parts.inlined) return;
    for (formats::SourceFrame& frame : found.frames)
    {
        SymbolInfo inner;
        inner.name = std::move(frame.function);
        readPlainNames(inner);
        info.inlined.push_back({std::move(inner.name), std::move(inner.plainName), std::move(inner.fullName),
                                std::move(frame.file), frame.line});
    }
}

void readPlainNames(SymbolInfo& info)
{
    if (info.name.empty()) return;
    info.fullName = formats::demangle(info.name);
    info.plainName = formats::nameAlone(info.fullName);
}

}  // namespace Oxa_1_1::platform::detail
