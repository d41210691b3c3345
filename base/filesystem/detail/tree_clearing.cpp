#include "base/filesystem/detail/tree_clearing.h"

#include <vector>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::Links;
using platform::OpenFolder;
using platform::ReadOnlyFiles;

void LeftEntries::add(const OpenFolder& folder, TextView name)
{
    const auto identity = folder.identity().value_or(platform::FileIdentity{});
    m_entries.insert({identity.volume, identity.index, Text(name)});
}

bool LeftEntries::contains(const OpenFolder& folder, TextView name) const
{
    const auto identity = m_entries.empty() ? std::nullopt : folder.identity();
    return identity && m_entries.contains({identity->volume, identity->index, Text(name)});
}

namespace
{

/// Where folders of one disk are mounted twice. Also when that cannot be seen; the last error tells.
bool isSameEntry(FolderWay& a, TextView nameOfA, FolderWay& b, TextView nameOfB)
{
    const auto folderOfA = a.current().identity();
    const auto folderOfB = b.current().identity();
    if (!folderOfA || !folderOfB) return true;
    if (folderOfA->volume != folderOfB->volume) return false;
    const auto identity = a.current().readOwnIdentity(nameOfA);
    if (!identity) return true;
    if (identity != b.current().readOwnIdentity(nameOfB)) return false;
    platform::setLastError(platform::FILE_CHANGED);
    return true;
}

}  // namespace

bool TreeClearing::clearEntry(FolderWay& source, TextView name, FolderWay& target, TextView targetName)
{
    // Both are looked at now: whatever has changed since it was copied stays.
    if (!isSameEntry(source, name, target, targetName) &&
        source.current().isSameContent(name, target.current(), targetName, m_work.comparisonProgress()))
        return remove(source, name);
    const DWORD reason = platform::lastError();
    m_work.fail("compareFiles", source.fullName(name), saysMissing(reason) ? platform::FILE_CHANGED : reason,
                target.fullName(targetName));
    return false;
}

bool TreeClearing::remove(FolderWay& source, TextView name)
{
    if (source.current().deleteFile(name, ReadOnlyFiles::GO)) return m_hasRemoved = true;
    if (!saysMissing(platform::lastError())) m_work.fail("deleteFile", source.fullName(name));
    return false;
}

bool TreeClearing::clearFolder(const OpenFolder& above, TextView name, const String& path)
{
    if (above.removeFolder(name)) return m_hasRemoved = true;
    m_work.fail("removeFolder", path);
    return false;
}

void TreeClearing::begin(FolderWay& source, FolderWay& target, const LeftEntries& left, Level& level)
{
    // It could not be read before, which was told.
    level.keepsSomething = left.contains(source.current(), {});
    if (level.keepsSomething) return;
    level.keepsSomething = !level.contents.read(source.current());
    if (level.keepsSomething) m_work.fail("readFolder", fullName(*source.path(), SEPARATOR));
    const auto clear = [&](const FolderContents::Entry& entry)
    {
        const TextView name = level.contents.nameOf(entry);
        const bool stays = isEnded() || left.contains(source.current(), name);
        if (stays || !clearEntry(source, name, target, name)) level.keepsSomething = true;
    };
    for (const auto& file : level.contents.files()) clear(file);
    for (const auto& folder : level.contents.folders())
        if (folder.isLink()) clear(folder);
}

TreeClearing::Step TreeClearing::enter(FolderWay& source, FolderWay& target, TextView name)
{
    const bool isEntered = source.enter(name, Links::REFUSE);
    if (isEntered && target.enter(name, Links::REFUSE)) return Step::DOWN;
    const DWORD reason = platform::lastError();
    if (isEntered && !source.leave()) return Step::LOST;
    m_work.fail("openFolder", source.fullName(name, true), reason);
    return Step::PASSED;
}

bool TreeClearing::failLost(const FolderWay& source)
{
    m_work.fail("openFolder", fullName(*source.path(), SEPARATOR));
    return false;
}

bool TreeClearing::clear(FolderWay& source, FolderWay& target, const LeftEntries& left)
{
    std::vector<Level> levels(1);
    begin(source, target, left, levels.back());
    for (;;)
    {
        Level& level = levels.back();
        if (isEnded()) return false;
        if (level.next < level.contents.folders().size())
        {
            const auto& folder = level.contents.folders()[level.next++];
            if (folder.isLink()) continue;
            const TextView name = level.contents.nameOf(folder);
            const Step step = left.contains(source.current(), name) ? Step::PASSED : enter(source, target, name);
            if (step == Step::LOST) return failLost(source);
            if (step == Step::DOWN)
                begin(source, target, left, levels.emplace_back());
            else
                level.keepsSomething = true;
            continue;
        }
        const bool keepsSomething = level.keepsSomething;
        if (levels.size() == 1) return !keepsSomething;
        levels.pop_back();
        if (!source.leave() || !target.leave()) return failLost(source);
        Level& above = levels.back();
        const TextView name = above.contents.nameOf(above.contents.folders()[above.next - 1]);
        if (keepsSomething || !clearFolder(source.current(), name, source.fullName(name, true)))
            above.keepsSomething = true;
    }
}

}  // namespace Oxa_1_1::detail
