#pragma once

#include "examples/foldertool/command_line.h"

namespace foldertool::commands
{

bool tour(const CommandLine& line);
bool list(const CommandLine& line);
bool copy(const CommandLine& line);
bool move(const CommandLine& line);
bool remove(const CommandLine& line);
bool size(const CommandLine& line);
bool info(const CommandLine& line);
bool symbols(const CommandLine& line);
bool resources(const CommandLine& line);
bool stack(const CommandLine& line);
bool help(const CommandLine& line);

}  // namespace foldertool::commands
