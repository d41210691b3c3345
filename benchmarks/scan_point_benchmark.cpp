// Ten million scan points, converted and encoded, beside memcpy of as many bytes as are read and written. Prints
// ratios of medians.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "base/object/scan_normal.h"
#include "base/object/scan_point.h"
#include "benchmarks/work.h"

namespace Oxa_1_1::bench
{

namespace
{

constexpr std::size_t COUNT = 10'000'000;

using FloatPoint = ScanPtColor<Vec3d<float>>;
using DoublePoint = ScanPtColor<Vec3d<double>>;

struct Points
{
    std::vector<FloatPoint> floats = std::vector<FloatPoint>(COUNT, FloatPoint{{1, 2, 3}, 4, {5, 6, 7, 8}});
    std::vector<DoublePoint> doubles = std::vector<DoublePoint>(COUNT, DoublePoint{{1, 2, 3}, 4, {5, 6, 7, 8}});
    std::vector<Vec3d<double>> directions = std::vector<Vec3d<double>>(COUNT);
    std::vector<std::uint16_t> codes = std::vector<std::uint16_t>(COUNT);

    Points()
    {
        std::mt19937_64 random(1);
        std::uniform_real_distribution<double> coordinate(-1, 1);
        for (auto& direction : directions) direction = {coordinate(random), coordinate(random), coordinate(random)};
        encodeNormals(directions, codes);
    }
};

/// What is done, what it moves, and how it stands to memcpy at most.
struct Work
{
    const char* name;
    std::size_t bytesRead;
    std::size_t bytesWritten;
    void (*run)(Points&);
    double goal;
};

const Work WORKS[] = {
    {"scanpt_cast 10M float->double", sizeof(FloatPoint), sizeof(DoublePoint),
     [](Points& points) { keep(scanpt_cast(points.floats, points.doubles)); }, 2.0},
    {"scanpt_cast 10M double->float", sizeof(DoublePoint), sizeof(FloatPoint),
     [](Points& points) { keep(scanpt_cast(points.doubles, points.floats)); }, 2.0},
    {"encode normals 10M", sizeof(Vec3d<double>), sizeof(std::uint16_t),
     [](Points& points) { keep(encodeNormals(points.directions, points.codes)); }, 2.5},
    {"decode normals 10M", sizeof(std::uint16_t), sizeof(Vec3d<double>),
     [](Points& points) { keep(decodeNormals(points.codes, points.directions)); }, 2.5},
};

/// Collects the milliseconds of all repetitions.
class Collector : public benchmark::BenchmarkReporter
{
   public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                m_samples[run.run_name.function_name].push_back(run.GetAdjustedRealTime() / 1e6);
    }

    /// 0 for what was not run.
    double median(const std::string& name)
    {
        std::vector<double>& samples = m_samples[name];
        std::sort(samples.begin(), samples.end());
        return samples.empty() ? 0 : samples[samples.size() / 2];
    }

   private:
    std::map<std::string, std::vector<double>> m_samples;
};

int run(int count, char** arguments)
{
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;

    Points points;
    for (const Work& work : WORKS)
    {
        add(work.name, OURS, [&points, &work] { work.run(points); });
        // Half the bytes are read and half are written.
        const std::size_t bytes = (work.bytesRead + work.bytesWritten) * COUNT / 2;
        std::shared_ptr<char[]> from(new char[bytes]());
        std::shared_ptr<char[]> to(new char[bytes]());
        add(work.name, FLOOR,
            [from, to, bytes]
            {
                std::memcpy(to.get(), from.get(), bytes);
                benchmark::ClobberMemory();
            });
    }

    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    for (const Work& work : WORKS)
    {
        const double ours = collector.median(std::string(work.name) + "/" + OURS);
        const double floor = collector.median(std::string(work.name) + "/" + FLOOR);
        if (ours == 0 || floor == 0) continue;
        std::printf("%-40s %10.1f ms  %5.2f x %-8s (goal %.2f, %s)  %s %.1f\n", work.name, ours, ours / floor,
                    FLOOR.c_str(), work.goal, ours <= work.goal * floor ? "reached" : "NOT REACHED", FLOOR.c_str(),
                    floor);
    }
    return 0;
}

}  // namespace

}  // namespace Oxa_1_1::bench

int main(int count, char** arguments) { return Oxa_1_1::bench::run(count, arguments); }
