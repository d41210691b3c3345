#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <type_traits>

#include "base/export.h"
#include "base/object/vec3d.h"

namespace Oxa_1_1
{

/// A position in space, in either precision.
template <class T>
concept SpacePosition = std::same_as<T, Vec3d<float>> || std::same_as<T, Vec3d<double>>;

/// What a scan point can have for its position: a place in space, or a single number.
template <class T>
concept ScanPosition = SpacePosition<T> || std::same_as<T, int> || std::same_as<T, double>;

/// A coloured point of a scan. A plain value: nothing is checked, and without an initialiser nothing is set.
template <ScanPosition T>
struct ScanPtColor
{
    /// In the unit of the client.
    T position;
    /// The direction of the surface, as encodeNormal() packs it.
    std::uint16_t normal;
    /// Four channels in the order in which they were stored; the library never changes it.
    std::array<std::uint8_t, 4> colour;

    /// The point that stands for none: all zero. As a code of a normal, zero is (0, 0, 1).
    static const ScanPtColor nullReference;

    /// Field by field; a NaN in the position equals nothing.
    friend constexpr bool operator==(const ScanPtColor&, const ScanPtColor&) = default;
};

extern template struct OXA_API ScanPtColor<Vec3d<float>>;
extern template struct OXA_API ScanPtColor<Vec3d<double>>;
extern template struct OXA_API ScanPtColor<int>;
extern template struct OXA_API ScanPtColor<double>;

/// A coloured point with one more value. It takes no more memory: ScanPtColor has to fill up to the same size.
template <SpacePosition T>
struct ScanPtColorExt
{
    /// As in ScanPtColor.
    /// @{
    T position;
    std::uint16_t normal;
    std::array<std::uint8_t, 4> colour;
    /// @}
    /// The client's own, carried along unchanged.
    std::uint16_t extra;

    /// Field by field; a NaN in the position equals nothing.
    friend constexpr bool operator==(const ScanPtColorExt&, const ScanPtColorExt&) = default;
};

namespace detail
{

template <class Target, class Source>
inline constexpr bool ARE_POINTS_OF_ONE_KIND = false;
template <SpacePosition T, SpacePosition S>
inline constexpr bool ARE_POINTS_OF_ONE_KIND<ScanPtColor<T>, ScanPtColor<S>> = true;
template <SpacePosition T, SpacePosition S>
inline constexpr bool ARE_POINTS_OF_ONE_KIND<ScanPtColorExt<T>, ScanPtColorExt<S>> = true;

// What makes the narrowing of a double beyond the range of float an infinity, and so defined.
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

/// Field by field into its place: a whole point put together first is slower to store.
template <class T, class Source, template <class> class Point>
constexpr void convert(const Point<Source>& source, Point<Vec3d<T>>& target) noexcept
{
    target.position.x = static_cast<T>(source.position.x);
    target.position.y = static_cast<T>(source.position.y);
    target.position.z = static_cast<T>(source.position.z);
    target.normal = source.normal;
    target.colour = source.colour;
    if constexpr (requires { source.extra; }) target.extra = source.extra;
}

}  // namespace detail

/// Two points in space of one kind, ScanPtColor or ScanPtColorExt, each of either precision.
template <class Target, class Source>
concept ScanPointConversion = detail::ARE_POINTS_OF_ONE_KIND<Target, Source>;

/// The point with coordinates of the other precision, or a copy. Coordinates are rounded to the nearest float, or
/// widened exactly; what a float cannot hold becomes an infinity. All else is copied.
template <class Target, class Source>
requires ScanPointConversion<Target, Source>
constexpr Target scanpt_cast(const Source& source) noexcept
{
    if constexpr (std::same_as<Target, Source>)
        return source;
    else
    {
        Target target{};
        detail::convert(source, target);
        return target;
    }
}

/// Many points at the speed of the memory, each as scanpt_cast() of one gives it. Fills as many as both spans have, and
/// returns how many. The spans must not overlap.
/// @{
OXA_API std::size_t scanpt_cast(std::span<const ScanPtColor<Vec3d<double>>> sources,
                                std::span<ScanPtColor<Vec3d<float>>> targets) noexcept;
OXA_API std::size_t scanpt_cast(std::span<const ScanPtColor<Vec3d<float>>> sources,
                                std::span<ScanPtColor<Vec3d<double>>> targets) noexcept;
OXA_API std::size_t scanpt_cast(std::span<const ScanPtColorExt<Vec3d<double>>> sources,
                                std::span<ScanPtColorExt<Vec3d<float>>> targets) noexcept;
OXA_API std::size_t scanpt_cast(std::span<const ScanPtColorExt<Vec3d<float>>> sources,
                                std::span<ScanPtColorExt<Vec3d<double>>> targets) noexcept;
/// @}

// The fields lie in order at their natural places, and nothing else does: files and clients rely on it.
namespace detail
{

template <class Point, std::size_t NORMAL, std::size_t SIZE>
constexpr bool hasLayout()
{
    static_assert(std::is_trivial_v<Point> && std::is_standard_layout_v<Point>);
    static_assert(offsetof(Point, position) == 0 && offsetof(Point, normal) == NORMAL);
    static_assert(offsetof(Point, colour) == NORMAL + 2 && sizeof(Point) == SIZE);
    if constexpr (requires(Point point) { point.extra; }) static_assert(offsetof(Point, extra) == NORMAL + 6);
    return true;
}

static_assert(hasLayout<ScanPtColor<Vec3d<float>>, 12, 20>() && hasLayout<ScanPtColorExt<Vec3d<float>>, 12, 20>());
static_assert(hasLayout<ScanPtColor<Vec3d<double>>, 24, 32>() && hasLayout<ScanPtColorExt<Vec3d<double>>, 24, 32>());
static_assert(hasLayout<ScanPtColor<int>, 4, 12>() && hasLayout<ScanPtColor<double>, 8, 16>());

}  // namespace detail

}  // namespace Oxa_1_1
