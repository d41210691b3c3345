#pragma once

#include <cstddef>
#include <fstream>

extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace Oxa_1_1::test
{

/// What the process holds, in bytes; with a sanitizer, which keeps memory of its own, what it counts as allocated.
inline std::size_t memoryInUse()
{
    if (__sanitizer_get_current_allocated_bytes != nullptr) return __sanitizer_get_current_allocated_bytes();
    std::size_t size = 0;
    std::size_t resident = 0;
    std::ifstream("/proc/self/statm") >> size >> resident;
    return resident * 4096;
}

}  // namespace Oxa_1_1::test
