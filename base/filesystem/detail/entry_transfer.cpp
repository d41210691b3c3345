#include "base/filesystem/detail/entry_transfer.h"

#include <optional>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/unique_name.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::EntryKind;
using platform::OpenFolder;
using platform::ReadOnlyFiles;

namespace
{

Text newName() { return Text(uniqueName(OXA_TEXT(".oxa-")).view()); }

/// Whether what cannot be renamed can still be copied.
bool asksForCopy(DWORD reason) { return reason == platform::NOT_SAME_DEVICE || reason == platform::NOT_SUPPORTED; }

}  // namespace

bool EntryTransfer::keepsLink(EntryKind kind) const noexcept
{
    return platform::isLink(kind) && (isMove() || m_work.options().links == LinkHandling::Keep);
}

bool EntryTransfer::fail(std::string_view operation, FolderWay& source, TextView name, const String& target)
{
    const DWORD reason = platform::lastError();
    if (isMove()) m_left.add(source.current(), name);
    return m_work.fail(operation, source.fullName(name), reason, target);
}

bool EntryTransfer::fail(DWORD code, std::string_view operation, FolderWay& source, TextView name, const String& target)
{
    platform::setLastError(code);
    return fail(operation, source, name, target);
}

bool EntryTransfer::fail(DWORD code, const TransferPlace& place, const Names& names)
{
    return fail(code, operation(), place.source, names.source, place.target.fullName(names.target));
}

bool EntryTransfer::transfer(const TransferPlace& place, const Names& names, EntryKind kind)
{
    const Brought brought = bring(place, names, kind);
    const DWORD reason = platform::lastError();
    if (brought == Brought::FAILED) return saysTaken(reason) ? replace(place, names, kind) : fail(reason, place, names);
    note(brought, place, names, kind, {});
    return true;
}

EntryTransfer::Brought EntryTransfer::bring(const TransferPlace& place, const Names& names, EntryKind kind)
{
    const OpenFolder& source = place.source.current();
    const OpenFolder& target = place.target.current();
    if (isMove() && place.canRename)
    {
        if (source.rename(names.source, target, names.target, true)) return Brought::MOVED;
        if (!asksForCopy(platform::lastError())) return Brought::FAILED;
    }
    if (kind == EntryKind::OTHER)
    {
        platform::setLastError(platform::NOT_SUPPORTED);
        return Brought::FAILED;
    }
    bool isCopied = false;
    const platform::Kept kept{.permissions = keepsPermissions(), .times = keepsTimes(), .owner = isMove()};
    if (keepsLink(kind))
        isCopied = source.copyLink(names.source, target, names.target, true, kept);
    else
        isCopied = source.copyFile(names.source, kind, target, names.target, true, m_work.fileProgress(), kept);
    if (!isCopied) m_work.fileFailed();
    return isCopied ? Brought::COPIED : Brought::FAILED;
}

bool EntryTransfer::isNoNewer(const TransferPlace& place, const Names& names, EntryKind kind, bool isLink) const
{
    const OpenFolder& source = place.source.current();
    const OpenFolder& target = place.target.current();
    if (isLink && keepsLink(kind) && source.isSameContent(names.source, target, names.target)) return true;
    const auto fresh =
        keepsLink(kind) || !platform::isLink(kind) ? source.readOwnLastWrite(names.source) : std::nullopt;
    const auto followed = fresh ? std::nullopt : source.readInformation(names.source);
    const auto old = target.readOwnLastWrite(names.target);
    return old && (fresh ? *fresh <= *old : followed && followed->written <= *old);
}

bool EntryTransfer::givesWay(const TransferPlace& place, const Names& names, EntryKind kind, bool& goesOn)
{
    const OpenFolder& target = place.target.current();
    const auto refuse = [&](DWORD code)
    {
        goesOn = fail(code, place, names);
        return false;
    };
    if (m_work.options().overwrite == Overwrite::Never) return refuse(platform::FILE_EXISTS);
    const auto there = target.readKind(names.target);
    // Somebody has removed it meanwhile.
    if (!there) return saysMissing(platform::lastError()) || refuse(platform::lastError());
    if (there == EntryKind::SUBFOLDER) return refuse(platform::FILE_EXISTS);
    // Whoever uses a pipe or device would miss it.
    if (there == EntryKind::OTHER) return refuse(platform::NOT_SUPPORTED);
    const bool isLink = platform::isLink(*there);
    if (m_work.options().overwrite == Overwrite::IfNewer && isNoNewer(place, names, kind, isLink))
    {
        const OpenFolder& source = place.source.current();
        if (isMove()) m_left.add(source, names.source);
        const auto fresh = keepsLink(kind) ? std::nullopt : source.readInformation(names.source);
        m_work.fileSkipped(fresh ? fresh->size : 0);
        return false;
    }
    const auto old = isLink ? std::nullopt : target.readInformation(names.target);
    const bool isReadOnly = old && (old->attributes & platform::READ_ONLY) != 0;
    if (isReadOnly && !m_work.options().readOnlyToo) return refuse(platform::ACCESS_DENIED);
    return true;
}

bool EntryTransfer::replace(const TransferPlace& place, const Names& names, EntryKind kind)
{
    bool goesOn = true;
    if (!givesWay(place, names, kind, goesOn)) return goesOn;
    // On one disk there is no moment when it has neither of both names.
    if (isMove() && place.canRename)
    {
        if (takePlace(place.source.current(), names.source, Brought::MOVED, place, names, kind)) return true;
        const DWORD reason = platform::lastError();
        if (!asksForCopy(reason)) return fail(reason, place, names);
    }
    const Names aside{.source = names.source, .target = newName()};
    const Brought brought = bring(place, aside, kind);
    if (brought == Brought::FAILED) return fail(platform::lastError(), place, names);
    if (takePlace(place.target.current(), aside.target, brought, place, names, kind)) return true;
    const DWORD reason = platform::lastError();
    takeBack(brought, place, aside.target, names.source);
    return fail(reason, place, names);
}

bool EntryTransfer::takePlace(const OpenFolder& from, const Text& name, Brought brought, const TransferPlace& place,
                              const Names& names, EntryKind kind)
{
    const OpenFolder& target = place.target.current();
    bool isKept = true;
    const Text kept = m_work.rollsBack() ? keepAside(target, names.target, isKept) : Text();
    const auto readOnly = m_work.options().readOnlyToo ? ReadOnlyFiles::GO : ReadOnlyFiles::STAY;
    if (isKept && from.replace(name, target, names.target, readOnly))
    {
        note(brought, place, names, kind, kept);
        return true;
    }
    const DWORD reason = platform::lastError();
    if (!kept.empty()) target.deleteFile(kept, ReadOnlyFiles::GO);
    platform::setLastError(reason);
    return false;
}

Text EntryTransfer::keepAside(const OpenFolder& target, const Text& name, bool& isKept)
{
    Text aside = newName();
    isKept = target.addName(name, aside);
    const auto kind = isKept ? std::nullopt : target.readKind(name);
    if (kind)
        isKept = platform::isLink(*kind) ? target.copyLink(name, target, aside, true)
                                         : target.copyFile(name, *kind, target, aside, true, {});
    return isKept ? aside : Text();
}

void EntryTransfer::takeBack(Brought brought, const TransferPlace& place, const Text& temporary, const Text& name)
{
    const OpenFolder& target = place.target.current();
    const bool isBack = brought == Brought::MOVED ? target.rename(temporary, place.source.current(), name, true)
                                                  : target.deleteFile(temporary, ReadOnlyFiles::GO);
    if (!isBack) m_work.fail("rollBack", place.target.fullName(temporary));
}

std::uint64_t EntryTransfer::sizeForProgress(const TransferPlace& place, TextView targetName) const
{
    const auto information =
        m_work.options().countFirst ? place.target.current().readInformation(targetName) : std::nullopt;
    return information ? information->size : 0;
}

void EntryTransfer::note(Brought brought, const TransferPlace& place, const Names& names, EntryKind kind, Text aside)
{
    if (m_work.rollsBack())
        m_journal.add({.kind = brought == Brought::MOVED ? TreeJournal::Kind::MOVED : TreeJournal::Kind::COPIED,
                       .folder = place.inJournal,
                       .name = names.target,
                       .sourceName = names.source,
                       .aside = std::move(aside),
                       .identity = place.target.current().readOwnIdentity(names.target)});
    m_hasCopied = m_hasCopied || brought == Brought::COPIED;
    if (keepsLink(kind))
        m_work.linkDone();
    else if (brought == Brought::COPIED)
        m_work.fileDone();
    else if (kind != EntryKind::SUBFOLDER)
        m_work.fileDone(sizeForProgress(place, names.target));
}

}  // namespace Oxa_1_1::detail
