// Scan points, their conversions, and the traits of bounding boxes.

#include "base/object/scan_point.h"

#include <gtest/gtest.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "base/object/bounding_box_traits.h"
#include "base/object/scan_normal.h"

namespace Oxa_1_1
{

namespace
{

using FloatPoint = ScanPtColor<Vec3d<float>>;
using DoublePoint = ScanPtColor<Vec3d<double>>;
using FloatExt = ScanPtColorExt<Vec3d<float>>;
using DoubleExt = ScanPtColorExt<Vec3d<double>>;

template <class Target, class Source>
concept Castable = requires(const Source& source)
{
    scanpt_cast<Target>(source);
};

static_assert(Castable<FloatPoint, DoublePoint> && Castable<DoubleExt, FloatExt> && Castable<FloatExt, FloatExt>);
static_assert(!Castable<FloatPoint, FloatExt> && !Castable<DoubleExt, DoublePoint>);
static_assert(!Castable<ScanPtColor<int>, ScanPtColor<int>> && !Castable<DoublePoint, ScanPtColor<double>>);
static_assert(scanpt_cast<DoublePoint>(FloatPoint{{1, 2, 3}, 4, {5}}).position.z == 3);

template <class T>
bool isAllZero(const T& value)
{
    constexpr unsigned char ZEROS[sizeof(T)] = {};
    return std::memcmp(&value, ZEROS, sizeof(T)) == 0;
}

TEST(ScanPoint, NullReferencesAreZero)
{
    EXPECT_TRUE(isAllZero(FloatPoint::nullReference));
    EXPECT_TRUE(isAllZero(DoublePoint::nullReference));
    EXPECT_TRUE(isAllZero(ScanPtColor<int>::nullReference));
    EXPECT_TRUE(isAllZero(ScanPtColor<double>::nullReference));
    EXPECT_EQ(FloatPoint::nullReference.normal, encodeNormal(0, 0, 1));
    EXPECT_EQ(DoublePoint::nullReference, DoublePoint{});
}

/// What a cast to `Target` has to give, by the rules of the language alone.
template <class Target, class Source>
void expectConverted(const Target& result, const Source& source)
{
    using T = decltype(result.position.x);
    const T coordinates[] = {static_cast<T>(source.position.x), static_cast<T>(source.position.y),
                             static_cast<T>(source.position.z)};
    EXPECT_EQ(std::memcmp(&result.position, coordinates, sizeof coordinates), 0);
    EXPECT_EQ(result.normal, source.normal);
    EXPECT_EQ(result.colour, source.colour);
    if constexpr (requires { source.extra; })
    {
        EXPECT_EQ(result.extra, source.extra);
    }
}

template <class Point>
std::vector<Point> samples()
{
    using T = decltype(Point::position.x);
    using Limits = std::numeric_limits<T>;
    const T coordinates[] = {0,
                             T(-0.0),
                             T(0.1),
                             T(-12345.678),
                             Limits::max(),
                             Limits::lowest(),
                             Limits::denorm_min(),
                             1e-30f,
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::quiet_NaN(),
                             T(16777217)};
    std::vector<Point> points;
    std::uint16_t n = 0xFFF0;
    for (const T x : coordinates)
        for (const T y : coordinates)
        {
            Point point{};
            point.position = {x, y, x};
            point.normal = n;
            point.colour = {1, static_cast<std::uint8_t>(n), 255, 0};
            if constexpr (requires { point.extra; }) point.extra = static_cast<std::uint16_t>(3 * n);
            points.push_back(point);
            ++n;
        }
    return points;
}

template <class Target, class Source>
void expectCasts()
{
    const auto sources = samples<Source>();
    for (const auto& source : sources)
    {
        expectConverted(scanpt_cast<Target>(source), source);
        expectConverted(scanpt_cast<Source>(source), source);
    }
    const auto last = scanpt_cast<Target>(sources[5]);
    std::vector<Target> targets(sources.size() + 1, last);
    EXPECT_EQ(scanpt_cast(sources, targets), sources.size());
    for (std::size_t i = 0; i < sources.size(); ++i) expectConverted(targets[i], sources[i]);
    EXPECT_EQ(targets.back(), last);
    EXPECT_EQ(scanpt_cast(sources, std::span(targets).first(3)), 3u);
    EXPECT_EQ(scanpt_cast(std::span<const Source>(), targets), 0u);
}

TEST(ScanPoint, CastsConvertTheCoordinatesAndCopyTheRest)
{
    expectCasts<FloatPoint, DoublePoint>();
    expectCasts<DoublePoint, FloatPoint>();
    expectCasts<FloatExt, DoubleExt>();
    expectCasts<DoubleExt, FloatExt>();
}

TEST(ScanPoint, BeyondTheRangeOfFloatLiesInfinity)
{
    const auto point = scanpt_cast<FloatPoint>(DoublePoint{{1e300, -1e300, 1e-300}, 255, {1, 2, 3, 4}});
    EXPECT_EQ(point, (FloatPoint{{INFINITY, -INFINITY, 0}, 255, {1, 2, 3, 4}}));
}

TEST(BoundingBoxTraits, HaveTheirValues)
{
    using Float = OxaBoundingBoxTraits<float>;
    using Double = OxaBoundingBoxTraits<double>;
    EXPECT_EQ(std::bit_cast<std::uint32_t>(Float::epsilon), 0x3727C5ACu);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(Double::epsilon), 0x3EE4F8B588E368F1u);
    EXPECT_EQ(Float::sqrt(2.0f), std::sqrt(2.0f));
    EXPECT_EQ(Double::sqrt(2.0), std::sqrt(2.0));
    EXPECT_TRUE(std::isnan(Double::sqrt(-1)));
    EXPECT_EQ(Float::maxVector, (Vec3d<float>{FLT_MAX, FLT_MAX, FLT_MAX}));
    EXPECT_EQ(Double::maxVector, (Vec3d<double>{DBL_MAX, DBL_MAX, DBL_MAX}));
}

// As docs/scan_points.md shows it.
TEST(ScanPoint, Example)
{
    const DoublePoint precise{{12.5, -3.25, 0.1}, encodeNormal(0, 1, 1), {200, 180, 20, 255}};
    const auto compact = scanpt_cast<FloatPoint>(precise);
    const Vec3d<double> up = decodeNormal(compact.normal);

    const std::vector<DoublePoint> scan(1000, precise);
    std::vector<FloatPoint> stored(scan.size());
    const std::size_t count = scanpt_cast(scan, stored);

    EXPECT_EQ(up.y, up.z);
    EXPECT_EQ(count, 1000u);
    EXPECT_EQ(stored.back(), compact);
}

}  // namespace

}  // namespace Oxa_1_1
