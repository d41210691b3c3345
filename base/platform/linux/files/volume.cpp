#include "base/platform/files/volume.h"

#include <sys/statvfs.h>

#include "base/platform/linux/files/reachable_path.h"

namespace Oxa_1_1::platform
{

std::optional<VolumeSpace> readVolumeSpace(TextView path)
{
    const ReachablePath reachable(path);
    const FileDescriptor item(reachable.open(O_PATH));
    struct statvfs status;
    if (!item.isOpen() || uninterrupted([&] { return fstatvfs(item.get(), &status); }) != 0)
    {
        reachable.fail();
        return std::nullopt;
    }
    const std::uint64_t block = status.f_frsize;
    return VolumeSpace{
        .available = status.f_bavail * block, .free = status.f_bfree * block, .total = status.f_blocks * block};
}

}  // namespace Oxa_1_1::platform
