#pragma once

#include <string>

namespace Oxa_1_1::detail
{

/// Where symbol files are looked for, each folder followed by a semicolon: the caller's path, the current folder, the
/// program's folder, the folders that the environment names, and the server, unless it is empty.
std::string buildSearchPath(const std::string& callersPath, const std::string& server);

}  // namespace Oxa_1_1::detail
