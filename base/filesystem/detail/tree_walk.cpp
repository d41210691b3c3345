#include "base/filesystem/detail/tree_walk.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

/// So many of the innermost folders on a way stay open.
constexpr std::size_t OPEN_FOLDERS = 24;

}  // namespace

bool FolderContents::read(platform::OpenFolder& folder)
{
    platform::FolderEntry entry;
    while (folder.next(entry))
    {
        // That the system does not tell may have been but a moment.
        if (platform::isUnknown(entry.kind)) entry.kind = folder.readKind(entry.name).value_or(entry.kind);
        auto& list = platform::isFolder(entry.kind) ? m_folders : m_files;
        list.push_back({.begin = m_names.size(), .length = entry.name.size(), .kind = entry.kind});
        m_names += entry.name;
    }
    return platform::lastError() == platform::NO_MORE_FILES;
}

FolderWay::FolderWay(platform::OpenFolder top, SharedDirectory path)
{
    m_levels.push_back({.folder = std::move(top), .name = {}, .path = std::move(path)});
}

bool FolderWay::enter(TextView name, platform::Links links)
{
    platform::OpenFolder folder = current().open(name, links);
    if (!folder.isOpen()) return false;
    // From where a link leads to, there is no way back up.
    const bool isLink = links == platform::Links::FOLLOW && current().isLink(name);
    m_levels.push_back({.folder = std::move(folder), .name = Text(name), .wasLink = isLink});
    if (m_levels.size() <= OPEN_FOLDERS + 1) return true;
    Level& far = m_levels[m_levels.size() - 1 - OPEN_FOLDERS];
    if (!far.identity) far.identity = far.folder.identity();
    if (far.identity) far.folder.close();
    return true;
}

bool FolderWay::leave()
{
    const std::size_t above = m_levels.size() - 2;
    if (!m_levels[above].folder.isOpen() && !reopen(above)) return false;
    m_levels.pop_back();
    return true;
}

/// Whether what was opened again is what it was; if not, it is closed.
bool FolderWay::isSame(Level& level)
{
    if (!level.folder.isOpen()) return false;
    if (!level.identity) return true;
    const auto found = level.folder.identity();
    if (found == level.identity) return true;
    level.folder.close();
    return found && platform::failStep(EXCHANGED, "openFolder", level.name);
}

/// From the folder below it, or else on the way from the nearest one that is open.
bool FolderWay::reopen(std::size_t index)
{
    Level& wanted = m_levels[index];
    if (!m_levels[index + 1].wasLink)
    {
        wanted.folder = m_levels[index + 1].folder.openParent();
        if (isSame(wanted)) return true;
    }
    std::size_t i = index;
    while (!m_levels[i].folder.isOpen()) --i;
    while (i++ < index)
    {
        Level& level = m_levels[i];
        const auto links = level.wasLink ? platform::Links::FOLLOW : platform::Links::REFUSE;
        level.folder = m_levels[i - 1].folder.open(level.name, links);
        if (!isSame(level)) return false;
        const bool isOnWay = i > OPEN_FOLDERS && m_levels[i - OPEN_FOLDERS].identity.has_value();
        if (isOnWay) m_levels[i - OPEN_FOLDERS].folder.close();
    }
    return true;
}

std::optional<platform::FileIdentity> FolderWay::identityOf(const Level& level)
{
    return level.identity || !level.folder.isOpen() ? level.identity : level.folder.identity();
}

bool FolderWay::passes(const platform::FileIdentity& folder) const
{
    return std::ranges::any_of(m_levels, [&](const Level& level) { return identityOf(level) == folder; });
}

const SharedDirectory& FolderWay::path() const
{
    std::size_t known = depth();
    while (m_levels[known].path == nullptr) --known;
    for (; known < depth(); ++known)
        m_levels[known + 1].path = appendLevel(*m_levels[known].path, m_levels[known + 1].name);
    return m_levels.back().path;
}

String FolderWay::fullName(TextView entry, bool isFolder) const
{
    if (!isFolder) return detail::fullName(*path(), SEPARATOR, entry);
    return detail::fullName(*appendLevel(*path(), entry), SEPARATOR);
}

String FolderWay::longName(TextView entry) const { return detail::longName(*path(), entry); }

bool TreeVisitor::follows(FolderWay& /*way*/, TextView /*link*/) { return false; }

bool walkTree(FolderWay way, TreeVisitor& visitor)
{
    struct Level
    {
        FolderContents contents;
        std::size_t next = 0;
    };
    std::vector<Level> levels;
    const auto begin = [&]
    {
        FolderContents& contents = levels.emplace_back().contents;
        return contents.read(way.current()) && visitor.visit(way, contents);
    };
    if (!begin()) return false;
    for (;;)
    {
        Level& level = levels.back();
        if (level.next == level.contents.folders().size())
        {
            levels.pop_back();
            if (levels.empty()) return true;
            if (!way.leave()) return false;
            continue;
        }
        const auto& folder = level.contents.folders()[level.next++];
        const TextView name = level.contents.nameOf(folder);
        if (folder.isLink() && !visitor.follows(way, name)) continue;
        if (way.enter(name, folder.isLink() ? platform::Links::FOLLOW : platform::Links::REFUSE))
        {
            if (!begin()) return false;
        }
        else if (!saysMissing(platform::lastError()) || way.current().readInformation(name))
        {
            return false;
        }
    }
}

}  // namespace Oxa_1_1::detail
