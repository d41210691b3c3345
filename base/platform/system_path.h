#pragma once

#include <filesystem>

#include "base/char.h"

/// Paths for the standard library, whose spelling is the system's own.
namespace Oxa_1_1::platform
{

std::filesystem::path systemPath(TextView spelling);
Text spellingOfSystemPath(const std::filesystem::path& path);

}  // namespace Oxa_1_1::platform
