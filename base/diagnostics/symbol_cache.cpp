#include "base/diagnostics/detail/symbol_cache.h"

#include <algorithm>

namespace Oxa_1_1::detail
{

namespace
{

/// Programs walk over fewer places that calls return to; beyond this it begins anew.
constexpr std::size_t MOST_SYMBOLS = 16'384;

}  // namespace

SymbolCache::Keeper SymbolCache::find(const platform::SymbolSession& session, std::uint64_t generation,
                                      const platform::SymbolParts& parts, std::span<const std::uint64_t> addresses,
                                      std::span<const KnownAddress*> found)
{
    const std::lock_guard lock(m_mutex);
    if (m_page == nullptr || m_page->known.size() > MOST_SYMBOLS)
    {
        m_page = std::make_shared<Page>();
        m_recent = {};
    }
    if (m_generation != generation || m_stamps.empty())
    {
        m_stamps = session.moduleStamps();
        m_generation = generation;
    }
    for (std::size_t i = 0; i < addresses.size(); ++i) found[i] = lookUp(session, parts, addresses[i]);
    return m_page;
}

const KnownAddress* SymbolCache::lookUp(const platform::SymbolSession& session, const platform::SymbolParts& parts,
                                        std::uint64_t address)
{
    Recent& recent = m_recent[(address ^ address >> 9) % m_recent.size()];
    const bool isRecent = recent.known != nullptr && recent.address == address;
    if (isRecent && recent.generation == m_generation) return recent.known;
    const std::uint64_t stamp = stampAt(address);
    if (isRecent && recent.stamp == stamp)
    {
        recent.generation = m_generation;
        return recent.known;
    }
    Entry& entry = m_page->entries[address];
    if (entry.known == nullptr || entry.stamp != stamp)
    {
        KnownAddress& known = m_page->known.emplace_back();
        known.symbol = session.find(address, parts);
        if (parts.inlined) known.frames = framesOf(known.symbol);
        entry.known = &known;
    }
    entry.stamp = stamp;
    recent = {address, m_generation, stamp, entry.known};
    return entry.known;
}

std::uint64_t SymbolCache::stampAt(std::uint64_t address) const
{
    const auto behind = std::upper_bound(m_stamps.begin(), m_stamps.end(), address,
                                         [](std::uint64_t a, const auto& module) { return a < module.begin; });
    return behind == m_stamps.begin() || address >= (behind - 1)->end ? 0 : (behind - 1)->stamp;
}

}  // namespace Oxa_1_1::detail
