#include "base/filesystem/detail/entry_stream.h"

#include <utility>

#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

/// Fewer than the way keeps open.
constexpr std::size_t STREAMED_FOLDERS = 16;
/// As the system does in one path. From what a link leads to there is no way back up, so all of them stay open.
constexpr std::size_t MOST_LINKS = 40;

}  // namespace

EntryStream::EntryStream(FolderWay way) : m_way(std::move(way)) { m_levels.push_back({.folder = m_way.current()}); }

bool EntryStream::next(platform::FolderEntry& entry)
{
    Level& level = m_levels.back();
    if (!level.isKept) return level.folder.next(entry);
    const auto& folders = level.rest.folders();
    const auto& files = level.rest.files();
    const FolderContents::Entry* found = nullptr;
    if (level.nextFolder < folders.size())
        found = &folders[level.nextFolder++];
    else if (level.nextFile < files.size())
        found = &files[level.nextFile++];
    if (found == nullptr)
    {
        platform::setLastError(level.end);
        return false;
    }
    entry.name = level.rest.nameOf(*found);
    entry.kind = found->kind;
    return true;
}

void EntryStream::keepRest(Level& level)
{
    if (level.isKept) return;
    level.isKept = true;
    level.rest.read(level.folder);
    level.end = platform::lastError();
    level.folder.close();
}

bool EntryStream::enter(TextView name, platform::Links links)
{
    const bool isLink = links == platform::Links::FOLLOW;
    if (isLink && m_links == MOST_LINKS)
    {
        platform::setLastError(platform::TOO_MANY_LINKS);
        return false;
    }
    if (m_levels.size() >= STREAMED_FOLDERS) keepRest(m_levels[m_levels.size() - STREAMED_FOLDERS]);
    if (!m_way.enter(name, links)) return false;
    m_levels.push_back({.folder = m_way.current(), .isLink = isLink});
    m_links += isLink ? 1 : 0;
    return true;
}

bool EntryStream::leave()
{
    if (!m_way.leave()) return false;
    m_links -= m_levels.back().isLink ? 1 : 0;
    m_levels.pop_back();
    return true;
}

}  // namespace Oxa_1_1::detail
