#include "base/text/vector/kernels.h"

#include <array>

#ifndef __GNUC__
#include <intrin.h>

#include <immintrin.h>
#endif

namespace Oxa_1_1::text
{

namespace
{

#if defined(__x86_64__) || defined(_M_X64)

bool hasAvx2()
{
#ifdef __GNUC__
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") != 0;
#else
    constexpr int OS_SAVES_REGISTERS = 1 << 27;
    constexpr int AVX2 = 1 << 5;
    int leaf[4];
    __cpuid(leaf, 1);
    if ((leaf[2] & OS_SAVES_REGISTERS) == 0 || (_xgetbv(0) & 6) != 6) return false;
    __cpuidex(leaf, 7, 0);
    return (leaf[1] & AVX2) != 0;
#endif
}

constinit const std::array KERNELS{&SCALAR_KERNELS, &SSE2_KERNELS, &AVX2_KERNELS};

std::size_t countAvailable() { return hasAvx2() ? 3 : 2; }

// Usable before this file is initialised, and better afterwards.
constinit const TextKernels* active = &SSE2_KERNELS;

#else

constinit const std::array KERNELS{&SCALAR_KERNELS};

std::size_t countAvailable() { return 1; }

constinit const TextKernels* active = &SCALAR_KERNELS;

#endif

[[maybe_unused]] const bool upgraded = (active = KERNELS[countAvailable() - 1]) != nullptr;

}  // namespace

const TextKernels& textKernels() noexcept { return *active; }

std::span<const TextKernels* const> availableTextKernels() noexcept
{
    return std::span(KERNELS).first(countAvailable());
}

}  // namespace Oxa_1_1::text
