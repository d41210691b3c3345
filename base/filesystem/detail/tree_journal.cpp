#include "base/filesystem/detail/tree_journal.h"

#include <algorithm>
#include <utility>

#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

/// Goes from folder to folder of the journal, on both sides at once.
class TreeJournal::Visit
{
   public:
    Visit(const TreeJournal& journal, FolderWay& target, FolderWay* source)
        : m_journal(journal), m_target(target), m_source(source)
    {
    }

    /// False, with the last error, when it cannot be reached any more.
    bool goTo(std::size_t folder)
    {
        if (m_isLost) return false;
        std::vector<std::size_t> way;
        for (std::size_t i = folder; i != TOP; i = m_journal.m_folders[i].above) way.push_back(i);
        std::ranges::reverse(way);
        const auto common = std::ranges::mismatch(m_way, way).in1 - m_way.begin();
        while (static_cast<std::ptrdiff_t>(m_way.size()) > common)
            if (!leave()) return false;
        while (m_way.size() < way.size())
            if (!enter(way[m_way.size()])) return false;
        return true;
    }

   private:
    bool enter(std::size_t i)
    {
        const Folder& folder = m_journal.m_folders[i];
        if (!m_target.enter(folder.name, platform::Links::REFUSE)) return false;
        const bool isSame = folder.identity && m_target.current().identity() == folder.identity;
        if (!isSame) platform::setLastError(platform::INVALID_HANDLE);
        const bool isEntered = isSame && (m_source == nullptr || !folder.isOfSource ||
                                          m_source->enter(folder.name, platform::Links::REFUSE));
        if (!isEntered)
        {
            const DWORD reason = platform::lastError();
            m_target.leave();
            platform::setLastError(reason);
            return false;
        }
        // It may have the permissions of the source by now.
        if (folder.isMade) m_target.current().unlock();
        m_way.push_back(i);
        return true;
    }

    bool leave()
    {
        const bool isOfSource = m_journal.m_folders[m_way.back()].isOfSource;
        m_isLost = !m_target.leave() || (m_source != nullptr && isOfSource && !m_source->leave());
        m_way.pop_back();
        return !m_isLost;
    }

    const TreeJournal& m_journal;
    FolderWay& m_target;
    FolderWay* m_source;
    std::vector<std::size_t> m_way;
    /// There was no way back up.
    bool m_isLost = false;
};

namespace
{

using platform::OpenFolder;
using platform::ReadOnlyFiles;

bool takeBack(const TreeJournal::Record& record, const OpenFolder& target, const OpenFolder* source)
{
    const auto identity = target.readOwnIdentity(record.name);
    if (!identity) return false;
    if (!record.identity || identity != record.identity)
    {
        platform::setLastError(platform::INVALID_HANDLE);
        return false;
    }
    switch (record.kind)
    {
        case TreeJournal::Kind::MADE_FOLDER:
            return target.removeFolder(record.name);
        case TreeJournal::Kind::COPIED:
            return record.aside.empty() ? target.deleteFile(record.name, ReadOnlyFiles::GO)
                                        : target.replace(record.aside, target, record.name, ReadOnlyFiles::GO);
        default:
            return source != nullptr && target.rename(record.name, *source, record.sourceName, true) &&
                   (record.aside.empty() || target.rename(record.aside, target, record.name, true));
    }
}

}  // namespace

std::size_t TreeJournal::addFolder(std::size_t above, TextView name, bool isMade, bool isOfSource,
                                   const OpenFolder& folder)
{
    m_folders.push_back({.above = above,
                         .name = Text(name),
                         .isMade = isMade,
                         .isOfSource = isOfSource,
                         .identity = folder.identity()});
    if (isMade) add({Kind::MADE_FOLDER, above, Text(name), {}, {}, m_folders.back().identity});
    return m_folders.size() - 1;
}

bool TreeJournal::undo(FolderWay& target, FolderWay* source, TreeWork& work)
{
    Visit visit(*this, target, source);
    bool isDone = true;
    for (; !m_records.empty(); m_records.pop_back())
    {
        const Record& record = m_records.back();
        if (visit.goTo(record.folder) &&
            takeBack(record, target.current(), source != nullptr ? &source->current() : nullptr))
            continue;
        isDone = false;
        work.fail("rollBack", target.fullName(record.name));
    }
    return isDone;
}

bool TreeJournal::commit(FolderWay& target, TreeWork& work)
{
    Visit visit(*this, target, nullptr);
    bool isChanged = false;
    for (const Record& record : m_records)
    {
        if (record.aside.empty()) continue;
        if (visit.goTo(record.folder) && target.current().deleteFile(record.aside, ReadOnlyFiles::GO))
        {
            isChanged = true;
            continue;
        }
        work.fail("deleteFile", target.fullName(record.aside));
        if (!isChanged) break;
    }
    while (!isChanged && target.depth() != 0)
        if (!target.leave()) return true;
    return isChanged || !work.hasFailed();
}

}  // namespace Oxa_1_1::detail
