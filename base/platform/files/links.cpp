#include "base/platform/files/links.h"

#include "base/platform/files/detail/native_links.h"
#include "base/platform/files/detail/observed.h"

namespace Oxa_1_1::platform
{

Text readLink(TextView path)
{
    return observed("readLink", path, [&] { return native::readLink(path); });
}

bool createLink(TextView path, TextView target, LinkKind kind)
{
    return observed("createLink", path, target, [&] { return native::createLink(path, target, kind); });
}

}  // namespace Oxa_1_1::platform
