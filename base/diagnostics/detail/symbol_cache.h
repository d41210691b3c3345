#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>

#include "base/platform/stack/symbols.h"

namespace Oxa_1_1::detail
{

/// What was found for addresses, so that each is looked for only once. All is dropped when modules come or go.
class SymbolCache
{
   public:
    /// Entries stay where they are, and those handed out live as long as the page that they are on.
    using Page = std::unordered_map<std::uint64_t, platform::SymbolInfo>;

    /// Points `found` to the entries of the frames, and returns what keeps them alive. Safe on several threads.
    std::shared_ptr<const Page> find(const platform::SymbolSession& session, const platform::SymbolParts& parts,
                                     std::span<const platform::StackFrame> frames,
                                     std::span<const platform::SymbolInfo*> found);

   private:
    std::mutex m_mutex;
    std::shared_ptr<Page> m_page;
    std::uint64_t m_generation = 0;
};

}  // namespace Oxa_1_1::detail
