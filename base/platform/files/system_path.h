#pragma once

#include <filesystem>
#include <fstream>

#include "base/char.h"

/// Paths for the standard library, whose spelling is the system's own.
namespace Oxa_1_1::platform
{

std::filesystem::path systemPath(TextView spelling);
Text spellingOfSystemPath(const std::filesystem::path& path);

/// Opens a closed stream on a file, whose path may be as long as any. The stream fails when that is not possible.
void openStream(std::ifstream& stream, TextView spelling, std::ios_base::openmode mode);
void openStream(std::ofstream& stream, TextView spelling, std::ios_base::openmode mode);

}  // namespace Oxa_1_1::platform
