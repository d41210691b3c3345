#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "base/formats/debug_info.h"
#include "base/platform/stack/symbols.h"

namespace Oxa_1_1::platform::detail
{

/// What the files of modules tell of their code. A file is read when one of its addresses is first looked for, and held
/// until its module is gone. May be used from several threads at once.
class SymbolFiles
{
   public:
    /// Names the file that a module's debug information was put into; empty when there is none.
    using FindDebugFile = std::string (*)(std::span<const std::uint8_t> file);

    explicit SymbolFiles(FindDebugFile findDebugFile);
    ~SymbolFiles();
    SymbolFiles(const SymbolFiles&) = delete;
    SymbolFiles& operator=(const SymbolFiles&) = delete;

    struct Found
    {
        /// From the inside to the outside; empty when nothing is known.
        std::vector<formats::SourceFrame> frames;
        std::uint64_t functionOffset = 0;
        bool hasDebugInformation = false;
        bool hasCoffSymbols = false;
    };

    /// Looks for an address of the module in the file `path`, counted from the module's beginning. `stamp` tells
    /// modules apart whose files have the same path.
    Found find(const std::string& path, std::uint64_t stamp, std::uint64_t offset);

    /// Gives up the files of modules whose stamps `isLoaded` does not know.
    void keepOnly(const std::function<bool(std::uint64_t stamp)>& isLoaded);

   private:
    struct Entry;

    FindDebugFile m_findDebugFile;
    std::mutex m_mutex;
    std::map<std::uint64_t, std::unique_ptr<Entry>> m_entries;
};

/// Takes over what was found, as far as it was asked for.
void takeFound(SymbolFiles::Found&& found, const SymbolParts& parts, SymbolInfo& info);

/// Fills in the names that the source has for the one that the linker knows.
void readPlainNames(SymbolInfo& info);

}  // namespace Oxa_1_1::platform::detail
