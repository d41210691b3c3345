#include "base/object/scan_normal.h"

#include <algorithm>

#include "base/object/detail/normal_code.h"

namespace Oxa_1_1
{

namespace
{

using detail::ROW;
using detail::STEPS;

constexpr unsigned NEGATIVE_X = 0x8000;
constexpr unsigned NEGATIVE_Y = 0x4000;
constexpr unsigned NEGATIVE_Z = 0x2000;
constexpr unsigned LOW_BITS = 0x1FFF;

/// A direction in steps, before it is brought to length 1.
struct Steps
{
    int x;
    int y;
    int z;
};

/// Without branches, as directions of a scan turn up in no order. Both numbers have 7 bits, so that 127 minus one turns
/// all of them round.
constexpr Steps unfold(unsigned lowBits) noexcept
{
    const int high = static_cast<int>(lowBits) / ROW;
    const int low = static_cast<int>(lowBits) % ROW;
    const int turn = -((high + low + 1) / ROW) & (ROW - 1);
    const int x = high ^ turn;
    const int y = low ^ turn;
    return {x, y, STEPS - x - y};
}

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

/// 1 or -1: applied to whole numbers of steps, so that no -0 arises.
constexpr int signOf(unsigned code, unsigned negative) noexcept { return (code & negative) != 0 ? -1 : 1; }

Vec3d<double> unitVector(unsigned code) noexcept
{
    const Steps steps = unfold(code & LOW_BITS);
    const double scale = NORMAL_SCALES[code & LOW_BITS];
    return {steps.x * signOf(code, NEGATIVE_X) * scale, steps.y * signOf(code, NEGATIVE_Y) * scale,
            steps.z * signOf(code, NEGATIVE_Z) * scale};
}

template <class T>
std::size_t encodeAll(std::span<const Vec3d<T>> directions, std::span<std::uint16_t> codes) noexcept
{
    const std::size_t count = std::min(directions.size(), codes.size());
    const Vec3d<T>* const from = directions.data();
    std::uint16_t* const to = codes.data();
    for (std::size_t i = 0; i < count; ++i) to[i] = detail::normalCode(from[i].x, from[i].y, from[i].z);
    return count;
}

}  // namespace

constinit const std::array<double, LOW_BITS + 1> NORMAL_SCALES = makeScales();

std::uint16_t encodeNormal(double x, double y, double z) noexcept { return detail::normalCode(x, y, z); }

std::size_t encodeNormals(std::span<const Vec3d<double>> directions, std::span<std::uint16_t> codes) noexcept
{
    return encodeAll(directions, codes);
}

std::size_t encodeNormals(std::span<const Vec3d<float>> directions, std::span<std::uint16_t> codes) noexcept
{
    return encodeAll(directions, codes);
}

Vec3d<double> decodeNormal(std::uint16_t code) noexcept { return unitVector(code); }

std::size_t decodeNormals(std::span<const std::uint16_t> codes, std::span<Vec3d<double>> normals) noexcept
{
    const std::size_t count = std::min(codes.size(), normals.size());
    for (std::size_t i = 0; i < count; ++i) normals[i] = unitVector(codes[i]);
    return count;
}

}  // namespace Oxa_1_1
