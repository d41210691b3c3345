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

/// The kinds of vectors that both the processor and the system serve, beyond SSE2: 0, 1 for AVX2, 2 for AVX-512 with
/// its byte shuffles.
int vectorLevel()
{
#ifdef __GNUC__
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("popcnt") || !__builtin_cpu_supports("bmi"))
        return 0;
    const bool shuffles = __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2");
    const bool wide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
    return shuffles && wide ? 2 : 1;
#else
    constexpr auto has = [](int value, int bits) { return (value & bits) == bits; };
    constexpr int OS_SAVES_REGISTERS = 1 << 27;
    constexpr int AVX2_AND_BMI = 1 << 5 | 1 << 3;
    constexpr int AVX512_F_BW_VL_BMI2 = 1 << 16 | 1 << 30 | 1 << 31 | 1 << 8;
    constexpr int VBMI_VBMI2 = 1 << 1 | 1 << 6;
    int leaf[4];
    __cpuid(leaf, 1);
    if (!has(leaf[2], OS_SAVES_REGISTERS)) return 0;
    const auto saved = static_cast<int>(_xgetbv(0));
    __cpuidex(leaf, 7, 0);
    if (!has(saved, 0x06) || !has(leaf[1], AVX2_AND_BMI)) return 0;
    return has(saved, 0xE6) && has(leaf[1], AVX512_F_BW_VL_BMI2) && has(leaf[2], VBMI_VBMI2) ? 2 : 1;
#endif
}

constinit const std::array KERNELS{&SCALAR_KERNELS, &SSE2_KERNELS, &AVX2_KERNELS, &AVX512_KERNELS};

std::size_t countAvailable() { return std::size_t{2} + static_cast<std::size_t>(vectorLevel()); }

constexpr const TextKernels& PLAIN_KERNELS = SSE2_KERNELS;

#else

constinit const std::array KERNELS{&SCALAR_KERNELS};

std::size_t countAvailable() { return 1; }

constexpr const TextKernels& PLAIN_KERNELS = SCALAR_KERNELS;

#endif

}  // namespace

constinit const TextKernels* activeTextKernels = &PLAIN_KERNELS;

namespace
{

[[maybe_unused]] const bool upgraded = (activeTextKernels = KERNELS[countAvailable() - 1]) != nullptr;

}  // namespace

std::span<const TextKernels* const> availableTextKernels() noexcept
{
    return std::span(KERNELS).first(countAvailable());
}

}  // namespace Oxa_1_1::text
