#pragma once

// The arithmetic of packed normals, the same for single values, loops over many and constants. Included in the unnamed
// namespace of the sources that use it, behind <cstdint>: what is compiled for a later processor must leave nothing
// behind for others, so that only the compiler's own functions are called, too.

/// A direction meets an octahedron whose corners are so many steps away from its centre.
constexpr int STEPS = 126;
/// The low bits of a code are two numbers of steps, the second of so many values.
constexpr int ROW = 128;

constexpr unsigned NEGATIVE_X = 0x8000;
constexpr unsigned NEGATIVE_Y = 0x4000;
constexpr unsigned NEGATIVE_Z = 0x2000;
constexpr unsigned LOW_BITS = 0x1FFF;

/// By clearing the sign, NaN's too: compilers make one vector instruction of it, and none of a comparison.
constexpr double magnitude(double value) noexcept
{
    return __builtin_bit_cast(double, __builtin_bit_cast(std::uint64_t, value) & 0x7FFF'FFFF'FFFF'FFFFu);
}

/// The whole part. A vector with a direction has less than 127 steps; the NaN or the infinity of one without becomes a
/// number of which none of the low 16 bits is set.
constexpr int wholeSteps(double steps) noexcept { return static_cast<int>(steps < 65536.0 ? steps : 65536.0); }

/// Without branches, so that loops become vectors: also the signs are summed up as floating point for that.
[[maybe_unused]] constexpr std::uint16_t normalCode(double x, double y, double z) noexcept
{
    const double signs = (x >= 0 ? 0.0 : NEGATIVE_X) + (y >= 0 ? 0.0 : NEGATIVE_Y) + (z >= 0 ? 0.0 : NEGATIVE_Z);
    const double absX = magnitude(x);
    const double absY = magnitude(y);
    const double scale = STEPS / (absX + absY + magnitude(z));
    const int steps = wholeSteps(absX * scale + 0.5) * ROW + wholeSteps(absY * scale + 0.5);
    // 64 steps of x and more go, turned by half a turn, to the free half of the square: (127 - a, 127 - b).
    const int folded = steps ^ (-(steps >> 13 & 1) & 0x3FFF);
    return static_cast<std::uint16_t>(static_cast<int>(signs) | folded);
}

/// A direction in steps, before it is brought to length 1.
struct Steps
{
    int x;
    int y;
    int z;
};

/// Without branches, as directions of a scan turn up in no order. Both numbers have 7 bits, so that 127 minus one turns
/// all of them round.
[[maybe_unused]] constexpr Steps unfold(unsigned lowBits) noexcept
{
    const int high = static_cast<int>(lowBits) / ROW;
    const int low = static_cast<int>(lowBits) % ROW;
    const int turn = -((high + low + 1) / ROW) & (ROW - 1);
    const int x = high ^ turn;
    const int y = low ^ turn;
    return {x, y, STEPS - x - y};
}

/// 1 or -1: applied to whole numbers of steps, so that no -0 arises.
[[maybe_unused]] constexpr int signOf(unsigned code, unsigned negative) noexcept
{
    return (code & negative) != 0 ? -1 : 1;
}
