#pragma once

#include <bit>
#include <cstdint>

/// The arithmetic of packed normals, the same for single values, loops over many and constants.
namespace Oxa_1_1::detail
{

/// A direction meets an octahedron whose corners are so many steps away from its centre.
inline constexpr int STEPS = 126;
/// The low bits of a code are two numbers of steps, the second of so many values.
inline constexpr int ROW = 128;

/// By clearing the sign, NaN's too: compilers make one vector instruction of it, and none of a comparison.
constexpr double magnitude(double value) noexcept
{
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & 0x7FFF'FFFF'FFFF'FFFFu);
}

/// The whole part. A vector with a direction has less than 127 steps; the NaN or the infinity of one without becomes a
/// number of which none of the low 16 bits is set.
constexpr int wholeSteps(double steps) noexcept { return static_cast<int>(steps < 65536.0 ? steps : 65536.0); }

/// Without branches, so that loops become vectors: also the signs are summed up as floating point for that.
constexpr std::uint16_t normalCode(double x, double y, double z) noexcept
{
    const double signs = (x >= 0 ? 0.0 : 0x8000) + (y >= 0 ? 0.0 : 0x4000) + (z >= 0 ? 0.0 : 0x2000);
    const double absX = magnitude(x);
    const double absY = magnitude(y);
    const double scale = STEPS / (absX + absY + magnitude(z));
    const int steps = wholeSteps(absX * scale + 0.5) * ROW + wholeSteps(absY * scale + 0.5);
    // 64 steps of x and more go, turned by half a turn, to the free half of the square: (127 - a, 127 - b).
    const int folded = steps ^ (-(steps >> 13 & 1) & 0x3FFF);
    return static_cast<std::uint16_t>(static_cast<int>(signs) | folded);
}

}  // namespace Oxa_1_1::detail
