#pragma once

// Bit operations as the compiler's own functions: the standard ones are shared inline functions, which a source that
// is compiled for a later processor must not leave behind for others.

#ifndef __GNUC__
#include <intrin.h>
#endif

#include <cstddef>

/// Keeps a function out of its callers, which are small and must not save what it needs.
#ifdef __GNUC__
#define OXA_KEPT_APART __attribute__((noinline))
#else
#define OXA_KEPT_APART __declspec(noinline)
#endif

namespace Oxa_1_1::text
{

namespace
{

/// `mask` is not 0.
[[maybe_unused]] inline int trailingZeros(unsigned mask)
{
#ifdef __GNUC__
    return __builtin_ctz(mask);
#else
    unsigned long index = 0;
    _BitScanForward(&index, mask);
    return static_cast<int>(index);
#endif
}

[[maybe_unused]] inline std::size_t bitCount(unsigned mask)
{
#ifdef __GNUC__
    return static_cast<std::size_t>(__builtin_popcount(mask));
#else
    mask = mask - ((mask >> 1) & 0x55555555);
    mask = (mask & 0x33333333) + ((mask >> 2) & 0x33333333);
    return ((mask + (mask >> 4)) & 0x0F0F0F0F) * 0x01010101 >> 24;
#endif
}

}  // namespace

}  // namespace Oxa_1_1::text
