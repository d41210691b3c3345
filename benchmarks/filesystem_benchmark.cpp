// Paths and folders beside std::filesystem. Prints nanoseconds an operation and their ratio.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/filesystem/directory.h"
#include "base/filesystem/file.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"

namespace Oxa_1_1::bench
{

namespace
{

namespace fs = std::filesystem;

constexpr int ROUNDS = 9;
constexpr int ENTRIES = 100'000;
constexpr int FILES_IN_FOLDER = 100;

/// The median of the rounds.
template <class Work>
double nanoseconds(int count, const Work& work)
{
    std::vector<double> times;
    for (int round = 0; round < ROUNDS; ++round)
    {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - start;
        times.push_back(time.count() / count);
    }
    std::ranges::nth_element(times, times.begin() + ROUNDS / 2);
    return times[ROUNDS / 2];
}

volatile std::size_t sink = 0;

template <class Act>
double repeated(const Act& act)
{
    constexpr int COUNT = 200'000;
    return nanoseconds(COUNT,
                       [&]
                       {
                           for (int i = 0; i < COUNT; ++i) sink = sink + act();
                       });
}

void report(const char* name, double own, double peer)
{
    std::printf("%-44s %9.1f ns   std %9.1f ns   ratio %.2f\n", name, own, peer, own / peer);
}

void measurePaths()
{
    const String text = OXA_TEXT("C:\\projects\\scan\\.\\site\\..\\2024\\raw\\a\\b\\c");
    const std::string native = "/projects/scan/./site/../2024/raw/a/b/c";
    report("parse 8 levels with . and ..",
           repeated([&] { return OxaWindowsFileSystemDirectory::fromString(text)->getLevels().size(); }),
           repeated([&] { return fs::path(native).lexically_normal().native().size(); }));

    const auto path = Directory::fromString(OXA_TEXT("C:\\projects\\scan\\2024\\raw\\a"));
    const auto reference = Directory::fromString(OXA_TEXT("C:\\projects\\scan\\2024\\cooked\\b"));
    const fs::path peerPath = "/projects/scan/2024/raw/a";
    const fs::path peerReference = "/projects/scan/2024/cooked/b";
    report("make relative", repeated([&] { return path->makeRelative(*reference) != nullptr ? 1U : 0U; }),
           repeated([&] { return peerPath.lexically_relative(peerReference).native().size(); }));
}

void measureFolder(const fs::path& folder)
{
    fs::create_directories(folder);
    for (int i = 0; i < ENTRIES; ++i) std::ofstream(folder / ("entry" + std::to_string(i) + ".txt"));
    const auto own = Directory::fromPath(folder);
    report("one folder of 100,000, *.txt, per entry",
           nanoseconds(ENTRIES, [&] { sink = sink + own->collectFiles(OXA_TEXT("*.txt"), false).size(); }),
           nanoseconds(ENTRIES,
                       [&]
                       {
                           std::vector<fs::path> found;
                           for (const auto& entry : fs::directory_iterator(folder))
                               if (entry.is_regular_file() && entry.path().extension() == ".txt")
                                   found.push_back(entry.path());
                           sink = sink + found.size();
                       }));
}

void measureTree(const fs::path& folder)
{
    for (int i = 0; i < ENTRIES; ++i)
    {
        const fs::path inside = folder / std::to_string(i / FILES_IN_FOLDER / 10) / std::to_string(i / FILES_IN_FOLDER);
        if (i % FILES_IN_FOLDER == 0) fs::create_directories(inside);
        std::ofstream(inside / ("entry" + std::to_string(i) + ".txt"));
    }
    const auto own = Directory::fromPath(folder);
    report("tree of 100,000 files, per file",
           nanoseconds(ENTRIES, [&] { sink = sink + own->collectFiles(OXA_TEXT("*"), true).size(); }),
           nanoseconds(ENTRIES,
                       [&]
                       {
                           std::vector<fs::path> found;
                           for (const auto& entry : fs::recursive_directory_iterator(folder))
                               if (entry.is_regular_file()) found.push_back(entry.path());
                           sink = sink + found.size();
                       }));
}

}  // namespace

}  // namespace Oxa_1_1::bench

int main()
{
    using namespace Oxa_1_1::bench;
    measurePaths();
    const fs::path temporary = fs::temp_directory_path() / "oxa_filesystem_benchmark";
    fs::remove_all(temporary);
    measureFolder(temporary / "flat");
    measureTree(temporary / "tree");
    fs::remove_all(temporary);
    return 0;
}
