#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/export.h"
#include "base/object/vec3d.h"

/// @file
/// Directions packed into 16 bits, about a degree apart.
///
/// A code holds the signs of x, y and z in bits 15, 14 and 13 (set when negative), and below them where the direction
/// meets an octahedron: 7 bits each for the shares of |x| and |y|, in steps of 1/126 of |x| + |y| + |z|, folded so
/// that 13 bits do.

namespace Oxa_1_1
{

/// The code of a direction of any length: only the ratios of the coordinates count. -0 counts as positive, NaN as
/// negative. A vector without a direction keeps its signs, and each share that cannot be computed is 0: zero, NaN and
/// infinite vectors, and those whose |x| + |y| + |z| exceeds a double or is below 7.01e-307, get codes of some
/// direction.
/// @{
OXA_API std::uint16_t encodeNormal(double x, double y, double z) noexcept;

inline std::uint16_t encodeNormal(const Vec3d<double>& direction) noexcept
{
    return encodeNormal(direction.x, direction.y, direction.z);
}

inline std::uint16_t encodeNormal(const Vec3d<float>& direction) noexcept
{
    return encodeNormal(double{direction.x}, double{direction.y}, double{direction.z});
}
/// @}

/// The codes of many directions, each as encodeNormal() gives it. Fills as many as both spans have, and returns how
/// many. The spans must not overlap.
/// @{
OXA_API std::size_t encodeNormals(std::span<const Vec3d<double>> directions, std::span<std::uint16_t> codes) noexcept;
OXA_API std::size_t encodeNormals(std::span<const Vec3d<float>> directions, std::span<std::uint16_t> codes) noexcept;
/// @}

/// The unit vector of a code, whatever its bits: every code has one.
OXA_API Vec3d<double> decodeNormal(std::uint16_t code) noexcept;

/// The unit vectors of many codes, each as decodeNormal() gives it. Fills as many as both spans have, and returns how
/// many. The spans must not overlap.
OXA_API std::size_t decodeNormals(std::span<const std::uint16_t> codes, std::span<Vec3d<double>> normals) noexcept;

/// For clients that decode by themselves: what makes a unit vector of the steps in the low 13 bits of a code.
/// With h = code / 128 and l = code % 128 these are (h, l) where h + l < 127 and (127 - h, 127 - l) elsewhere, and what
/// remains to 126 for z (-1, for the few codes whose shares were both rounded up).
OXA_API extern const std::array<double, 8192> NORMAL_SCALES;

}  // namespace Oxa_1_1
