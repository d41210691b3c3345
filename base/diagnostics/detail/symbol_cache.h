#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "base/diagnostics/resolved_stack.h"
#include "base/platform/stack/symbols.h"

namespace Oxa_1_1::detail
{

/// What was found for an address. It stays in its place, because the frames point to the symbol's texts.
struct KnownAddress
{
    /// Of the functions there; only where inlined ones were looked for, too.
    std::span<const ResolvedFrame> frames;
    platform::SymbolInfo symbol;
    std::vector<ResolvedFrame> functions;
};

/// The functions that the place of a call is in, from the inside to the outside, for the address that it returns to.
std::vector<ResolvedFrame> framesOf(std::uint64_t call, const platform::SymbolInfo& symbol);

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
    /// What was found, also for modules that are gone, which somebody may still look at.
    using Page = std::deque<KnownAddress>;

    struct Entry
    {
        std::uint64_t address = 0;
        /// The session's when it was last looked for.
        std::uint64_t generation = 0;
        /// Of the module that the address lay in then; 0 for none.
        std::uint64_t stamp = 0;
        /// Null for an entry that is free.
        const KnownAddress* known = nullptr;
    };

    /// The entries by their hashed addresses; their number is a power of two.
    class Table
    {
       public:
        explicit Table(std::vector<Entry>& entries) : m_entries(entries.data()), m_mask(entries.size() - 1) {}

        /// That of the address, or the free one that is to be its own.
        Entry& at(std::uint64_t address) const
        {
            std::size_t i = address * 0x9E3779B97F4A7C15U >> 32;
            while (m_entries[i & m_mask].address != address && m_entries[i & m_mask].known != nullptr) ++i;
            return m_entries[i & m_mask];
        }

       private:
        Entry* m_entries;
        std::size_t m_mask;
    };

    /// Points `found` to what is known for the modules of now, up to the first address that is not, and says how many.
    std::size_t findCurrent(std::span<const std::uint64_t> addresses, std::span<const KnownAddress*> found);
    void makeRoom();
    const KnownAddress* lookUp(const platform::SymbolSession& session, const platform::SymbolParts& parts,
                               std::uint64_t address);
    std::uint64_t stampAt(std::uint64_t address) const;

    std::mutex m_mutex;
    std::shared_ptr<Page> m_page;
    /// At least half of them are free.
    std::vector<Entry> m_entries;
    std::size_t m_used = 0;
    std::uint64_t m_generation = 0;
    std::vector<platform::ModuleStamp> m_stamps;
};

}  // namespace Oxa_1_1::detail
