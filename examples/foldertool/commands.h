#pragma once

#include <cstddef>
#include <span>

#include "examples/foldertool/command_line.h"

namespace foldertool
{

/// What the program can do. Each command has a file in commands/.
struct Command
{
    const char* name;
    /// Of its help; the summary, the details and, if it takes any, the operands are texts that follow each other.
    unsigned int help;
    std::size_t minOperands;
    std::size_t maxOperands;
    bool takesOverwrite;
    /// Whether all was done. What was not is on standard error; a Failure is thrown when nothing can be done.
    bool (*run)(const CommandLine& line);
};

std::span<const Command> allCommands();

/// Throws a UsageError for a name that is none.
const Command& findCommand(const std::string& name);

void printHelp();
void printHelp(const Command& command);

}  // namespace foldertool
