#include "base/platform/linux/source_lines.h"

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

std::uint64_t loadCount()
{
    std::uint64_t count = 0;
    const auto read = [](dl_phdr_info* info, std::size_t, void* result)
    {
        *static_cast<std::uint64_t*>(result) = info->dlpi_adds;
        return 1;
    };
    ::dl_iterate_phdr(read, &count);
    return count;
}

/// The reader knows the modules that were loaded when it was made, and cannot be given back. So a new one is made only
/// when an address belongs to a module that came later.
class Reader
{
   public:
    backtrace_state* state()
    {
        if (backtrace_state* const state = m_state.load()) return state;
        return renew(nullptr);
    }

    /// The reader that has to be asked after `former` knew nothing; null when there is no younger one to make.
    backtrace_state* renew(backtrace_state* former)
    {
        const std::lock_guard lock(m_mutex);
        if (m_state.load() != former) return m_state.load();
        const std::uint64_t count = loadCount();
        if (former != nullptr && count == m_loadCount) return nullptr;
        m_loadCount = count;
        m_state.store(backtrace_create_state(nullptr, 1, ignoreError, nullptr));
        return m_state.load();
    }

   private:
    std::atomic<backtrace_state*> m_state{nullptr};
    std::mutex m_mutex;
    std::uint64_t m_loadCount = 0;
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
