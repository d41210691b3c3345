#include "base/platform/files/links.h"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <string>

#include "base/platform/files/detail/native_links.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

Text readLink(TextView path)
{
    const ReachablePath reachable(path);
    // No link of the usual file systems is longer.
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlinkat(reachable.folder(), reachable.itself(), target.data(), target.size());
    if (length < 0)
    {
        if (errno == EINVAL)
            setLastError(NOT_A_LINK);
        else
            reachable.fail();
        return {};
    }
    target.resize(static_cast<std::size_t>(length));
    return spellingOf(target);
}

/// One kind serves for all here.
bool createLink(TextView path, TextView target, LinkKind /*kind*/)
{
    const std::string native = nativePathOf(target);
    if (native.find('\0') != std::string::npos) return failWith(EINVAL);
    const ReachablePath reachable(path);
    return symlinkat(native.c_str(), reachable.folder(), reachable.itself()) == 0 || reachable.fail();
}

}  // namespace Oxa_1_1::platform::native
