#pragma once

#include <optional>
#include <string>

namespace Oxa_1_1::platform
{

/// The current folder of the process; empty, with the reason in errno, when it has none any more.
std::string currentFolderPath();

/// The way from a folder to the current one below it: empty when it is this one itself. None when the current folder
/// lies elsewhere, or there is no such folder.
std::optional<std::string> currentFolderBelow(const std::string& folder);

}  // namespace Oxa_1_1::platform
