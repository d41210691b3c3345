#include "base/platform/files/new_items.h"

#include "base/platform/files/detail/native_new_items.h"
#include "base/platform/files/detail/observed.h"

namespace Oxa_1_1::platform
{

Text temporaryFolder()
{
    return observed("temporaryFolder", {}, [] { return native::temporaryFolder(); });
}

bool createPrivateFile(TextView path)
{
    return observed("createPrivateFile", path, [&] { return native::createPrivateFile(path); });
}

bool createPrivateFolder(TextView path)
{
    return observed("createPrivateFolder", path, [&] { return native::createPrivateFolder(path); });
}

bool replaceFile(TextView replacement, TextView target, bool waitForDisk)
{
    return observed("replaceFile", replacement, target,
                    [&] { return native::replaceFile(replacement, target, waitForDisk); });
}

bool flushToDisk(TextView path)
{
    return observed("flushToDisk", path, [&] { return native::flushToDisk(path); });
}

Text finalPath(TextView path)
{
    return observed("finalPath", path, [&] { return native::finalPath(path); });
}

bool writeLastWrite(TextView path, FileTicks ticks)
{
    return observed("writeLastWrite", path, [&] { return native::writeLastWrite(path, ticks); });
}

}  // namespace Oxa_1_1::platform
