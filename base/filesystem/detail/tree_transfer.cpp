#include "base/filesystem/detail/tree_transfer.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::EntryKind;
using platform::Links;
using platform::OpenFolder;
using platform::ReadOnlyFiles;

namespace
{

constexpr std::string_view COPY = "copyFile";
constexpr std::string_view MOVE = "renameFile";
constexpr std::string_view OPEN_FOLDER = "openFolder";
constexpr std::string_view MAKE_FOLDER = "createFolder";

bool isTaken(DWORD code) noexcept { return code == platform::FILE_EXISTS || code == platform::ALREADY_EXISTS; }

bool isLinkKind(EntryKind kind) noexcept { return kind == EntryKind::FILE_LINK || kind == EntryKind::FOLDER_LINK; }

Text newName() { return Text(uniqueName(OXA_TEXT(".oxa-")).view()); }

}  // namespace

bool TreeTransfer::keepsLink(EntryKind kind) const noexcept
{
    return isLinkKind(kind) && (isMove() || m_work.options().links == LinkHandling::Keep);
}

void TreeTransfer::leave(TextView name)
{
    if (!isMove()) return;
    const auto folder = m_source->current().identity().value_or(platform::FileIdentity{});
    m_left.insert({folder.volume, folder.index, Text(name)});
}

bool TreeTransfer::isLeft(const OpenFolder& folder, TextView name) const
{
    const auto identity = m_left.empty() ? std::nullopt : folder.identity();
    return identity && m_left.contains({identity->volume, identity->index, Text(name)});
}

bool TreeTransfer::failEntry(std::string_view operation, TextView name)
{
    const DWORD reason = platform::lastError();
    leave(name);
    return m_work.fail(operation, sourceName(name), reason);
}

bool TreeTransfer::failWith(DWORD code, std::string_view operation, TextView name)
{
    platform::setLastError(code);
    return failEntry(operation, name);
}

bool TreeTransfer::openTarget(const DiskFolder& target)
{
    ParsedDirectory place = *target.absolute();
    OpenFolder nearest;
    for (;;)
    {
        nearest = OpenFolder::at(readablePath(place), Links::FOLLOW);
        if (nearest.isOpen() || place.levels.empty()) break;
        m_missing.emplace_back(place.levels.back().view());
        place.levels.pop_back();
    }
    if (!nearest.isOpen())
    {
        fail(OPEN_FOLDER, fullName(place, SEPARATOR));
        return false;
    }
    m_target.emplace(std::move(nearest), std::make_shared<ParsedDirectory>(std::move(place)));
    m_targetAncestry = m_target->current().ancestry();
    return true;
}

bool TreeTransfer::makeTarget()
{
    const bool isTop = m_missing.size() == 1 && m_work.options().keepPermissions;
    const Text name = std::move(m_missing.back());
    m_missing.pop_back();
    const String path = targetName(name);
    if (!m_target->current().makeFolder(name, isTop ? platform::NewFolder::PRIVATE : platform::NewFolder::USUAL))
    {
        fail(MAKE_FOLDER, path);
        return false;
    }
    const OpenFolder above = m_target->current();
    if (!m_target->enter(name, Links::REFUSE))
    {
        fail(OPEN_FOLDER, path);
        above.removeFolder(name);
        return false;
    }
    if (m_work.rollsBack())
        m_topInJournal = m_journal.addFolder(m_topInJournal, name, true, false, m_target->current());
    return true;
}

bool TreeTransfer::openSource(const DiskFolder& source, Links links)
{
    OpenFolder top = source.open(links);
    const auto identity = top.isOpen() ? top.identity() : std::nullopt;
    // Opened again, it must not be another one.
    const bool isSame = identity && (!m_sourceTop || m_sourceTop == identity);
    if (identity && !isSame) platform::setLastError(platform::INVALID_HANDLE);
    if (isSame)
    {
        m_sourceTop = identity;
        m_source.emplace(source.way(std::move(top)));
        return true;
    }
    fail(OPEN_FOLDER, fullName(*source.absolute(), SEPARATOR));
    return false;
}

bool TreeTransfer::isOutsideSource()
{
    // The nearest folder that is there begins its own ancestry.
    if (!m_targetAncestry.empty() && !contains(m_targetAncestry, m_sourceTop)) return true;
    platform::setLastError(platform::INVALID_PARAMETER);
    fail(isMove() ? MOVE : COPY, fullName(m_target->path(), SEPARATOR));
    return false;
}

template <class Act>
void TreeTransfer::guarded(const Act& act)
{
    try
    {
        act();
    }
    catch (const TreeWork::Stopped&)
    {
        m_work.fileFailed();
    }
    catch (...)
    {
        if (m_work.rollsBack()) rollBack();
        throw;
    }
    if (!m_work.rollsBack() || !m_target) return;
    if ((m_work.hasFailed() || m_work.report().isStopped) && m_removed == 0) return rollBack();
    bool isAtTop = true;
    while (isAtTop && m_target->depth() != 0) isAtTop = m_target->leave();
    if (!isAtTop)
        fail("openFolder", fullName(m_target->path(), SEPARATOR));
    else if (!m_journal.commit(*m_target, m_work) && m_removed == 0)
        rollBack();
}

void TreeTransfer::rollBack()
{
    if (!m_target) return;
    bool isAtTop = true;
    while (isAtTop && m_target->depth() != 0) isAtTop = m_target->leave();
    while (isAtTop && m_source && m_source->way().depth() != 0) isAtTop = m_source->leave();
    if (!isAtTop)
    {
        fail("rollBack", fullName(m_target->path(), SEPARATOR));
        return;
    }
    if (!m_journal.undo(*m_target, isMove() && m_source ? &m_source->way() : nullptr, m_work)) return;
    TreeReport& report = m_work.report();
    report.isRolledBack = true;
    report.files = report.folders = report.links = report.bytes = 0;
}

void TreeTransfer::copyFolder(const DiskFolder& source, const DiskFolder& target)
{
    guarded(
        [&]
        {
            if (!openSource(source, Links::FOLLOW) || !openTarget(target) || !isOutsideSource()) return;
            if (m_work.options().links == LinkHandling::Follow) m_circles.emplace(*source.absolute());
            const bool isMade = !m_missing.empty();
            while (!m_missing.empty())
                if (!makeTarget()) return;
            m_targetAncestry = m_target->current().ancestry();
            begin(isMade, m_topInJournal);
            walk();
        });
}

void TreeTransfer::moveFolder(const DiskFolder& source, const DiskFolder& target)
{
    ParsedDirectory abovePath = *source.absolute();
    if (abovePath.levels.empty() || target.absolute()->levels.empty())
    {
        m_work.fail(MOVE, fullName(abovePath, SEPARATOR), platform::INVALID_PARAMETER);
        return;
    }
    const Text name(abovePath.levels.back().view());
    abovePath.levels.pop_back();
    const OpenFolder above = OpenFolder::at(readablePath(abovePath), Links::FOLLOW);
    guarded(
        [&]
        {
            if (!above.isOpen() || !openSource(source, Links::REFUSE))
            {
                if (!above.isOpen()) fail(OPEN_FOLDER, fullName(abovePath, SEPARATOR));
                return;
            }
            if (!openTarget(target) || !isOutsideSource()) return;
            const bool isMade = !m_missing.empty();
            while (m_missing.size() > 1)
                if (!makeTarget()) return;
            if (isMade)
            {
                // An open folder cannot be renamed everywhere.
                m_source.reset();
                if (above.rename(name, m_target->current(), m_missing.back(), true))
                {
                    m_source.emplace(FolderWay(above, std::make_shared<ParsedDirectory>(abovePath)));
                    m_levels.push_back({.inJournal = m_topInJournal});
                    note(Brought::MOVED, {.source = name, .target = m_missing.back()}, EntryKind::SUBFOLDER, {});
                    m_work.folderDone();
                    return;
                }
                const DWORD reason = platform::lastError();
                if (reason != platform::NOT_SAME_DEVICE && reason != platform::NOT_SUPPORTED)
                {
                    m_work.fail(MOVE, fullName(*source.absolute(), SEPARATOR), reason);
                    return;
                }
                if (!openSource(source, Links::REFUSE) || !makeTarget()) return;
            }
            begin(isMade, m_topInJournal);
            const bool isWhole = walk();
            if (!isWhole || m_work.isStopped() || m_work.isEnded()) return;
            if (!clearSource(source)) return;
            m_source.reset();
            if (above.removeFolder(name))
                ++m_removed;
            else
                fail("removeFolder", fullName(*source.absolute(), SEPARATOR));
        });
}

void TreeTransfer::moveEntry(const DiskFolder& source, TextView name, const DiskFolder& target, TextView targetName)
{
    guarded(
        [&]
        {
            if (!openSource(source, Links::FOLLOW) || !openTarget(target)) return;
            const auto kind = m_source->current().readKind(name);
            if (!kind || kind == EntryKind::SUBFOLDER)
            {
                if (kind) platform::setLastError(platform::ACCESS_DENIED);
                failEntry(MOVE, name);
                return;
            }
            while (!m_missing.empty())
                if (!makeTarget()) return;
            begin(false, m_topInJournal);
            const Names names{.source = Text(name), .target = Text(targetName)};
            OpenFolder& from = m_source->current();
            OpenFolder& to = m_target->current();
            if (from.identity() == to.identity() && from.readOwnIdentity(name) == to.readOwnIdentity(targetName))
            {
                // The same but for case, on disks that do not tell the difference.
                if (name == targetName || String(name).compareIgnoreCase(String(targetName)) != 0)
                    failWith(platform::INVALID_PARAMETER, MOVE, name);
                else if (from.rename(name, to, targetName, false))
                    m_work.fileDone(sizeForProgress(targetName));
                else
                    failEntry(MOVE, name);
                return;
            }
            if (!transferEntry(names, *kind) || !m_hasCopied) return;
            if (!from.isSameContent(name, to, targetName))
                failWith(platform::FILE_CHANGED, "compareFiles", name);
            else if (from.deleteFile(name, ReadOnlyFiles::GO))
                ++m_removed;
            else
                failEntry("deleteFile", name);
        });
}

bool TreeTransfer::walk()
{
    platform::TreeEntry entry;
    for (;;)
    {
        if (m_work.isStopped()) return false;
        if (m_source->next(entry))
        {
            if (!transfer(entry)) return false;
            continue;
        }
        const DWORD reason = platform::lastError();
        if (reason != platform::NO_MORE_FILES &&
            !m_work.fail("readFolder", fullName(m_source->way().path(), SEPARATOR), reason))
            return false;
        if (!end()) return false;
        if (m_levels.empty()) return true;
    }
}

void TreeTransfer::begin(bool isMade, std::size_t inJournal)
{
    OpenFolder& source = m_source->current();
    OpenFolder& target = m_target->current();
    Level& level = m_levels.emplace_back();
    level.isMade = isMade;
    level.inJournal = inJournal;
    if (isMove())
    {
        const auto from = source.identity();
        const auto to = target.identity();
        level.canRename = from && to && from->volume == to->volume;
    }
    if (!isMade) return;
    if (m_work.options().keepPermissions) target.takePermissions(source, platform::OwnerAccess::FULL);
    m_work.folderDone();
}

bool TreeTransfer::end()
{
    if (m_levels.back().isMade)
    {
        OpenFolder& source = m_source->current();
        OpenFolder& target = m_target->current();
        if (m_work.options().keepPermissions) target.takePermissions(source, platform::OwnerAccess::AS_GIVEN);
        if (m_work.options().keepTimes) target.takeTimes(source);
    }
    m_levels.pop_back();
    if (m_levels.empty()) return true;
    if (m_source->leave() && m_target->leave()) return true;
    // There is no way on.
    fail("openFolder", fullName(m_source->way().path(), SEPARATOR));
    return false;
}

bool TreeTransfer::transfer(const platform::TreeEntry& entry)
{
    if (entry.kind == EntryKind::SUBFOLDER) return transferFolder(entry.name, Links::REFUSE);
    if (entry.kind == EntryKind::FOLDER_LINK && !keepsLink(entry.kind))
        return transferFolder(entry.name, Links::FOLLOW);
    return transferEntry({.source = entry.name, .target = entry.name}, entry.kind);
}

bool TreeTransfer::transferFolder(const Text& name, Links links)
{
    const std::string_view operation = isMove() ? MOVE : COPY;
    if (isMove() && m_levels.back().canRename && m_source->current().rename(name, m_target->current(), name, true))
    {
        note(Brought::MOVED, {.source = name, .target = name}, EntryKind::SUBFOLDER, {});
        m_work.folderDone();
        return true;
    }
    const bool isLink = links == Links::FOLLOW;
    if (isLink && m_circles->closesAt(m_source->way(), name))
        return failWith(platform::TOO_MANY_LINKS, operation, name);
    if (!m_source->enter(name, links)) return failEntry(OPEN_FOLDER, name);
    const auto failOutside = [&](std::string_view failed)
    {
        const DWORD reason = platform::lastError();
        return m_source->leave() && failWith(reason, failed, name);
    };
    if (isLink && leadsToTarget())
    {
        platform::setLastError(platform::INVALID_PARAMETER);
        return failOutside(operation);
    }
    OpenFolder& above = m_target->current();
    const bool isPrivate = m_work.options().keepPermissions;
    const bool isMade = above.makeFolder(name, isPrivate ? platform::NewFolder::PRIVATE : platform::NewFolder::USUAL);
    if (!isMade && platform::lastError() != platform::ALREADY_EXISTS) return failOutside(MAKE_FOLDER);
    if (!m_target->enter(name, Links::REFUSE))
    {
        const DWORD reason = platform::lastError();
        if (isMade) m_target->current().removeFolder(name);
        platform::setLastError(reason);
        return failOutside(OPEN_FOLDER);
    }
    // A target that the source lies in.
    if (!isMade && m_target->current().identity() == m_sourceTop)
    {
        if (!m_target->leave()) return false;
        platform::setLastError(platform::INVALID_PARAMETER);
        return failOutside(operation);
    }
    std::size_t inJournal = TreeJournal::TOP;
    if (m_work.rollsBack())
        inJournal = m_journal.addFolder(m_levels.back().inJournal, name, isMade, true, m_target->current());
    begin(isMade, inJournal);
    return true;
}

bool TreeTransfer::leadsToTarget() const
{
    const OpenFolder& folder = const_cast<TreeTransfer*>(this)->m_source->current();
    const auto identity = folder.identity();
    const auto above = folder.ancestry();
    return !identity || above.empty() || m_targetAncestry.empty() || contains(m_targetAncestry, identity) ||
           contains(above, m_targetAncestry.front());
}

bool TreeTransfer::transferEntry(const Names& names, EntryKind kind)
{
    const Brought brought = bring(names, kind);
    if (brought == Brought::FAILED)
        return isTaken(platform::lastError()) ? replaceEntry(names, kind)
                                              : failEntry(isMove() ? MOVE : COPY, names.source);
    note(brought, names, kind, {});
    return true;
}

TreeTransfer::Brought TreeTransfer::bring(const Names& names, EntryKind kind)
{
    OpenFolder& source = m_source->current();
    OpenFolder& target = m_target->current();
    if (isMove() && m_levels.back().canRename)
    {
        if (source.rename(names.source, target, names.target, true)) return Brought::MOVED;
        const DWORD reason = platform::lastError();
        if (reason != platform::NOT_SAME_DEVICE && reason != platform::NOT_SUPPORTED) return Brought::FAILED;
    }
    if (kind == EntryKind::OTHER)
    {
        platform::setLastError(platform::NOT_SUPPORTED);
        return Brought::FAILED;
    }
    bool isCopied = false;
    if (keepsLink(kind))
        isCopied = source.copyLink(names.source, target, names.target, true);
    else
        isCopied = source.copyFile(names.source, kind, target, names.target, true, m_work.fileProgress(),
                                   {.permissions = isMove() || m_work.options().keepPermissions,
                                    .times = isMove() || m_work.options().keepTimes});
    if (!isCopied) m_work.fileFailed();
    return isCopied ? Brought::COPIED : Brought::FAILED;
}

bool TreeTransfer::givesWay(const Names& names, EntryKind kind, bool& goesOn)
{
    const OpenFolder& target = m_target->current();
    const auto refuse = [&](DWORD code)
    {
        goesOn = failWith(code, isMove() ? MOVE : COPY, names.source);
        return false;
    };
    const auto there = target.readKind(names.target);
    if (!there || there == EntryKind::SUBFOLDER || m_work.options().overwrite == Overwrite::Never)
        return refuse(platform::FILE_EXISTS);
    const bool isLink = isLinkKind(*there);
    const auto old = isLink ? std::nullopt : target.readInformation(names.target);
    if (m_work.options().overwrite == Overwrite::IfNewer)
    {
        const OpenFolder& source = m_source->current();
        const auto fresh = keepsLink(kind) ? std::nullopt : source.readInformation(names.source);
        const bool isNoNewer = keepsLink(kind) ? isLink && source.isSameContent(names.source, target, names.target)
                                               : old && fresh && fresh->written <= old->written;
        if (isNoNewer)
        {
            leave(names.source);
            if (fresh)
                m_work.fileSkipped(fresh->size);
            else
                ++m_work.report().skipped;
            return false;
        }
    }
    const bool isReadOnly = old && (old->attributes & platform::READ_ONLY) != 0;
    if (isReadOnly && !m_work.options().readOnlyToo) return refuse(platform::ACCESS_DENIED);
    return true;
}

bool TreeTransfer::replaceEntry(const Names& names, EntryKind kind)
{
    bool goesOn = true;
    if (!givesWay(names, kind, goesOn)) return goesOn;
    const std::string_view operation = isMove() ? MOVE : COPY;
    const Names aside{.source = names.source, .target = newName()};
    const Brought brought = bring(aside, kind);
    if (brought == Brought::FAILED) return failEntry(operation, names.source);
    bool isKept = true;
    const Text kept = m_work.rollsBack() ? keepAside(names.target, isKept) : Text();
    const auto readOnly = m_work.options().readOnlyToo ? ReadOnlyFiles::GO : ReadOnlyFiles::STAY;
    if (isKept && m_target->current().replace(aside.target, names.target, readOnly))
    {
        note(brought, names, kind, kept);
        return true;
    }
    const DWORD reason = platform::lastError();
    takeBack(brought, aside.target, names.source);
    if (!kept.empty()) m_target->current().deleteFile(kept, ReadOnlyFiles::GO);
    return failWith(reason, operation, names.source);
}

Text TreeTransfer::keepAside(const Text& name, bool& isKept)
{
    const OpenFolder& target = m_target->current();
    Text aside = newName();
    isKept = target.addName(name, aside) || target.copyFile(name, EntryKind::PLAIN_FILE, target, aside, true, {}) ||
             target.copyLink(name, target, aside, true);
    return isKept ? aside : Text();
}

void TreeTransfer::takeBack(Brought brought, const Text& temporary, const Text& name)
{
    OpenFolder& target = m_target->current();
    const bool isBack = brought == Brought::MOVED ? target.rename(temporary, m_source->current(), name, true)
                                                  : target.deleteFile(temporary, ReadOnlyFiles::GO);
    if (!isBack) fail("rollBack", targetName(temporary));
}

std::uint64_t TreeTransfer::sizeForProgress(TextView name)
{
    const auto information = m_work.options().countFirst ? m_target->current().readInformation(name) : std::nullopt;
    return information ? information->size : 0;
}

void TreeTransfer::note(Brought brought, const Names& names, EntryKind kind, Text aside)
{
    if (m_work.rollsBack())
        m_journal.add({.kind = brought == Brought::MOVED ? TreeJournal::Kind::MOVED : TreeJournal::Kind::COPIED,
                       .folder = m_levels.back().inJournal,
                       .name = names.target,
                       .sourceName = names.source,
                       .aside = std::move(aside),
                       .identity = m_target->current().readOwnIdentity(names.target)});
    m_hasCopied = m_hasCopied || brought == Brought::COPIED;
    if (keepsLink(kind))
        ++m_work.report().links;
    else if (brought == Brought::COPIED)
        m_work.fileDone();
    else if (kind != EntryKind::SUBFOLDER)
        m_work.fileDone(sizeForProgress(names.target));
}

bool TreeTransfer::clearEntry(FolderWay& way, TextView name)
{
    const OpenFolder& source = way.current();
    if (isLeft(source, name)) return false;
    // Both are looked at now: whatever has changed since it was copied stays.
    if (!source.isSameContent(name, m_target->current(), name))
        m_work.fail("compareFiles", way.fullName(name), platform::FILE_CHANGED);
    else if (source.deleteFile(name, ReadOnlyFiles::GO))
        return ++m_removed, true;
    else if (!saysMissing(platform::lastError()))
        m_work.fail("deleteFile", way.fullName(name));
    return false;
}

bool TreeTransfer::clearSource(const DiskFolder& place)
{
    struct ClearedLevel
    {
        FolderContents contents;
        std::size_t next = 0;
        bool keepsSomething = false;
    };
    OpenFolder top = place.open(Links::REFUSE);
    if (!top.isOpen() || top.identity() != m_sourceTop)
    {
        if (top.isOpen()) platform::setLastError(platform::INVALID_HANDLE);
        fail(OPEN_FOLDER, fullName(*place.absolute(), SEPARATOR));
        return false;
    }
    FolderWay source = place.way(std::move(top));
    std::vector<ClearedLevel> levels;
    const auto isEnded = [&] { return m_work.isStopped() || m_work.isEnded(); };
    const auto begin = [&]
    {
        ClearedLevel& level = levels.emplace_back();
        level.keepsSomething = !level.contents.read(source.current());
        if (level.keepsSomething) m_work.fail("readFolder", fullName(source.path(), SEPARATOR));
        const auto clear = [&](const FolderContents::Entry& entry)
        {
            if (isEnded() || !clearEntry(source, level.contents.nameOf(entry))) level.keepsSomething = true;
        };
        for (const auto& file : level.contents.files()) clear(file);
        for (const auto& folder : level.contents.folders())
            if (folder.isLink()) clear(folder);
    };
    begin();
    for (;;)
    {
        ClearedLevel& level = levels.back();
        if (isEnded()) return false;
        if (level.next < level.contents.folders().size())
        {
            const auto& folder = level.contents.folders()[level.next++];
            if (folder.isLink()) continue;
            const TextView name = level.contents.nameOf(folder);
            if (isLeft(source.current(), name))
            {
                level.keepsSomething = true;
                continue;
            }
            const bool isEntered = source.enter(name, Links::REFUSE);
            if (isEntered && m_target->enter(name, Links::REFUSE))
            {
                begin();
                continue;
            }
            level.keepsSomething = true;
            const DWORD reason = platform::lastError();
            if (isEntered && !source.leave()) return false;
            m_work.fail(OPEN_FOLDER, source.fullName(name, true), reason);
            continue;
        }
        const bool keepsSomething = level.keepsSomething;
        if (levels.size() == 1) return !keepsSomething;
        levels.pop_back();
        if (!source.leave() || !m_target->leave())
        {
            fail("openFolder", fullName(source.path(), SEPARATOR));
            return false;
        }
        ClearedLevel& above = levels.back();
        const TextView name = above.contents.nameOf(above.contents.folders()[above.next - 1]);
        if (keepsSomething || !source.current().removeFolder(name))
        {
            if (!keepsSomething) m_work.fail("removeFolder", source.fullName(name, true));
            above.keepsSomething = true;
        }
        else
        {
            ++m_removed;
        }
    }
}

}  // namespace Oxa_1_1::detail
