#include "base/text/vector/vector_level.h"

#ifndef __GNUC__
#include <intrin.h>

#include <immintrin.h>
#endif

namespace Oxa_1_1::text
{

#if !defined(__x86_64__) && !defined(_M_X64)

VectorLevel vectorLevel() noexcept { return VectorLevel::BASIC; }

#elif defined(__GNUC__)

VectorLevel vectorLevel() noexcept
{
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("popcnt") || !__builtin_cpu_supports("bmi"))
        return VectorLevel::BASIC;
    const bool shuffles = __builtin_cpu_supports("avx512vbmi") && __builtin_cpu_supports("avx512vbmi2");
    const bool wide = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                      __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("bmi2");
    return shuffles && wide ? VectorLevel::AVX512 : VectorLevel::AVX2;
}

#else

VectorLevel vectorLevel() noexcept
{
    constexpr auto has = [](int value, int bits) { return (value & bits) == bits; };
    constexpr int OS_SAVES_REGISTERS = 1 << 27;
    constexpr int AVX2_AND_BMI = 1 << 5 | 1 << 3;
    constexpr int AVX512_F_BW_VL_BMI2 = 1 << 16 | 1 << 30 | 1 << 31 | 1 << 8;
    constexpr int VBMI_VBMI2 = 1 << 1 | 1 << 6;
    int leaf[4];
    __cpuid(leaf, 1);
    if (!has(leaf[2], OS_SAVES_REGISTERS)) return VectorLevel::BASIC;
    const auto saved = static_cast<int>(_xgetbv(0));
    __cpuidex(leaf, 7, 0);
    if (!has(saved, 0x06) || !has(leaf[1], AVX2_AND_BMI)) return VectorLevel::BASIC;
    const bool isWide = has(saved, 0xE6) && has(leaf[1], AVX512_F_BW_VL_BMI2) && has(leaf[2], VBMI_VBMI2);
    return isWide ? VectorLevel::AVX512 : VectorLevel::AVX2;
}

#endif

}  // namespace Oxa_1_1::text
