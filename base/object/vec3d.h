#pragma once

#include <concepts>
#include <type_traits>

#include "base/export.h"

namespace Oxa_1_1
{

/// The precision of a coordinate.
template <class T>
concept Coordinate = std::same_as<T, float> || std::same_as<T, double>;

/// A position or a direction in space. Any value is kept as it is, NaN and infinities included. Vec3d<T>{} is zero;
/// without an initialiser it is not set at all, so that large arrays cost nothing before they are filled.
template <Coordinate T>
struct Vec3d
{
    /// The coordinates, in the unit of the client.
    /// @{
    T x;
    T y;
    T z;
    /// @}

    /// Coordinate by coordinate: -0 equals 0, and NaN equals nothing.
    friend constexpr bool operator==(const Vec3d&, const Vec3d&) = default;
};

static_assert(sizeof(Vec3d<float>) == 12 && alignof(Vec3d<float>) == alignof(float));
static_assert(sizeof(Vec3d<double>) == 24 && alignof(Vec3d<double>) == alignof(double));
static_assert(std::is_trivial_v<Vec3d<float>> && std::is_standard_layout_v<Vec3d<float>>);
static_assert(std::is_trivial_v<Vec3d<double>> && std::is_standard_layout_v<Vec3d<double>>);

}  // namespace Oxa_1_1
