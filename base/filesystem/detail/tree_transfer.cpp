#include "base/filesystem/detail/tree_transfer.h"

#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::EntryKind;
using platform::Links;
using platform::OpenFolder;

namespace
{

constexpr std::string_view OPEN_FOLDER = "openFolder";
constexpr std::string_view MAKE_FOLDER = "createFolder";

}  // namespace

bool TreeTransfer::openTarget(const DiskFolder& target)
{
    ParsedDirectory place = *target.absolute();
    OpenFolder nearest;
    for (;;)
    {
        nearest = OpenFolder::at(readablePath(place), Links::FOLLOW);
        if (nearest.isOpen() || place.levels.empty() || !saysMissing(platform::lastError())) break;
        m_missing.emplace_back(place.levels.back().view());
        place.levels.dropBack();
    }
    if (!nearest.isOpen())
    {
        fail(OPEN_FOLDER, fullName(place, SEPARATOR));
        return false;
    }
    m_target.emplace(std::move(nearest), std::make_shared<ParsedDirectory>(std::move(place)));
    m_targetAncestry = m_target->current().ancestry();
    if (!m_targetAncestry.empty()) return true;
    fail(OPEN_FOLDER, fullName(*m_target->path(), SEPARATOR));
    return false;
}

bool TreeTransfer::makeTarget()
{
    const bool isTop = m_missing.size() == 1 && m_entries.keepsPermissions();
    const Text name = std::move(m_missing.back());
    m_missing.pop_back();
    const String path = m_target->fullName(name);
    const OpenFolder above = m_target->current();
    m_isTopMade = above.makeFolder(name, isTop ? platform::NewFolder::PRIVATE : platform::NewFolder::USUAL);
    const DWORD reason = platform::lastError();
    // Somebody else may have been faster, and then it is filled up.
    const bool isThere = m_isTopMade || reason == platform::ALREADY_EXISTS;
    if (!isThere || !m_target->enter(name, Links::REFUSE))
    {
        m_work.fail(m_isTopMade ? OPEN_FOLDER : MAKE_FOLDER, path, m_isTopMade ? platform::lastError() : reason);
        if (m_isTopMade) above.removeFolder(name);
        return false;
    }
    if (m_work.rollsBack())
        m_topInJournal = m_journal.addFolder(m_topInJournal, name, m_isTopMade, false, m_target->current());
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

bool TreeTransfer::isOutsideSource(const ParsedDirectory& target)
{
    // The nearest folder that is there begins its own ancestry.
    if (!contains(m_targetAncestry, m_sourceTop)) return true;
    m_work.fail(m_entries.operation(), fullName(*m_source->way().path(), SEPARATOR), platform::INVALID_PARAMETER,
                fullName(target, SEPARATOR));
    return false;
}

template <class Act>
void TreeTransfer::guarded(const Act& act)
{
    try
    {
        if (!m_work.isStopped()) act();
    }
    catch (const TreeWork::Stopped&)
    {
        m_work.fileFailed();
    }
    catch (...)
    {
        if (m_work.rollsBack() && !m_clearing.hasRemoved()) rollBack();
        throw;
    }
    if (!m_work.rollsBack() || !m_target) return;
    if ((m_work.hasFailed() || m_work.report().isStopped) && !m_clearing.hasRemoved()) return rollBack();
    bool isAtTop = true;
    while (isAtTop && m_target->depth() != 0) isAtTop = m_target->leave();
    if (!isAtTop)
        fail("openFolder", fullName(*m_target->path(), SEPARATOR));
    else if (!m_journal.commit(*m_target, m_work) && !m_clearing.hasRemoved())
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
        fail("rollBack", fullName(*m_target->path(), SEPARATOR));
        return;
    }
    if (!m_journal.undo(*m_target, m_entries.isMove() && m_source ? &m_source->way() : nullptr, m_work)) return;
    TreeReport& report = m_work.report();
    report.isRolledBack = true;
    report.files = report.folders = report.links = report.bytes = 0;
}

void TreeTransfer::copyFolder(const DiskFolder& source, const DiskFolder& target)
{
    guarded(
        [&]
        {
            if (!openSource(source, Links::FOLLOW) || !openTarget(target) || !isOutsideSource(*target.absolute()))
                return;
            if (m_work.options().links == LinkHandling::Follow) m_circles.emplace(*source.absolute());
            while (!m_missing.empty())
                if (!makeTarget()) return;
            m_targetAncestry = m_target->current().ancestry();
            begin(m_isTopMade, m_topInJournal);
            walk();
        });
}

void TreeTransfer::moveFolder(const DiskFolder& source, const DiskFolder& target)
{
    ParsedDirectory abovePath = *source.absolute();
    const String targetPath = fullName(*target.absolute(), SEPARATOR);
    if (abovePath.levels.empty() || target.absolute()->levels.empty())
    {
        m_work.fail(m_entries.operation(), fullName(abovePath, SEPARATOR), platform::INVALID_PARAMETER, targetPath);
        return;
    }
    const Text name(abovePath.levels.back().view());
    abovePath.levels.dropBack();
    const OpenFolder above = OpenFolder::at(readablePath(abovePath), Links::FOLLOW);
    guarded(
        [&]
        {
            if (!above.isOpen() || !openSource(source, Links::REFUSE))
            {
                if (!above.isOpen()) fail(OPEN_FOLDER, fullName(abovePath, SEPARATOR));
                return;
            }
            if (!openTarget(target) || !isOutsideSource(*target.absolute())) return;
            while (m_missing.size() > 1)
                if (!makeTarget()) return;
            if (!m_missing.empty())
            {
                // An open folder cannot be renamed everywhere.
                m_source.reset();
                if (above.rename(name, m_target->current(), m_missing.back(), true))
                {
                    m_source.emplace(FolderWay(above, std::make_shared<ParsedDirectory>(abovePath)));
                    m_levels.push_back({.inJournal = m_topInJournal});
                    m_entries.noteMoved(place(), {.source = name, .target = m_missing.back()}, EntryKind::SUBFOLDER);
                    m_work.folderDone();
                    m_work.wholeDone();
                    return;
                }
                const DWORD reason = platform::lastError();
                const bool isTaken = reason == platform::ALREADY_EXISTS;
                if (!isTaken && reason != platform::NOT_SAME_DEVICE && reason != platform::NOT_SUPPORTED)
                {
                    m_work.fail(m_entries.operation(), fullName(*source.absolute(), SEPARATOR), reason, targetPath);
                    return;
                }
                if (!openSource(source, Links::REFUSE) || !makeTarget()) return;
                m_targetAncestry = m_target->current().ancestry();
            }
            begin(m_isTopMade, m_topInJournal);
            const bool isWhole = walk();
            if (!isWhole || m_work.isStopped() || m_work.isEnded()) return;
            if (!m_work.hasFailed()) m_work.wholeDone();
            if (!clearSource(source)) return;
            m_source.reset();
            const bool isGone = m_clearing.clearFolder(above, name, fullName(*source.absolute(), SEPARATOR));
            // What was moved out of it can go back.
            if (!isGone && m_work.rollsBack()) openSource(source, Links::REFUSE);
        });
}

void TreeTransfer::moveEntry(const DiskFolder& source, TextView name, const DiskFolder& target, TextView targetName)
{
    const String targetPath = fullName(*target.absolute(), SEPARATOR, targetName);
    guarded(
        [&]
        {
            if (!openSource(source, Links::FOLLOW) || !openTarget(target)) return;
            const auto kind = m_source->current().readKind(name);
            if (!kind || kind == EntryKind::SUBFOLDER)
            {
                if (kind) platform::setLastError(platform::ACCESS_DENIED);
                m_entries.fail(m_entries.operation(), m_source->way(), name, targetPath);
                return;
            }
            const auto size = kind == EntryKind::PLAIN_FILE ? m_source->current().readInformation(name) : std::nullopt;
            m_work.countFile(size ? size->size : 0);
            while (!m_missing.empty())
                if (!makeTarget()) return;
            begin(false, m_topInJournal);
            const EntryTransfer::Names names{.source = Text(name), .target = Text(targetName)};
            OpenFolder& from = m_source->current();
            OpenFolder& to = m_target->current();
            if (from.identity() == to.identity() && from.readOwnIdentity(name) == to.readOwnIdentity(targetName))
            {
                // The same but for case, on disks that do not tell the difference.
                if (name == targetName || String(name).compareIgnoreCase(String(targetName)) != 0)
                    m_entries.fail(platform::INVALID_PARAMETER, m_entries.operation(), m_source->way(), name,
                                   targetPath);
                else if (from.rename(name, to, targetName, false))
                    m_work.fileDone(m_entries.sizeForProgress(place(), targetName));
                else
                    m_entries.fail(m_entries.operation(), m_source->way(), name, targetPath);
                return;
            }
            if (m_entries.transfer(place(), names, *kind) && m_entries.hasCopied())
                m_clearing.clearEntry(m_source->way(), name, *m_target, targetName);
        });
}

bool TreeTransfer::walk()
{
    platform::FolderEntry entry;
    for (;;)
    {
        if (m_work.isStopped()) return false;
        if (m_source->next(entry))
        {
            if (!transfer(entry)) return false;
            continue;
        }
        const DWORD reason = platform::lastError();
        if (reason != platform::NO_MORE_FILES && !failReading(reason)) return false;
        if (!end()) return false;
        if (m_levels.empty()) return true;
    }
}

bool TreeTransfer::failReading(DWORD reason)
{
    if (m_entries.isMove()) m_entries.leaveFolder(m_source->current());
    return m_work.fail("readFolder", fullName(*m_source->way().path(), SEPARATOR), reason);
}

void TreeTransfer::begin(bool isMade, std::size_t inJournal)
{
    OpenFolder& source = m_source->current();
    OpenFolder& target = m_target->current();
    Level& level = m_levels.emplace_back();
    level.isMade = isMade;
    level.inJournal = inJournal;
    if (m_entries.isMove())
    {
        const auto from = source.identity();
        const auto to = target.identity();
        level.canRename = from && to && from->volume == to->volume;
    }
    if (!isMade) return;
    if (m_entries.keepsPermissions()) target.takePermissions(source, platform::OwnerAccess::FULL);
    m_work.folderDone();
}

bool TreeTransfer::end()
{
    if (m_levels.back().isMade)
    {
        OpenFolder& source = m_source->current();
        OpenFolder& target = m_target->current();
        if (m_entries.isMove()) target.takeOwner(source);
        if (m_entries.keepsPermissions()) target.takePermissions(source, platform::OwnerAccess::AS_GIVEN);
        if (m_entries.keepsTimes()) target.takeTimes(source);
    }
    m_levels.pop_back();
    if (m_levels.empty()) return true;
    if (m_source->leave() && m_target->leave()) return true;
    // There is no way on.
    fail("openFolder", fullName(*m_source->way().path(), SEPARATOR));
    return false;
}

bool TreeTransfer::transfer(const platform::FolderEntry& entry)
{
    EntryKind kind = entry.kind;
    const bool keepsLink = m_entries.keepsLink(kind);
    // That the system did not tell may have been but a moment.
    if (platform::isUnknown(kind) && !keepsLink) kind = m_source->current().readKind(entry.name).value_or(kind);
    if (kind == EntryKind::SUBFOLDER) return transferFolder(entry.name, Links::REFUSE);
    if (kind == EntryKind::FOLDER_LINK && !keepsLink) return transferFolder(entry.name, Links::FOLLOW);
    return m_entries.transfer(place(), {.source = entry.name, .target = entry.name}, kind);
}

bool TreeTransfer::transferFolder(const Text& name, Links links)
{
    const std::string_view operation = m_entries.operation();
    if (m_entries.isMove() && m_levels.back().canRename &&
        m_source->current().rename(name, m_target->current(), name, true))
    {
        m_entries.noteMoved(place(), {.source = name, .target = name}, EntryKind::SUBFOLDER);
        m_work.folderDone();
        return true;
    }
    const bool isLink = links == Links::FOLLOW;
    const auto path = [&] { return m_target->fullName(name, true); };
    if (isLink && m_circles->closesAt(m_source->way(), name))
        return m_entries.fail(platform::TOO_MANY_LINKS, operation, m_source->way(), name, path());
    if (!m_source->enter(name, links)) return m_entries.fail(OPEN_FOLDER, m_source->way(), name);
    const auto failOutside = [&](std::string_view failed, DWORD reason = platform::lastError())
    { return m_source->leave() && m_entries.fail(reason, failed, m_source->way(), name, path()); };
    if (isLink ? leadsToTarget() : isTarget(m_source->current()))
        return failOutside(operation, platform::INVALID_PARAMETER);
    OpenFolder& above = m_target->current();
    const bool isPrivate = m_entries.keepsPermissions();
    const bool isMade = above.makeFolder(name, isPrivate ? platform::NewFolder::PRIVATE : platform::NewFolder::USUAL);
    if (!isMade && platform::lastError() != platform::ALREADY_EXISTS) return failOutside(MAKE_FOLDER);
    if (!m_target->enter(name, Links::REFUSE))
    {
        const DWORD reason = platform::lastError();
        if (isMade) above.removeFolder(name);
        const auto there = isMade ? std::nullopt : above.readKind(name);
        if (there && there != EntryKind::SUBFOLDER) return failOutside(operation, platform::FILE_EXISTS);
        return failOutside(OPEN_FOLDER, reason);
    }
    if (!isMade && isSource(m_target->current()))
        return m_target->leave() && failOutside(operation, platform::INVALID_PARAMETER);
    std::size_t inJournal = TreeJournal::TOP;
    if (m_work.rollsBack())
        inJournal = m_journal.addFolder(m_levels.back().inJournal, name, isMade, true, m_target->current());
    begin(isMade, inJournal);
    return true;
}

/// By another way than a link, such as one of two places where a disk is mounted.
bool TreeTransfer::isTarget(const OpenFolder& folder) const
{
    return !m_targetAncestry.empty() && folder.identity() == m_targetAncestry.front();
}

/// The top, where the target holds it, or the one on the other side of this.
bool TreeTransfer::isSource(const OpenFolder& folder)
{
    const auto identity = folder.identity();
    return identity == m_sourceTop || identity == m_source->way().current().identity();
}

bool TreeTransfer::leadsToTarget() const
{
    const OpenFolder& folder = const_cast<TreeTransfer*>(this)->m_source->current();
    const auto identity = folder.identity();
    const auto above = folder.ancestry();
    return !identity || above.empty() || m_targetAncestry.empty() || contains(m_targetAncestry, identity) ||
           contains(above, m_targetAncestry.front());
}

bool TreeTransfer::clearSource(const DiskFolder& source)
{
    OpenFolder top = source.open(Links::REFUSE);
    const auto identity = top.isOpen() ? top.identity() : std::nullopt;
    if (!identity || identity != m_sourceTop)
    {
        if (identity) platform::setLastError(platform::INVALID_HANDLE);
        fail(OPEN_FOLDER, fullName(*source.absolute(), SEPARATOR));
        return false;
    }
    FolderWay way = source.way(std::move(top));
    return m_clearing.clear(way, *m_target, m_entries.left());
}

}  // namespace Oxa_1_1::detail
