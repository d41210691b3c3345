#include "base/filesystem/tree_walk.h"

#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/entry_stream.h"
#include "base/filesystem/detail/failure_list.h"
#include "base/filesystem/detail/file_times.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/tree_copy.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/filesystem/windows/oxa_windows_file_system_file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1
{

using detail::EntryStream;
using platform::FileInformation;
using platform::Links;

struct WalkEntry::Data
{
    Data(const Directory& folder, WalkOptions wanted)
        : options(std::move(wanted)),
          failures(options.failureLimit),
          pattern(options.pattern.isNil() ? TextView(OXA_TEXT("*")) : TextView(options.pattern)),
          showsAll(options.pattern.isNil() || options.pattern == OXA_TEXT("*"))
    {
        if (detail::windowsImpl(folder) == nullptr)
            fail("openFolder", folder.getFullName(), platform::NOT_SUPPORTED);
        else
            place.emplace(folder);
    }

    void fail(std::string_view operation, const String& path, DWORD code = platform::lastError())
    {
        const Failure failure{.operation = operation, .path = path, .target = {}, .code = makeWindowsError(code)};
        platform::failStep(code, operation, path);
        failures.add(failure);
        if (options.onFailure) options.onFailure(failure);
    }

    bool open()
    {
        if (!place) return false;
        const String name = detail::fullName(*place->absolute(), '\\');
        platform::OpenFolder top = place->open(Links::FOLLOW);
        if (!top.isOpen())
        {
            fail("openFolder", name);
            return false;
        }
        stream.emplace(place->way(std::move(top)));
        if (options.followLinks) circles.emplace(*place->absolute());
        if (options.order == WalkOrder::FoldersFirst) stream->readAhead();
        return true;
    }

    /// Goes into the folder that was shown last, if that is wanted and possible.
    void descend()
    {
        if (isSkipped || depth == options.maxDepth || !isKnown() || !platform::isFolder(entry.kind)) return;
        const bool isLink = entry.kind == platform::EntryKind::FOLDER_LINK;
        if (isLink && (!options.followLinks || circles->closesAt(stream->way(), entry.name))) return;
        if (stream->enter(entry.name, isLink ? Links::FOLLOW : Links::REFUSE))
        {
            ++depth;
            if (options.order == WalkOrder::FoldersFirst) stream->readAhead();
            return;
        }
        const DWORD reason = platform::lastError();
        const bool isGone = detail::saysMissing(reason) && !stream->current().readInformation(entry.name);
        // Who is told may throw, and go on nevertheless.
        isSkipped = true;
        if (!isGone) fail("openFolder", stream->way().fullName(entry.name, true), reason);
    }

    /// Whether the entry is known to be a folder or none. What is behind a link matters only to who follows it.
    bool isKnown()
    {
        if (!platform::isUnknown(entry.kind) || (platform::isLink(entry.kind) && !options.followLinks)) return true;
        // It may have been but a moment.
        entry.kind = stream->current().readKind(entry.name).value_or(entry.kind);
        if (!platform::isUnknown(entry.kind)) return true;
        const DWORD reason = platform::lastError();
        isSkipped = true;
        fail("readInformation", stream->way().fullName(entry.name), reason);
        return false;
    }

    /// False when there is no way back up.
    bool ascend()
    {
        isOver = !stream->leave();
        if (isOver)
        {
            fail("openFolder", folderName());
            return false;
        }
        --depth;
        return true;
    }

    bool isWanted() const
    {
        const bool isFolder = platform::isFolder(entry.kind);
        const bool isOfKind = options.kinds == WalkedKinds::All || isFolder == (options.kinds == WalkedKinds::Folders);
        return isOfKind && (showsAll || pattern.matches(entry.name));
    }

    String folderName() { return detail::fullName(*folder(), '\\'); }

    const detail::SharedDirectory& folder() { return stream->way().path(); }

    const FileInformation* information()
    {
        if (!isAsked) asked = stream->current().readInformation(entry.name);
        isAsked = true;
        return asked ? &*asked : nullptr;
    }

    std::optional<FileTime> time(platform::FileTicks FileInformation::*ticks)
    {
        const FileInformation* const found = information();
        return found != nullptr ? std::optional(detail::timeOfTicks(found->*ticks)) : std::nullopt;
    }

    WalkOptions options;
    detail::FailureList failures;
    detail::Wildcard pattern;
    bool showsAll;
    std::optional<detail::DiskFolder> place;
    std::optional<EntryStream> stream;
    std::optional<detail::Circles> circles;
    platform::FolderEntry entry;
    std::size_t depth = 1;
    std::uint64_t passed = 0;
    bool isStarted = false;
    bool isOver = false;
    bool isShown = false;
    bool isSkipped = false;
    bool isAsked = false;
    std::optional<FileInformation> asked;
};

String WalkEntry::name() const { return {TextView(m_data->entry.name)}; }

std::size_t WalkEntry::depth() const noexcept { return m_data->depth; }

WalkEntry::Kind WalkEntry::kind() const noexcept
{
    if (platform::isFolder(m_data->entry.kind)) return Kind::Folder;
    const bool isFile = m_data->entry.kind == platform::EntryKind::PLAIN_FILE || isLink();
    return isFile ? Kind::File : Kind::Other;
}

bool WalkEntry::isLink() const noexcept { return platform::isLink(m_data->entry.kind); }

std::optional<std::uint64_t> WalkEntry::size() const
{
    const FileInformation* const found = m_data->information();
    return found != nullptr ? std::optional(found->size) : std::nullopt;
}

std::optional<FileTime> WalkEntry::lastWriteTime() const { return m_data->time(&FileInformation::written); }

std::optional<FileTime> WalkEntry::creationTime() const { return m_data->time(&FileInformation::created); }

std::shared_ptr<const File> WalkEntry::file() const
{
    if (isFolder()) return nullptr;
    const OxaWindowsFileSystemDirectory folder(m_data->folder());
    return detail::makeFile(OxaWindowsFileSystemFile::fromCheckedName(folder, m_data->entry.name));
}

std::shared_ptr<const Directory> WalkEntry::directory() const
{
    if (!isFolder()) return nullptr;
    return detail::makeDirectory(detail::appendLevel(*m_data->folder(), m_data->entry.name));
}

std::shared_ptr<const FileSystemItem> WalkEntry::item() const
{
    if (isFolder()) return directory();
    return file();
}

String WalkEntry::fullName() const { return m_data->stream->way().fullName(m_data->entry.name, isFolder()); }

String WalkEntry::relativeName() const
{
    if (depth() == 1) return name();
    detail::ParsedDirectory path;
    path.levels.append(std::span(m_data->folder()->levels).subspan(m_data->place->absolute()->levels.size()));
    return detail::fullName(path, '\\', m_data->entry.name);
}

TreeWalk::TreeWalk(const Directory& folder, WalkOptions options)
    : m_data(std::make_unique<WalkEntry::Data>(folder, std::move(options))), m_entry(new WalkEntry(*m_data))
{
}

TreeWalk::~TreeWalk() = default;

TreeWalk::Iterator TreeWalk::begin()
{
    // Who is told of failures may have thrown on the way to an entry.
    if (!m_data->isShown && !m_data->isOver) advance();
    return Iterator(m_data->isShown ? this : nullptr);
}

bool TreeWalk::advance()
{
    WalkEntry::Data& data = *m_data;
    if (data.isOver) return false;
    if (!std::exchange(data.isStarted, true))
    {
        data.isOver = true;
        if (!data.open() || data.options.maxDepth == 0) return false;
        data.isOver = false;
    }
    else
    {
        data.isShown = false;
        data.descend();
    }
    for (;;)
    {
        data.isSkipped = data.isAsked = false;
        if (data.stream->next(data.entry))
        {
            ++data.passed;
            data.isShown = data.isWanted();
            if (data.isShown) return true;
            data.descend();
            continue;
        }
        const DWORD reason = platform::lastError();
        const String name = reason != platform::NO_MORE_FILES ? data.folderName() : String();
        data.isSkipped = true;
        data.isOver = data.depth == 1;
        if (!name.isNil()) data.fail("readFolder", name, reason);
        if (data.isOver || !data.ascend()) return false;
    }
}

void TreeWalk::skipBelow() noexcept { m_data->isSkipped = true; }

std::uint64_t TreeWalk::passed() const noexcept { return m_data->passed; }

const std::vector<Failure>& TreeWalk::failures() const noexcept { return m_data->failures.first(); }

std::uint64_t TreeWalk::failureCount() const noexcept { return m_data->failures.count(); }

std::uint64_t countEntries(const Directory& folder, const WalkOptions& options)
{
    WalkOptions all = options;
    all.pattern = {};
    all.kinds = WalkedKinds::All;
    all.order = WalkOrder::AsRead;
    all.onFailure = {};
    TreeWalk walk(folder, std::move(all));
    for (const WalkEntry& entry : walk) static_cast<void>(entry);
    return walk.passed();
}

}  // namespace Oxa_1_1
