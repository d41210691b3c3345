#include "base/object/scan_normal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "base/object/vector/normal_kernels.h"

namespace Oxa_1_1
{

namespace
{

#include "base/object/vector/normal_loops.inl"

/// The square root of a number from 2^12 to 2^14, correctly rounded, because std::sqrt is none for constants: digit by
/// digit, two more than a double holds, the last of which stands for all that follow.
constexpr double squareRoot(int number) noexcept
{
    constexpr int WHOLE_DIGITS = 7;
    constexpr int DIGITS_BEHIND = 48;
    std::uint64_t root = 0;
    std::uint64_t rest = 0;
    for (int place = WHOLE_DIGITS - 1; place >= -DIGITS_BEHIND; --place)
    {
        const int pair = place < 0 ? 0 : number >> (2 * place) & 3;
        const std::uint64_t trial = root << 2 | 1;
        rest = rest << 2 | static_cast<std::uint64_t>(pair);
        root <<= 1;
        if (rest < trial) continue;
        rest -= trial;
        root |= 1;
    }
    if (rest != 0) root |= 1;
    return static_cast<double>(root) / static_cast<double>(std::uint64_t{1} << DIGITS_BEHIND);
}

constexpr std::array<double, LOW_BITS + 1> makeScales() noexcept
{
    std::array<double, LOW_BITS + 1> scales{};
    for (unsigned i = 0; i <= LOW_BITS; ++i)
    {
        const Steps steps = unfold(i);
        scales[i] = 1 / squareRoot(steps.x * steps.x + steps.y * steps.y + steps.z * steps.z);
    }
    return scales;
}

}  // namespace

constinit const std::array<double, LOW_BITS + 1> NORMAL_SCALES = makeScales();

std::uint16_t encodeNormal(double x, double y, double z) noexcept { return normalCode(x, y, z); }

std::size_t encodeNormals(std::span<const Vec3d<double>> directions, std::span<std::uint16_t> codes) noexcept
{
    const std::size_t count = std::min(directions.size(), codes.size());
    detail::activeNormalKernels->encodeDoubles(directions.data(), count, codes.data());
    return count;
}

std::size_t encodeNormals(std::span<const Vec3d<float>> directions, std::span<std::uint16_t> codes) noexcept
{
    const std::size_t count = std::min(directions.size(), codes.size());
    detail::activeNormalKernels->encodeFloats(directions.data(), count, codes.data());
    return count;
}

Vec3d<double> decodeNormal(std::uint16_t code) noexcept
{
    Vec3d<double> normal{};
    decodeAll(&code, 1, NORMAL_SCALES.data(), &normal);
    return normal;
}

std::size_t decodeNormals(std::span<const std::uint16_t> codes, std::span<Vec3d<double>> normals) noexcept
{
    const std::size_t count = std::min(codes.size(), normals.size());
    detail::activeNormalKernels->decode(codes.data(), count, NORMAL_SCALES.data(), normals.data());
    return count;
}

}  // namespace Oxa_1_1
