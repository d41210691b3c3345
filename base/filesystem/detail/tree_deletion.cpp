#include "base/filesystem/detail/tree_deletion.h"

#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::EntryKind;
using platform::Links;
using platform::OpenFolder;
using platform::ReadOnlyFiles;

namespace
{

constexpr std::string_view OPENING = "openFolder";
constexpr std::string_view REMOVING = "removeFolder";

}  // namespace

void TreeDeletion::run(const DiskFolder& folder)
{
    if (m_work.isStopped()) return;
    const String path = fullName(*folder.absolute(), SEPARATOR);
    ParsedDirectory abovePath = *folder.absolute();
    if (abovePath.levels.empty())
    {
        m_work.fail(REMOVING, path, platform::INVALID_PARAMETER);
        return;
    }
    const String name = abovePath.levels.back();
    abovePath.levels.dropBack();
    const OpenFolder above = OpenFolder::at(readablePath(abovePath), Links::FOLLOW);
    const auto kind = above.isOpen() ? above.readKind(name) : std::nullopt;
    if (!kind)
    {
        if (!saysMissing(platform::lastError())) m_work.fail(OPENING, path);
        return;
    }
    // A link that leads nowhere may have led to a folder.
    const bool isLink = kind == EntryKind::FOLDER_LINK || (platform::isLink(*kind) && !above.readInformation(name));
    if (!isLink && kind != EntryKind::SUBFOLDER)
    {
        m_work.fail(REMOVING, path, platform::NOT_A_FOLDER);
        return;
    }
    if (!isLink)
    {
        OpenFolder top = above.open(name, Links::REFUSE);
        if (!top.isOpen())
        {
            const DWORD reason = platform::lastError();
            if (!saysMissing(reason) || above.readKind(name)) m_work.fail(OPENING, path, reason);
            return;
        }
        if (!removeContents(folder.way(std::move(top)))) return;
    }
    if (!removeFolder(above, name, isLink)) m_work.fail(REMOVING, path);
}

bool TreeDeletion::removeContents(FolderWay way)
{
    begin(way);
    for (;;)
    {
        Level& level = m_levels.back();
        if (isEnded()) return false;
        if (level.next < level.contents.folders().size())
        {
            visit(way, level, level.contents.folders()[level.next++]);
            continue;
        }
        const bool keepsSomething = level.keepsSomething;
        m_levels.pop_back();
        if (m_levels.empty()) return !keepsSomething;
        if (!way.leave())
        {
            m_work.fail("openFolder", fullName(*way.path(), SEPARATOR));
            return false;
        }
        Level& above = m_levels.back();
        const TextView name = above.contents.nameOf(above.contents.folders()[above.next - 1]);
        const bool isGone = !keepsSomething && removeFolder(way.current(), name, false);
        if (!isGone && !keepsSomething) m_work.fail(REMOVING, way.fullName(name, true));
        if (!isGone) above.keepsSomething = true;
    }
}

void TreeDeletion::begin(FolderWay& way)
{
    if (m_work.options().readOnlyToo) way.current().unlock();
    Level& level = m_levels.emplace_back();
    if (!level.contents.read(way.current()))
    {
        level.keepsSomething = true;
        m_work.fail("readFolder", fullName(*way.path(), SEPARATOR));
    }
    for (const auto& file : level.contents.files())
        if (isEnded() || !removeFile(way, level.contents.nameOf(file), file.isLink())) level.keepsSomething = true;
}

void TreeDeletion::visit(FolderWay& way, Level& level, const FolderContents::Entry& folder)
{
    const TextView name = level.contents.nameOf(folder);
    if (folder.isLink())
    {
        if (removeFolder(way.current(), name, true)) return;
        level.keepsSomething = true;
        m_work.fail(REMOVING, way.fullName(name));
        return;
    }
    if (way.enter(name, Links::REFUSE)) return begin(way);
    const DWORD reason = platform::lastError();
    if (saysMissing(reason) && !way.current().readKind(name)) return;
    level.keepsSomething = true;
    m_work.fail(OPENING, way.fullName(name, true), reason);
}

bool TreeDeletion::removeFile(FolderWay& way, TextView name, bool isLink)
{
    const auto readOnly = m_work.options().readOnlyToo ? ReadOnlyFiles::GO : ReadOnlyFiles::STAY;
    if (!way.current().deleteFile(name, readOnly))
    {
        if (saysMissing(platform::lastError())) return true;
        m_work.fail("deleteFile", way.fullName(name));
        return false;
    }
    if (isLink)
        m_work.linkDone();
    else
        m_work.fileDone(0);
    return true;
}

bool TreeDeletion::removeFolder(const OpenFolder& above, TextView name, bool isLink)
{
    if (!above.removeFolder(name))
    {
        const DWORD reason = platform::lastError();
        if (saysMissing(reason) && !above.readKind(name)) return true;
        platform::setLastError(reason);
        return false;
    }
    if (isLink)
        m_work.linkDone();
    else
        m_work.folderDone();
    return true;
}

}  // namespace Oxa_1_1::detail
