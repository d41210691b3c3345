// Scan points, converted and encoded, beside memcpy of as many bytes as are read and written.

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#include "base/object/scan_normal.h"
#include "base/object/scan_point.h"
#include "benchmarks/contest.h"
#include "benchmarks/options.h"

namespace Oxa_1_1::bench
{

namespace
{

using FloatPoint = ScanPtColor<Vec3d<float>>;
using DoublePoint = ScanPtColor<Vec3d<double>>;

std::size_t pointCount() { return options().isQuick ? 1'000'000 : 10'000'000; }

struct Points
{
    std::size_t items = pointCount();
    std::vector<FloatPoint> floats = std::vector<FloatPoint>(items, FloatPoint{{1, 2, 3}, 4, {5, 6, 7, 8}});
    std::vector<DoublePoint> doubles = std::vector<DoublePoint>(items, DoublePoint{{1, 2, 3}, 4, {5, 6, 7, 8}});
    std::vector<Vec3d<double>> directions = std::vector<Vec3d<double>>(items);
    std::vector<std::uint16_t> codes = std::vector<std::uint16_t>(items);

    Points()
    {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> coordinate(-1, 1);
        for (auto& direction : directions) direction = {coordinate(random), coordinate(random), coordinate(random)};
        encodeNormals(directions, codes);
    }
};

Points& points()
{
    static Points points;
    return points;
}

/// Two blocks of memory, large enough for every piece of work.
struct Blocks
{
    std::size_t items = pointCount();
    std::vector<char> from = std::vector<char>(items * sizeof(DoublePoint));
    std::vector<char> to = std::vector<char>(items * sizeof(DoublePoint));
};

Blocks& blocks()
{
    static Blocks blocks;
    return blocks;
}

struct Work
{
    const std::string& name;
    std::size_t bytesRead;
    std::size_t bytesWritten;
    void (*run)(Points&);
};

}  // namespace

void addScanPoints()
{
    const Work works[] = {
        {work::POINT_TO_DOUBLE, sizeof(FloatPoint), sizeof(DoublePoint),
         [](Points& points) { keep(scanpt_cast(points.floats, points.doubles)); }},
        {work::POINT_TO_FLOAT, sizeof(DoublePoint), sizeof(FloatPoint),
         [](Points& points) { keep(scanpt_cast(points.doubles, points.floats)); }},
        {work::ENCODE_NORMAL, sizeof(Vec3d<double>), sizeof(std::uint16_t),
         [](Points& points) { keep(encodeNormals(points.directions, points.codes)); }},
        {work::DECODE_NORMAL, sizeof(std::uint16_t), sizeof(Vec3d<double>),
         [](Points& points) { keep(decodeNormals(points.codes, points.directions)); }},
    };
    for (const Work& work : works)
    {
        addOn(work.name, OURS, points, work.run);
        // Half the bytes are read and half are written.
        const std::size_t bytesOfItem = (work.bytesRead + work.bytesWritten) / 2;
        addOn(work.name, FLOOR, blocks,
              [bytesOfItem](Blocks& blocks)
              {
                  std::memcpy(blocks.to.data(), blocks.from.data(), bytesOfItem * blocks.items);
                  benchmark::ClobberMemory();
              });
    }
}

}  // namespace Oxa_1_1::bench
