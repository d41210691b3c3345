#pragma once

#include <filesystem>
#include <regex>
#include <string>
#include <vector>

namespace Oxa_1_1::bench
{

/// What the program was asked for.
struct Options
{
    /// Small trees and few repetitions: whether everything runs, not how fast.
    bool isQuick = false;
    /// Of "work/who"; everything when it is empty.
    std::regex filter;
    /// Where the figures are written; nowhere when it is empty.
    std::filesystem::path json;
    /// Where trees and large files are made: on a disk, and in memory.
    std::filesystem::path disk;
    std::filesystem::path memoryDisk;
};

/// Those of the program; set once, at its start.
Options& options();

/// Takes the program's own options from the arguments; the others are left for the benchmark library.
Options takeOptions(std::vector<std::string>& arguments);

}  // namespace Oxa_1_1::bench
