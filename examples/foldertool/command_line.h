#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace foldertool
{

using Arguments = std::vector<std::filesystem::path>;

/// The arguments of the program, sorted. The option -lang= is the library's, which reads it by itself.
struct CommandLine
{
    /// The name of the command; empty when there is none.
    std::string command;
    Arguments operands;
    bool overwrite = false;
    bool help = false;
    bool version = false;
};

/// Throws a UsageError for an option that nobody knows.
CommandLine parse(const Arguments& arguments);

}  // namespace foldertool
