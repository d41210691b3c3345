#pragma once

namespace Oxa_1_1::bench
{

/// Calls `work` below N frames of its own.
template <int N, class Work>
[[gnu::noinline]] void below(Work& work)
{
    if constexpr (N == 0)
        work();
    else
        below<N - 1>(work);
    // The call is not the last thing done, so the frame stays.
    asm volatile("" ::: "memory");
}

constexpr int STACK_DEPTH = 32;

}  // namespace Oxa_1_1::bench
