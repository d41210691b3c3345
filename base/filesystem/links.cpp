#include "base/filesystem/links.h"

#include "base/filesystem/detail/system_item.h"
#include "base/platform/files/links.h"

namespace Oxa_1_1
{

namespace
{

platform::LinkKind seamKind(LinkKind kind)
{
    switch (kind)
    {
        case LinkKind::Folder:
            return platform::LinkKind::TO_FOLDER;
        case LinkKind::Junction:
            return platform::LinkKind::JUNCTION;
        default:
            return platform::LinkKind::TO_FILE;
    }
}

}  // namespace

bool isLink(const FileSystemItem& item)
{
    const String path = detail::seamPath(item);
    return !path.isNil() && platform::isLink(path);
}

String linkTarget(const FileSystemItem& link)
{
    const String path = detail::seamPath(link);
    if (path.isNil()) return {};
    const Text target = platform::readLink(path);
    return target.empty() ? String() : String(target);
}

bool createLink(const FileSystemItem& link, const String& target, LinkKind kind)
{
    const String path = detail::seamPath(link);
    if (path.isNil() || target.isEmpty()) return false;
    if (kind == LinkKind::Junction && !Directory::fromString(target)->isAbsolute()) return false;
    return platform::createLink(path, target, seamKind(kind));
}

bool isSameOnDisk(const FileSystemItem& a, const FileSystemItem& b)
{
    const String first = detail::seamPath(a);
    const String second = detail::seamPath(b);
    if (first.isNil() || second.isNil()) return false;
    const auto identity = platform::readIdentity(first);
    return identity && identity == platform::readIdentity(second);
}

}  // namespace Oxa_1_1
