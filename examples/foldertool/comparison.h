#pragma once

#include <string>
#include <vector>

#include "base/filesystem/directory.h"

namespace foldertool
{

/// What two trees differ in, a message each: names, sizes and contents.
std::vector<std::string> differences(const Oxa_1_1::Directory& original, const Oxa_1_1::Directory& copy);

}  // namespace foldertool
