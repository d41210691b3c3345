#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// What the file of a module tells: by its path, and by its version resource.
namespace Oxa_1_1::detail
{

/// The path up to and including its last backslash; empty when it has none.
TextView folderOf(TextView path);
/// The path without its last extension, a period within the folder not counting.
TextView withoutExtension(TextView path);
/// The name of the file without folder and last extension.
TextView baseNameOf(TextView path);

/// Major, minor, build and revision.
using FileVersion = std::array<std::uint16_t, 4>;

/// The version in the version resource of a module's file, or of a file that is loaded as data; none when it has none.
/// @{
std::optional<FileVersion> fileVersionOf(TextView path);
std::optional<FileVersion> fileVersionOf(HINSTANCE dataFile);
/// @}

/// Company, product and product version, each with a backslash behind it. Texts that the version resource lacks have
/// a default.
Text productFolderOf(TextView path);

}  // namespace Oxa_1_1::detail
