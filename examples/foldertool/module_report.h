#pragma once

#include <string>
#include <vector>

namespace foldertool
{

/// A line for each module of the process: name, version, language and why it is that, number of symbols.
std::vector<std::string> moduleLines();

/// The version of this program.
std::string ownVersion();

}  // namespace foldertool
