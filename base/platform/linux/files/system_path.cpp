#include "base/platform/files/system_path.h"

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"

namespace Oxa_1_1::platform
{

namespace
{

template <class Stream>
void open(Stream& stream, TextView spelling, std::ios_base::openmode mode)
{
    const ReachablePath path(spelling);
    struct stat status;
    // The system would open a folder, and fail when it is read.
    if (path.readStatus(status) && S_ISDIR(status.st_mode))
        stream.setstate(std::ios_base::failbit);
    else
        stream.open(path.fromAnywhere(), mode);
}

}  // namespace

std::filesystem::path systemPath(TextView spelling) { return nativePathOf(spelling); }

Text spellingOfSystemPath(const std::filesystem::path& path) { return spellingOf(path.native()); }

void openStream(std::ifstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    open(stream, spelling, mode);
}

void openStream(std::ofstream& stream, TextView spelling, std::ios_base::openmode mode)
{
    open(stream, spelling, mode);
}

}  // namespace Oxa_1_1::platform
