#include "base/platform/files/volume.h"

#include "base/platform/files/detail/native_new_items.h"
#include "base/platform/files/files.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

std::optional<VolumeSpace> readVolumeSpace(TextView path)
{
    const std::optional<DWORD> attributes = readAttributes(path);
    if (!attributes) return std::nullopt;
    const bool isFolder = (*attributes & FOLDER) != 0;
    // The call takes folders only; a file behind a link may lie on another disk.
    Text folder = !isFolder && (*attributes & LINK) != 0 ? native::finalPath(path) : Text(path);
    if (!isFolder) folder.erase(folder.find_last_of(L"\\/") + 1);
    ULARGE_INTEGER available{};
    ULARGE_INTEGER total{};
    ULARGE_INTEGER free{};
    if (!GetDiskFreeSpaceExW(folder.empty() ? nullptr : folder.c_str(), &available, &total, &free)) return std::nullopt;
    return VolumeSpace{.available = available.QuadPart, .free = free.QuadPart, .total = total.QuadPart};
}

}  // namespace Oxa_1_1::platform
