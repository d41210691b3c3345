#include "base/platform/modules/version_info.h"

#include "base/platform/modules/resources.h"
#include "base/platform/windows/modules/data_files.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

// The system's own functions for versions trust every length in the file.
std::vector<std::byte> readVersionInfo(TextView path)
{
    const HINSTANCE file = openDataFile(path);
    if (file == nullptr) return {};
    std::vector<std::byte> version;
    if (const HRSRC found = findResource(file, MAKEINTRESOURCEW(16), MAKEINTRESOURCEW(1)))
    {
        const std::span<const std::byte> bytes = resourceBytes(file, found);
        version.assign(bytes.begin(), bytes.end());
    }
    closeDataFile(file);
    return version;
}

}  // namespace Oxa_1_1::platform
