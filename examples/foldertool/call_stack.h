#pragma once

#include <string>
#include <vector>

namespace foldertool
{

/// The functions that are under way, the innermost first: name and, where they are known, source file and line.
std::vector<std::string> callStack();

}  // namespace foldertool
