#include "base/platform/linux/stack/source_lines.h"

#ifdef OXA_HAS_BACKTRACE

#include <backtrace.h>
#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <mutex>

namespace Oxa_1_1::platform
{

namespace
{

void ignoreError(void*, const char*, int) {}

/// How many modules have come and gone so far.
struct ModuleCounts
{
    std::uint64_t loaded = 0;
    std::uint64_t unloaded = 0;
};

ModuleCounts moduleCounts()
{
    ModuleCounts counts;
    const auto read = [](dl_phdr_info* info, std::size_t, void* result)
    {
        *static_cast<ModuleCounts*>(result) = {info->dlpi_adds, info->dlpi_subs};
        return 1;
    };
    ::dl_iterate_phdr(read, &counts);
    return counts;
}

/// The reader knows the modules that were loaded when it was made, and cannot be given back. So a new one is made only
/// when an address belongs to a module that came later, or when another module may lie where one has gone.
class Reader
{
   public:
    backtrace_state* state()
    {
        backtrace_state* const state = m_state.load();
        if (state != nullptr && moduleCounts().unloaded == m_unloadCount.load()) return state;
        return renew(state);
    }

    /// The reader that has to be asked after `former` knew nothing; null when there is no younger one to make.
    backtrace_state* renew(backtrace_state* former)
    {
        const std::lock_guard lock(m_mutex);
        if (m_state.load() != former) return m_state.load();
        const ModuleCounts counts = moduleCounts();
        const bool isSame = counts.loaded == m_loadCount && counts.unloaded == m_unloadCount.load();
        if (former != nullptr && isSame) return nullptr;
        m_loadCount = counts.loaded;
        m_unloadCount.store(counts.unloaded);
        m_state.store(backtrace_create_state(nullptr, 1, ignoreError, nullptr));
        return m_state.load();
    }

   private:
    std::atomic<backtrace_state*> m_state{nullptr};
    std::mutex m_mutex;
    std::uint64_t m_loadCount = 0;
    std::atomic<std::uint64_t> m_unloadCount{0};
};

constinit Reader reader;

int takePlace(void* result, std::uintptr_t, const char* file, int line, const char* function)
{
    // Inlined functions come first, the one that they are part of last.
    auto& place = *static_cast<SourcePlace*>(result);
    if (file != nullptr) place.file = file;
    if (line > 0) place.line = static_cast<std::uint32_t>(line);
    if (function != nullptr) place.function = function;
    return 0;
}

void takeSymbol(void* result, std::uintptr_t address, const char* name, std::uintptr_t begin, std::uintptr_t)
{
    auto& place = *static_cast<SourcePlace*>(result);
    if (name == nullptr) return;
    place.function = name;
    place.functionOffset = address - begin;
}

SourcePlace ask(backtrace_state* state, std::uint64_t address)
{
    SourcePlace place;
    if (state == nullptr) return place;
    backtrace_pcinfo(state, address, takePlace, ignoreError, &place);
    backtrace_syminfo(state, address, takeSymbol, ignoreError, &place);
    return place;
}

}  // namespace

SourcePlace findSource(std::uint64_t address)
{
    backtrace_state* const state = reader.state();
    SourcePlace place = ask(state, address);
    if (!place.function.empty() || state == nullptr) return place;
    backtrace_state* const younger = reader.renew(state);
    return younger == nullptr ? place : ask(younger, address);
}

}  // namespace Oxa_1_1::platform

#else

namespace Oxa_1_1::platform
{

SourcePlace findSource(std::uint64_t) { return {}; }

}  // namespace Oxa_1_1::platform

#endif
