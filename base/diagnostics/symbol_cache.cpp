#include "base/diagnostics/detail/symbol_cache.h"

namespace Oxa_1_1::detail
{

namespace
{

/// Programs have far fewer places that calls return to; beyond this it begins anew.
constexpr std::size_t MOST_ENTRIES = 100'000;

}  // namespace

std::shared_ptr<const SymbolCache::Page> SymbolCache::find(const platform::SymbolSession& session,
                                                           const platform::SymbolParts& parts,
                                                           std::span<const platform::StackFrame> frames,
                                                           std::span<const platform::SymbolInfo*> found)
{
    const std::uint64_t generation = session.moduleGeneration();
    const std::lock_guard lock(m_mutex);
    if (m_page == nullptr || m_generation != generation || m_page->size() > MOST_ENTRIES)
    {
        m_page = std::make_shared<Page>();
        m_generation = generation;
    }
    for (std::size_t i = 0; i < frames.size(); ++i)
    {
        const std::uint64_t address = frames[i].instruction();
        auto entry = m_page->find(address);
        if (entry == m_page->end()) entry = m_page->emplace(address, session.find(address, parts)).first;
        found[i] = &entry->second;
    }
    return m_page;
}

}  // namespace Oxa_1_1::detail
