#include "base/diagnostics/detail/symbol_cache.h"

#include <algorithm>

namespace Oxa_1_1::detail
{

namespace
{

/// Programs walk over fewer places that calls return to; beyond this it begins anew.
constexpr std::size_t MOST_SYMBOLS = 16'384;
constexpr std::size_t FEWEST_ENTRIES = 256;

}  // namespace

SymbolCache::Keeper SymbolCache::find(const platform::SymbolSession& session, std::uint64_t generation,
                                      const platform::SymbolParts& parts, std::span<const std::uint64_t> addresses,
                                      std::span<const KnownAddress*> found)
{
    const std::lock_guard lock(m_mutex);
    if (m_page == nullptr || m_page->size() > MOST_SYMBOLS)
    {
        auto page = std::make_shared<Page>();
        m_entries.assign(FEWEST_ENTRIES, {});
        m_used = 0;
        m_page = std::move(page);
    }
    if (m_generation != generation || m_stamps.empty())
    {
        m_stamps = session.moduleStamps();
        m_generation = generation;
    }
    for (std::size_t i = findCurrent(addresses, found); i < addresses.size();)
    {
        found[i] = lookUp(session, parts, addresses[i]);
        ++i;
        i += findCurrent(addresses.subspan(i), found.subspan(i));
    }
    return m_page;
}

std::size_t SymbolCache::findCurrent(std::span<const std::uint64_t> addresses, std::span<const KnownAddress*> found)
{
    // Of their own, because the compiler cannot know that what is stored changes none of them.
    const Table table(m_entries);
    const std::uint64_t generation = m_generation;
    const std::size_t count = addresses.size();
    for (std::size_t i = 0; i < count; ++i)
    {
        const Entry& entry = table.at(addresses[i]);
        if (entry.known == nullptr || entry.generation != generation) return i;
        found[i] = entry.known;
    }
    return count;
}

void SymbolCache::makeRoom()
{
    if (2 * m_used < m_entries.size()) return;
    std::vector<Entry> former(2 * m_entries.size());
    former.swap(m_entries);
    const Table table(m_entries);
    for (const Entry& entry : former)
        if (entry.known != nullptr) table.at(entry.address) = entry;
}

const KnownAddress* SymbolCache::lookUp(const platform::SymbolSession& session, const platform::SymbolParts& parts,
                                        std::uint64_t address)
{
    makeRoom();
    Entry& entry = Table(m_entries).at(address);
    const std::uint64_t stamp = stampAt(address);
    if (entry.known == nullptr || entry.stamp != stamp)
    {
        KnownAddress& known = m_page->emplace_back();
        known.symbol = session.find(address, parts);
        if (parts.inlined) known.functions = framesOf(address, known.symbol);
        known.frames = known.functions;
        m_used += entry.known == nullptr ? 1 : 0;
        entry.known = &known;
    }
    entry.address = address;
    entry.generation = m_generation;
    entry.stamp = stamp;
    return entry.known;
}

std::uint64_t SymbolCache::stampAt(std::uint64_t address) const
{
    const auto behind = std::upper_bound(m_stamps.begin(), m_stamps.end(), address,
                                         [](std::uint64_t a, const auto& module) { return a < module.begin; });
    return behind == m_stamps.begin() || address >= (behind - 1)->end ? 0 : (behind - 1)->stamp;
}

}  // namespace Oxa_1_1::detail
