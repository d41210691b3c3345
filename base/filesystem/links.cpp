#include "base/filesystem/links.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/parsed_directory.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/system_item.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/files/links.h"
#include "base/platform/system/last_error.h"

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

/// A junction is told the whole path; the others say what they were given, in the system's own separators.
String targetOf(const String& target, LinkKind kind)
{
    if (kind != LinkKind::Junction)
    {
        Text text(target.view());
        std::ranges::replace(text, OXA_TEXT('/'), detail::SEPARATOR);
        return String(std::move(text));
    }
    const detail::SharedDirectory folder = detail::parseDirectory(target);
    if (folder == nullptr || !folder->absolute) return {};
    Text text(detail::fullName(*folder, detail::SEPARATOR).view());
    if (!folder->levels.empty()) text.pop_back();
    return String(std::move(text));
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
    const String written = targetOf(target, kind);
    if (path.isNil()) return false;
    if (written.isEmpty()) return platform::failStep(platform::BAD_PATH, "createLink", path, target);
    return platform::createLink(path, written, seamKind(kind));
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
