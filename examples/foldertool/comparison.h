#pragma once

#include <string>
#include <vector>

#include "examples/foldertool/tree.h"

namespace foldertool
{

/// What two trees differ in, a message each: names, sizes and contents.
std::vector<std::string> differences(const Tree& original, const Tree& copy);

}  // namespace foldertool
