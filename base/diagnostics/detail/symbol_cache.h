#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>
#include <vector>

#include "base/diagnostics/resolved_stack.h"
#include "base/platform/stack/symbols.h"

namespace Oxa_1_1::detail
{

/// What was found for an address. It stays in its place, because the frames point to the symbol's texts.
struct KnownAddress
{
    platform::SymbolInfo symbol;
    /// Of the functions there, but for the address itself; only where inlined ones were looked for, too.
    std::vector<ResolvedFrame> frames;
};

/// The functions that stand at a place, from the inside to the outside.
std::vector<ResolvedFrame> framesOf(const platform::SymbolInfo& symbol);

/// What was found for addresses, so that each is looked for only once as long as its module stays.
class SymbolCache
{
   public:
    /// Keeps what was found in its place.
    using Keeper = std::shared_ptr<const void>;

    /// Points `found` to what is known of each address, and returns what keeps it alive. `generation` is the session's
    /// at this moment. Safe on several threads.
    Keeper find(const platform::SymbolSession& session, std::uint64_t generation, const platform::SymbolParts& parts,
                std::span<const std::uint64_t> addresses, std::span<const KnownAddress*> found);

   private:
    struct Entry
    {
        /// Of the module that the address lay in when it was looked for; 0 for none.
        std::uint64_t stamp = 0;
        const KnownAddress* known = nullptr;
    };
    struct Page
    {
        std::unordered_map<std::uint64_t, Entry> entries;
        /// What was found, also for modules that are gone, which somebody may still look at.
        std::deque<KnownAddress> known;
    };

    const KnownAddress* lookUp(const platform::SymbolSession& session, const platform::SymbolParts& parts,
                               std::uint64_t address);
    std::uint64_t stampAt(std::uint64_t address) const;

    /// What was asked for last, found without a search.
    struct Recent
    {
        std::uint64_t address = 0;
        std::uint64_t generation = 0;
        std::uint64_t stamp = 0;
        const KnownAddress* known = nullptr;
    };

    std::mutex m_mutex;
    std::array<Recent, 512> m_recent{};
    std::shared_ptr<Page> m_page;
    std::uint64_t m_generation = 0;
    std::vector<platform::ModuleStamp> m_stamps;
};

}  // namespace Oxa_1_1::detail
