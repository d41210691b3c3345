// Runs row by row, everyone in a row in turns, and prints how the library stands beside its peers and whether it
// reaches its goals. The figures are the best of the repetitions: what work takes when nothing else disturbs it.

#include <algorithm>
#include <fstream>
#include <future>
#include <iostream>
#include <map>
#include <optional>
#include <thread>

#include "benchmarks/contest.h"
#include "benchmarks/options.h"
#include "benchmarks/report.h"
#include "benchmarks/rows.h"

namespace Oxa_1_1::bench
{

namespace
{

/// Keeps the best that everyone takes for an item.
class Collector : public benchmark::BenchmarkReporter
{
   public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
        {
            const std::string& name = run.run_name.function_name;
            if (run.error_occurred)
                std::cerr << name << ": " << run.error_message << '\n';
            else if (run.run_type == Run::RT_Iteration)
                take(name, run.GetAdjustedRealTime() / run.counters.at("items").value);
        }
    }

    /// By name; without those who failed.
    const std::map<std::string, double>& best() const { return m_best; }

   private:
    void take(const std::string& name, double value)
    {
        const auto [place, isNew] = m_best.try_emplace(name, value);
        if (!isNew) place->second = std::min(place->second, value);
    }

    std::map<std::string, double> m_best;
};

/// A thread that does nothing. A process of one thread counts owners without locking the bus, which no real program
/// does.
class SecondThread
{
   public:
    SecondThread() : m_thread([this] { m_end.get_future().wait(); }) {}
    SecondThread(const SecondThread&) = delete;
    SecondThread& operator=(const SecondThread&) = delete;
    ~SecondThread()
    {
        m_end.set_value();
        m_thread.join();
    }

   private:
    std::promise<void> m_end;
    std::thread m_thread;
};

bool isWanted(const Contestant& contestant)
{
    return std::regex_search(contestant.work + "/" + contestant.who, options().filter);
}

Standing measure(const Row& row)
{
    bool isEntered = false;
    Standing standing{.row = row, .values = {}};
    benchmark::ClearRegisteredBenchmarks();
    for (const Contestant& contestant : contestants())
    {
        if (contestant.work != row.work || !isWanted(contestant)) continue;
        if (contestant.value) standing.values[contestant.who] = contestant.value();
        if (!contestant.enter) continue;
        contestant.enter();
        isEntered = true;
    }
    if (!isEntered) return standing;

    std::cerr << row.work << '\n';
    std::optional<SecondThread> second;
    if (row.work.starts_with('O')) second.emplace();
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector, "all");
    for (const auto& [name, value] : collector.best()) standing.values[name.substr(row.work.size() + 1)] = value;
    return standing;
}

void addAll()
{
    addOxa();
    addFloors();
    addStandard();
    addObjects();
    addObjectFloors();
    addFiles();
    addFileFloors();
    addStandardFiles();
    addCommands();
    addScanPoints();
}

/// Everyone in a row is measured in turns, so that nobody has the machine at its best, and in short pieces, of which
/// one is left alone by whatever else runs.
std::vector<std::string> defaultArguments()
{
    return {"--benchmark_enable_random_interleaving=true",
            options().isQuick ? "--benchmark_repetitions=3" : "--benchmark_repetitions=30",
            "--benchmark_min_time=0.01"};
}

/// False for arguments that nobody knows.
bool initialize(const char* program, std::vector<std::string> arguments)
{
    const std::vector<std::string> defaults = defaultArguments();
    arguments.insert(arguments.begin(), defaults.begin(), defaults.end());
    arguments.insert(arguments.begin(), program);
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    auto count = static_cast<int>(pointers.size());
    pointers.push_back(nullptr);
    benchmark::Initialize(&count, pointers.data());
    return !benchmark::ReportUnrecognizedArguments(count, pointers.data());
}

int run(const char* program, std::vector<std::string> arguments)
{
    options() = takeOptions(arguments);
    if (!initialize(program, arguments)) return 2;
    addAll();
    const std::string missing = OXA_MISSING_PEERS;
    if (!missing.empty()) std::cerr << "peers not found, skipped:" << missing << '\n';

    std::vector<Standing> standings;
    for (const Row& row : allRows())
        if (Standing standing = measure(row); !standing.values.empty()) standings.push_back(std::move(standing));
    writeTable(std::cout, standings);
    if (options().json.empty()) return 0;
    std::ofstream json(options().json);
    writeJson(json, standings);
    return json.flush() ? 0 : 1;
}

}  // namespace

}  // namespace Oxa_1_1::bench

int main(int count, char** arguments)
{
    try
    {
        return Oxa_1_1::bench::run(arguments[0], {arguments + 1, arguments + count});
    }
    catch (const std::exception& e)
    {
        std::cerr << arguments[0] << ": " << e.what() << '\n';
        return 1;
    }
}
