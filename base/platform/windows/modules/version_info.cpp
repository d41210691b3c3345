#include "base/platform/modules/version_info.h"

#include "base/platform/windows/modules/data_files.h"

namespace Oxa_1_1::platform
{

// The system's own functions trust every length in the file.
std::vector<std::byte> readVersionInfo(TextView path)
{
    const HINSTANCE file = openDataFile(path);
    if (file == nullptr) return {};
    std::vector<std::byte> version;
    if (const formats::ResourceIndex* const resources = resourcesOfDataFile(file))
    {
        const auto found = resources->find(formats::ResourceKey::number(16), formats::ResourceKey::number(1));
        if (!found.empty()) version.assign(found.front().bytes.begin(), found.front().bytes.end());
    }
    closeDataFile(file);
    return version;
}

}  // namespace Oxa_1_1::platform
