// Call stacks by the run-time libraries of the system and the compiler.

#include <backtrace.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <atomic>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "benchmarks/contest.h"
#include "benchmarks/deep_stack.h"

namespace Oxa_1_1::bench
{

namespace
{

int read(void* seen, std::uintptr_t, const char* file, int line, const char* function)
{
    *static_cast<std::size_t*>(seen) +=
        static_cast<std::size_t>(line) + (file == nullptr ? 0U : 1U) + (function == nullptr ? 0U : 1U);
    return 0;
}

void ignore(void*, const char*, int) {}

using Capture = int (*)(void** addresses, int capacity);

/// Loaded for itself alone: a program that is linked with it gets its functions in place of the system's. Null when it
/// is not installed.
Capture cachedUnwinder()
{
    void* const library = ::dlopen("libunwind.so.8", RTLD_NOW | RTLD_LOCAL);
    return library == nullptr ? nullptr : reinterpret_cast<Capture>(::dlsym(library, "unw_backtrace"));
}

[[maybe_unused]] const bool registered = []
{
    static const Capture unwind = cachedUnwinder();
    if (unwind != nullptr)
        addBelow<STACK_DEPTH>(work::CAPTURE, "libunwind",
                              []
                              {
                                  void* addresses[STACK_DEPTH];
                                  keep(unwind(addresses, STACK_DEPTH));
                              });
    const auto capture = []
    {
        void* addresses[STACK_DEPTH];
        keep(::backtrace(addresses, STACK_DEPTH));
    };
    addBelow<STACK_DEPTH>(work::CAPTURE, "backtrace", capture);
    addBelow<STACK_DEPTH>(work::COUNT_DEPTH, "backtrace",
                          []
                          {
                              void* addresses[1024];
                              keep(::backtrace(addresses, 1024));
                          });
    static backtrace_state* const state = backtrace_create_state(nullptr, 1, ignore, nullptr);
    addBelow<STACK_DEPTH>(work::RESOLVE, "libbacktrace",
                          []
                          {
                              static void* addresses[STACK_DEPTH];
                              static const int count = ::backtrace(addresses, STACK_DEPTH);
                              std::size_t seen = 0;
                              for (int i = 0; i < count; ++i)
                                  backtrace_pcinfo(state, reinterpret_cast<std::uintptr_t>(addresses[i]) - 1, read,
                                                   ignore, &seen);
                              keep(seen);
                          });
    addBelow<STACK_DEPTH>(work::CAPTURE_NAMED, "libbacktrace",
                          []
                          {
                              std::size_t seen = 0;
                              backtrace_full(state, 0, read, ignore, &seen);
                              keep(seen);
                          });

    // What a look into a list of passed-over lines takes at least: a guard, a lock and two searches.
    static std::map<std::string, std::set<unsigned int>, std::less<>> lines;
    for (unsigned int line = 0; line < 100; ++line) lines["file.cpp"].insert(line);
    add(work::PASS_OVER, FLOOR,
        []
        {
            static std::atomic<int> guard{0};
            static std::mutex mutex;
            ++guard;
            {
                const std::lock_guard lock(mutex);
                keep(lines.find(std::string_view("file.cpp"))->second.contains(50));
            }
            --guard;
        });
    return true;
}();

}  // namespace

}  // namespace Oxa_1_1::bench
