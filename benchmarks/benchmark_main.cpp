// Runs all that was registered and prints, for each piece of work, how the library stands beside its peers and whether
// it reaches its goal. Medians of interleaved repetitions; the figures also go to a JSON file when one is named.

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <limits>
#include <map>
#include <optional>
#include <vector>

#include "benchmarks/work.h"

namespace Oxa_1_1::bench
{

namespace
{

/// At most so many times what `peer` takes.
struct Goal
{
    const std::string& work;
    std::string peer;
    double ratio;
};

const Goal GOALS[] = {
    {work::FROM_UTF8_SHORT, "Qt", 0.8},
    {work::FROM_UTF8_ASCII, "Qt", 0.7},
    {work::FROM_UTF8_MIXED, "Qt", 0.7},
    {work::TO_UTF8_SHORT, "Qt", 0.8},
    {work::TO_UTF8_ASCII, "Qt", 0.8},
    {work::TO_UTF8_MIXED, "Qt", 0.6},
    {work::FROM_ANSI, "ICU", 0.25},
    {work::BUILD_LIST, "Qt", 0.4},
    {work::WRITE_DOUBLE, "to_chars", 0.6},
    {work::READ_INTS, FLOOR, 1.1},
    {work::FIND_UNIT, FLOOR, 1.2},
    {work::FIND_TEXT, FLOOR, 1.5},
    {work::COMPARE, FLOOR, 2.0},
    {work::MAP_INSERT, FLOOR, 1.2},
    {work::MAP_FIND, FLOOR, 1.2},
    {work::ESCAPE, FLOOR, 2.0},
    {work::COPY, "std", 1.1},
    {work::MOVE, "std", 1.1},
    {work::OWN, FLOOR, 1.0},
    {work::OWN_SHARED, FLOOR, 1.0},
    {work::CREATE, FLOOR, 1.2},
    {work::WATCH, "described shape", 1.0},
    {work::KIND_HIT, FLOOR, 1.2},
    {work::KIND_MISS, FLOOR, 1.2},
    {work::TEXT_BY_ID, FLOOR, 2.5},
    {work::TEXT_IN_LANGUAGE, FLOOR, 3.0},
    {work::PARSE_HEADER, "std::map", 0.5},
    {work::LOOK_UP_SYMBOL, "std::map", 1.0},
    {work::CAPTURE, "backtrace", 1.0},
    {work::CAPTURE_NAMED, "libbacktrace", 1.0},
    {work::COUNT_DEPTH, "backtrace", 1.0},
    {work::PASS_OVER, FLOOR, 2.0},
};

using Times = std::map<std::string, double>;

/// Collects the times of all repetitions, in nanoseconds an item.
class Collector : public benchmark::BenchmarkReporter
{
   public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            const std::string& name = run.run_name.function_name;
            m_samples[name].push_back(run.GetAdjustedRealTime() / run.counters.at("items").value);
        }
    }

    /// The medians of everyone who does `work`.
    Times medians(const std::string& work) const
    {
        Times times;
        for (const auto& [name, samples] : m_samples)
        {
            if (!name.starts_with(work + "/")) continue;
            std::vector<double> sorted = samples;
            std::sort(sorted.begin(), sorted.end());
            times[name.substr(work.size() + 1)] = sorted[sorted.size() / 2];
        }
        return times;
    }

   private:
    std::map<std::string, std::vector<double>> m_samples;
};

struct Row
{
    std::string work;
    Times times;
    std::string goalPeer;
    double goal;

    std::optional<double> ratio(const std::string& peer) const
    {
        const auto other = times.find(peer);
        const auto ours = times.find(OURS);
        if (other == times.end() || ours == times.end()) return std::nullopt;
        return ours->second / other->second;
    }

    std::string verdict() const
    {
        const auto reached = ratio(goalPeer);
        if (!reached) return goalPeer + " is missing";
        return *reached <= goal ? "reached" : "NOT REACHED";
    }
};

void print(const Row& row)
{
    std::printf("%-40s", row.work.c_str());
    if (const auto ours = row.times.find(OURS); ours != row.times.end()) std::printf(" %10.1f ns", ours->second);
    if (const auto ratio = row.ratio(row.goalPeer))
        std::printf("  %5.2f x %-8s (goal %.2f, %s)", *ratio, row.goalPeer.c_str(), row.goal, row.verdict().c_str());
    for (const auto& [peer, time] : row.times)
        if (peer != OURS) std::printf("  %s %.1f", peer.c_str(), time);
    std::printf("\n");
}

void writeJson(const std::string& file, const std::vector<Row>& rows)
{
    std::ofstream json(file);
    json << "[\n";
    for (const Row& row : rows)
    {
        json << "  {\"work\": \"" << row.work << "\", \"goalPeer\": \"" << row.goalPeer << "\", \"goal\": " << row.goal
             << ", \"verdict\": \"" << row.verdict() << "\", \"nanoseconds\": {";
        const char* separator = "";
        for (const auto& [who, time] : row.times)
        {
            json << separator << "\"" << who << "\": " << time;
            separator = ", ";
        }
        json << "}}" << (&row == &rows.back() ? "\n" : ",\n");
    }
    json << "]\n";
}

/// The file that --json=FILE names, which is taken from the arguments.
std::string takeJsonOption(int& count, char** arguments)
{
    const std::string option = "--json=";
    for (int i = 1; i < count; ++i)
    {
        const std::string argument = arguments[i];
        if (!argument.starts_with(option)) continue;
        std::rotate(arguments + i, arguments + i + 1, arguments + count);
        --count;
        return argument.substr(option.size());
    }
    return {};
}

int run(int count, char** arguments)
{
    const std::string json = takeJsonOption(count, arguments);
    benchmark::Initialize(&count, arguments);
    if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
    addOxa();
    addFloors();
    addStandard();
    addObjects();
    addObjectFloors();

    const std::string missing = OXA_MISSING_PEERS;
    if (!missing.empty()) std::printf("peers not found, skipped:%s\n", missing.c_str());
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    std::vector<Row> rows;
    for (const Goal& goal : GOALS)
    {
        Row row{goal.work, collector.medians(goal.work), goal.peer, goal.ratio};
        if (row.times.empty()) continue;
        print(row);
        rows.push_back(std::move(row));
    }
    if (!json.empty()) writeJson(json, rows);
    return 0;
}

}  // namespace

}  // namespace Oxa_1_1::bench

int main(int count, char** arguments) { return Oxa_1_1::bench::run(count, arguments); }
