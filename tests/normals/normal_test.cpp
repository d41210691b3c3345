// Packed normals.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "base/object/scan_normal.h"
#include "base/object/vector/normal_kernels.h"

namespace Oxa_1_1
{

namespace
{

constexpr double INF = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// The rule, step by step, for vectors with a direction.
int expectedCode(double x, double y, double z)
{
    int code = 0;
    if (!(x >= 0)) code |= 0x8000;
    if (!(y >= 0)) code |= 0x4000;
    if (!(z >= 0)) code |= 0x2000;
    const double s = 126 / (std::fabs(x) + std::fabs(y) + std::fabs(z));
    const int a = static_cast<int>(std::trunc(std::fabs(x) * s + 0.5));
    const int b = static_cast<int>(std::trunc(std::fabs(y) * s + 0.5));
    return code | (a < 64 ? a * 128 + b : (127 - a) * 128 + (127 - b));
}

struct Share
{
    int u, v, w;
};

Share shareOf(int code)
{
    const int h = code % 8192 / 128;
    const int l = code % 128;
    const int u = l + h < 127 ? h : 127 - h;
    const int v = l + h < 127 ? l : 127 - l;
    return {u, v, 126 - u - v};
}

/// The root to the nearest double: not every system's own is.
double exactRoot(int square)
{
    const auto error = [square](double root)
    {
        const double high = static_cast<float>(root);
        const double low = root - high;
        return std::fabs(high * high - square + 2 * high * low + low * low);
    };
    const double near = std::sqrt(square);
    return std::min({near, std::nextafter(near, 0.0), std::nextafter(near, INF)},
                    [&error](double a, double b) { return error(a) < error(b); });
}

std::vector<Vec3d<double>> randomDirections(std::size_t count)
{
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> coordinate(-1, 1);
    std::uniform_int_distribution<int> exponent(-200, 200);
    std::vector<Vec3d<double>> directions(count);
    for (auto& direction : directions)
    {
        const double length = std::ldexp(1, exponent(random));
        direction = {coordinate(random) * length, coordinate(random) * length, coordinate(random) * length};
    }
    return directions;
}

TEST(Normal, KnownDirections)
{
    const struct
    {
        double x, y, z;
        int code;
    } cases[] = {
        {0, 0, 1, 0},
        {0, 0, -1, 0x2000},
        {1, 0, 0, 255},
        {-1, 0, 0, 0x80FF},
        {0, 1, 0, 126},
        {0, -1, 0, 0x407E},
        {-0.0, -0.0, 7, 0},
        {0, 0, 1e300, 0},
        {63, 0, 63, 0x1F80},
        {64, 0, 62, 0x1FFF},
        {63, 63, 0, 0x1FBF},
        {2, -2, 2, 0x552A},
        {1, 1, 1, 0x152A},
        {-1, 1, 1, 0x952A},
        {1, -1, 1, 0x552A},
        {1, 1, -1, 0x352A},
        {-1, -1, 1, 0xD52A},
        {-1, 1, -1, 0xB52A},
        {1, -1, -1, 0x752A},
        {-1, -1, -1, 0xF52A},
        {63.5, 62.5, 0, 0x1FC0},
        {62.5, 63.5, 0, 0x1FC0},
        {DBL_MAX / 2, 0, 0, 255},
        {1e-306, 0, 0, 255},
    };
    for (const auto& [x, y, z, code] : cases) EXPECT_EQ(encodeNormal(x, y, z), code) << x << ", " << y << ", " << z;
    EXPECT_EQ(encodeNormal(Vec3d<float>{1, 0, 0}), 255);
    EXPECT_EQ(encodeNormal(Vec3d<double>{1, 1, -1}), 0x352A);
}

TEST(Normal, WithoutADirectionTheSignsStayAndUnknownSharesAreZero)
{
    const struct
    {
        double x, y, z;
        int code;
    } cases[] = {
        {0, 0, 0, 0},
        {-0.0, -0.0, -0.0, 0},
        {NOT_A_NUMBER, 0, 1, 0x8000},
        {1, NOT_A_NUMBER, -1, 0x6000},
        {std::copysign(NOT_A_NUMBER, -1.0), NOT_A_NUMBER, NOT_A_NUMBER, 0xE000},
        {INF, 0, 0, 0},
        {1, -INF, 1, 0x4000},
        {-INF, INF, -INF, 0xA000},
        {DBL_MAX, -DBL_MAX, 1, 0x4000},
        {DBL_TRUE_MIN, 0, -DBL_TRUE_MIN, 0x2000},
    };
    for (const auto& [x, y, z, code] : cases) EXPECT_EQ(encodeNormal(x, y, z), code) << x << ", " << y << ", " << z;
}

TEST(Normal, RandomDirectionsFollowTheRuleAndComeBackWithinADegree)
{
    double least = 1;
    for (const auto& [x, y, z] : randomDirections(300000))
    {
        const std::uint16_t code = encodeNormal(x, y, z);
        ASSERT_EQ(code, expectedCode(x, y, z)) << x << ", " << y << ", " << z;
        const auto normal = decodeNormal(code);
        least = std::min(least, (normal.x * x + normal.y * y + normal.z * z) / std::hypot(x, y, z));
    }
    EXPECT_GT(least, std::cos(1.0 / 57.29577951308232));
}

// The others: a sign of a share of 0 is lost, and a share of -1 is one that the encoder rounds elsewhere.
TEST(Normal, CodesComeBackUnlessTheirSignsOrSharesAreIdle)
{
    int count = 0;
    for (int code = 0; code < 65536; ++code)
    {
        const auto [u, v, w] = shareOf(code);
        const bool idle = w < 0 || (u == 0 && (code & 0x8000) != 0) || (v == 0 && (code & 0x4000) != 0) ||
                          (w == 0 && (code & 0x2000) != 0);
        ASSERT_EQ(encodeNormal(decodeNormal(static_cast<std::uint16_t>(code))) == code, !idle) << code;
        count += idle ? 0 : 1;
    }
    EXPECT_EQ(count, 63506);
}

TEST(Normal, EveryCodeIsAUnitVector)
{
    for (int code = 0; code < 65536; ++code)
    {
        const auto [u, v, w] = shareOf(code);
        const double scale = 1 / exactRoot(u * u + v * v + w * w);
        const auto index = static_cast<std::size_t>(code % 8192);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(NORMAL_SCALES[index]), std::bit_cast<std::uint64_t>(scale)) << code;
        const auto [x, y, z] = decodeNormal(static_cast<std::uint16_t>(code));
        ASSERT_EQ(x, ((code & 0x8000) != 0 ? -u : u) * scale) << code;
        ASSERT_EQ(y, ((code & 0x4000) != 0 ? -v : v) * scale) << code;
        ASSERT_EQ(z, ((code & 0x2000) != 0 ? -w : w) * scale) << code;
        ASSERT_NEAR(std::hypot(x, y, z), 1, 1e-15) << code;
    }
}

TEST(Normal, ManyAreLikeOneOnEveryProcessor)
{
    auto directions = randomDirections(1000);
    directions[3] = {NOT_A_NUMBER, -INF, 0};
    directions[700] = {};
    std::vector<Vec3d<float>> floats;
    floats.reserve(directions.size());
    for (const auto& [x, y, z] : directions)
        floats.push_back({static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    for (const detail::NormalKernels* const kernels : detail::availableNormalKernels())
    {
        for (const std::size_t count : {0u, 1u, 2u, 7u, 8u, 9u, 31u, 1000u})
        {
            std::vector<std::uint16_t> codes(count + 1, 0xABCD);
            kernels->encodeDoubles(directions.data(), count, codes.data());
            EXPECT_EQ(codes.back(), 0xABCD);
            std::vector<std::uint16_t> floatCodes(count + 1, 0xABCD);
            kernels->encodeFloats(floats.data(), count, floatCodes.data());
            EXPECT_EQ(floatCodes.back(), 0xABCD);
            std::vector<Vec3d<double>> normals(count + 1, {7, 7, 7});
            kernels->decode(codes.data(), count, NORMAL_SCALES.data(), normals.data());
            EXPECT_EQ(normals.back(), (Vec3d<double>{7, 7, 7}));
            for (std::size_t i = 0; i < count; ++i)
            {
                ASSERT_EQ(codes[i], encodeNormal(directions[i])) << i;
                ASSERT_EQ(floatCodes[i], encodeNormal(floats[i])) << i;
                ASSERT_EQ(normals[i], decodeNormal(codes[i])) << i;
            }
        }
    }
}

TEST(Normal, AsManyAsBothSpansHave)
{
    const auto directions = randomDirections(3);
    std::uint16_t codes[2] = {};
    EXPECT_EQ(encodeNormals(directions, codes), 2u);
    EXPECT_EQ(codes[1], encodeNormal(directions[1]));
    const Vec3d<float> floats[] = {{1, 0, 0}};
    EXPECT_EQ(encodeNormals(floats, codes), 1u);
    EXPECT_EQ(codes[0], 255);
    Vec3d<double> normals[3] = {};
    EXPECT_EQ(decodeNormals(codes, normals), 2u);
    EXPECT_EQ(normals[1], decodeNormal(codes[1]));
}

}  // namespace

}  // namespace Oxa_1_1
