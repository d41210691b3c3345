#include "base/filesystem/detail/tree_copy.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::EntryKind;
using platform::Links;

/// As for a path that makes no sense.

}  // namespace

Place makePlace(FolderWay& way, TextView name, const ParsedDirectory& path)
{
    if (!path.absolute)
    {
        reportText(OXA_TEXT("The drive or network share '%ls' does not exist or is inaccessible."), path.root);
        platform::failStep(platform::INVALID_PARAMETER, "createFolder", way.fullName(name, true));
        return Place::FAILED;
    }
    if (way.current().makeFolder(name)) return Place::MADE;
    if (platform::lastError() == platform::ALREADY_EXISTS) return Place::FOUND;
    platform::KeptFailure reason;
    reportFailure(OXA_TEXT("Failed to create the directory '%ls'.\r\nWindows error message: %ls"),
                  way.fullName(name, true));
    reason.restore();
    return Place::FAILED;
}

TreeCopy::TreeCopy(FolderWay source, const ParsedDirectory& sourcePath, FolderWay target,
                   const ParsedDirectory& targetPath)
    : m_source(std::move(source)), m_target(std::move(target)), m_targetPath(targetPath), m_circles(sourcePath)
{
}

void TreeCopy::setProgress(std::shared_ptr<IProgress> progress)
{
    m_progress = std::move(progress);
    if (m_progress == nullptr) return;
    m_report = [this](std::uint64_t done, std::uint64_t total)
    { m_progress->onProgress(static_cast<double>(done) * 100.0 / static_cast<double>(total)); };
}

bool TreeCopy::run(bool isTargetMade)
{
    if (!notePlace(false) || !begin(isTargetMade, true)) return false;
    while (!m_levels.empty())
    {
        Level& level = m_levels.back();
        if (level.next < level.contents.folders().size())
        {
            const FolderContents::Entry folder = level.contents.folders()[level.next++];
            if (!copyFolder(level.contents, folder)) return false;
        }
        else if (!end())
        {
            return false;
        }
    }
    return true;
}

bool TreeCopy::begin(bool isMade, bool withContents)
{
    if (isMade) m_target.current().takePermissions(m_source.current(), platform::OwnerAccess::FULL);
    Level& level = m_levels.emplace_back();
    level.isMade = isMade;
    return !withContents || level.contents.read(m_source.current());
}

bool TreeCopy::end()
{
    const Level& level = m_levels.back();
    for (const auto& file : level.contents.files())
        if (!copyFile(level.contents, file)) return false;
    if (level.isMade) m_target.current().takePermissions(m_source.current(), platform::OwnerAccess::AS_GIVEN);
    if (!level.isMade) m_places.pop_back();
    m_levels.pop_back();
    return m_levels.empty() || (m_source.leave() && m_target.leave());
}

bool TreeCopy::copyFolder(const FolderContents& contents, const FolderContents::Entry& folder)
{
    const TextView name = contents.nameOf(folder);
    const bool isLink = folder.kind == EntryKind::FOLDER_LINK;
    const Place place = makePlace(m_target, name, m_targetPath);
    if (place == Place::FAILED && !m_overwrites) return false;
    const bool withContents = m_isRecursive && !(isLink && m_circles.closesAt(m_source, name));
    const bool isMade = place == Place::MADE;
    std::optional<platform::KeptFailure> refusal;
    if (place == Place::FAILED) refusal.emplace();
    // Where a file stands, there is no folder in spite of all.
    if (!m_target.enter(name, isMade ? Links::REFUSE : Links::FOLLOW))
        return !withContents || (refusal && refusal->restore());
    if (!m_source.enter(name, isLink ? Links::FOLLOW : Links::REFUSE)) return !withContents && m_target.leave();
    if (!notePlace(isMade)) return false;
    return !(withContents && goesIntoItself(isLink)) && begin(isMade, withContents);
}

bool TreeCopy::notePlace(bool isMade)
{
    if (isMade) return true;
    const auto place = m_target.current().identity();
    if (place) m_places.push_back(*place);
    return place.has_value();
}

bool TreeCopy::goesIntoItself(bool throughLink)
{
    const auto own = m_source.current().identity();
    if (!own) return false;
    // Behind a link, what is copied may lie anywhere in the target.
    const auto places = throughLink ? m_source.current().ancestry() : std::vector{*own};
    m_cameToItself = places.empty() || std::ranges::find_first_of(places, m_places) != places.end();
    if (m_cameToItself)
        platform::failStep(places.empty() ? platform::lastError() : platform::INVALID_PARAMETER, "copyFolder",
                           fullName(*m_source.path(), SEPARATOR), fullName(*m_target.path(), SEPARATOR));
    return m_cameToItself;
}

bool TreeCopy::copyFile(const FolderContents& contents, const FolderContents::Entry& file)
{
    const TextView name = contents.nameOf(file);
    platform::OpenFolder& source = m_source.current();
    platform::OpenFolder& target = m_target.current();
    if (m_progress != nullptr) m_progress->onItem(String(name).stringUTF8());
    if (source.copyFile(name, file.kind, target, name, !m_overwrites, m_report)) return true;
    platform::KeptFailure reason;
    const auto leadsNowhere = [name](const platform::OpenFolder& folder)
    { return folder.isLink(name) && !folder.readInformation(name) && saysLost(platform::lastError()); };
    const bool isLost = file.isLink() && leadsNowhere(source);
    // There is no content, so the link itself is copied; content of others does not give way to it.
    if (isLost && source.copyLink(name, target, name, !m_overwrites || !leadsNowhere(target)))
    {
        if (m_report) m_report(0, 0);
        return true;
    }
    return isLost ? false : reason.restore();
}

}  // namespace Oxa_1_1::detail
