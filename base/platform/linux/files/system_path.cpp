#include "base/platform/files/system_path.h"

#include <fcntl.h>
#include <ext/stdio_filebuf.h>

#include <cerrno>
#include <utility>

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"

namespace Oxa_1_1::platform
{

namespace
{

using OpenMode = std::ios_base::openmode;

bool has(OpenMode mode, OpenMode bits) { return (mode & bits) == bits; }

/// -1 for modes that contradict themselves.
int flagsOf(OpenMode mode)
{
    if (has(mode, std::ios_base::in)) return O_RDONLY;
    if (has(mode, std::ios_base::app)) return has(mode, std::ios_base::trunc) ? -1 : O_WRONLY | O_CREAT | O_APPEND;
    return O_WRONLY | O_CREAT | O_TRUNC;
}

/// Not open, with the last error, when it cannot be read or written, as folders and pipes that nobody reads.
FileDescriptor openFile(TextView spelling, OpenMode mode)
{
    const ReachablePath path(spelling);
    const int flags = flagsOf(mode);
    FileDescriptor file(flags < 0 ? -1 : path.open(flags, 0666));
    struct stat status;
    if (!file.isOpen() || fstat(file.get(), &status) != 0)
    {
        path.fail(flags < 0 ? EINVAL : errno);
        return FileDescriptor();
    }
    // Only opening must not wait. The system would open a folder, and fail when it is read.
    const int former = fcntl(file.get(), F_GETFL);
    const bool isReady = former >= 0 && fcntl(file.get(), F_SETFL, former & ~O_NONBLOCK) == 0;
    if (isReady && !S_ISDIR(status.st_mode)) return file;
    failWith(isReady ? EISDIR : errno);
    return FileDescriptor();
}

/// The standard streams open files that programs started meanwhile would inherit.
template <class Stream>
void open(Stream& stream, TextView spelling, OpenMode mode)
{
    FileDescriptor file = openFile(spelling, mode);
    if (!file.isOpen()) return stream.setstate(std::ios_base::failbit);
    __gnu_cxx::stdio_filebuf<char> buffer(file.get(), mode);
    if (!buffer.is_open()) return stream.setstate(std::ios_base::failbit);
    file.release();
    if (has(mode, std::ios_base::ate) && buffer.pubseekoff(0, std::ios_base::end, mode) == std::streampos(-1))
        return stream.setstate(std::ios_base::failbit);
    *stream.rdbuf() = std::move(static_cast<std::filebuf&>(buffer));
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
