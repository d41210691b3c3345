#include <optional>
#include <utility>
#include <vector>

#include "base/filesystem/detail/circles.h"
#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/list_scope.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/tree_walk.h"
#include "base/filesystem/detail/wildcard.h"
#include "base/filesystem/windows/detail/folder_list.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::Links;

class TreeList
{
   public:
    TreeList(platform::OpenFolder top, const SharedDirectory& path, const String& pattern, std::span<const Kinds> kinds,
             ItemReceiver& receiver)
        : m_top(path),
          m_way(std::move(top), path),
          m_circles(*path, Circles::Above::BY_PATH),
          m_pattern(pattern),
          m_wildcard(pattern),
          m_kinds(kinds),
          m_receiver(receiver)
    {
    }

    void run()
    {
        visit(m_top);
        while (!m_levels.empty())
        {
            Level& level = m_levels.back();
            if (level.next < level.folders.size())
            {
                enter(level, level.folders[level.next++]);
                continue;
            }
            m_levels.pop_back();
            if (!m_levels.empty() && !m_way.leave()) return ListScope::setPartial();
        }
    }

   private:
    struct Folder
    {
        std::size_t begin;
        std::size_t length;
        bool isLink;
        /// Null when it is not in the list.
        SharedDirectory path;
    };
    struct Level
    {
        Text names;
        std::vector<Folder> folders;
        std::size_t next = 0;
    };

    void enter(const Level& level, const Folder& folder)
    {
        const TextView name = TextView(level.names).substr(folder.begin, folder.length);
        if (folder.isLink && m_circles.closesAt(m_way, name)) return;
        if (m_way.enter(name, folder.isLink ? Links::FOLLOW : Links::REFUSE))
            visit(folder.path);
        else if (!saysMissing(platform::lastError()))
            ListScope::setPartial();
    }

    /// The current folder: what there is of each kind, then the folders to go on in.
    void visit(SharedDirectory path)
    {
        m_isRead = false;
        m_path = std::move(path);
        m_listed.clear();
        for (const Kinds kinds : m_kinds)
            if (checkSearchString(m_pattern)) list(kinds);
        Level& level = m_levels.emplace_back();
        auto listed = m_listed.begin();
        read(platform::EntryKinds::FOLDERS,
             [&](const platform::FolderEntry& entry)
             {
                 if (!isValidFileName(entry.name)) return;
                 level.folders.push_back({.begin = level.names.size(),
                                          .length = entry.name.size(),
                                          .isLink = platform::isLink(entry.kind),
                                          .path = nullptr});
                 level.names += entry.name;
                 // The order is the same again.
                 if (listed != m_listed.end() && (*listed)->levels.back().view() == entry.name)
                     level.folders.back().path = std::move(*listed++);
             });
    }

    void list(Kinds kinds)
    {
        std::optional<ItemMaker> maker;
        read(kinds == Kinds::FILES ? platform::EntryKinds::FILES : platform::EntryKinds::FOLDERS,
             [&](const platform::FolderEntry& entry)
             {
                 if (!m_wildcard.matches(entry.name)) return;
                 // Many folders hold nothing that is wanted, and need no path.
                 if (m_path == nullptr) m_path = m_way.path();
                 if (!maker) maker.emplace(m_path, kinds);
                 take(*maker, entry);
             });
    }

    void take(const ItemMaker& maker, const platform::FolderEntry& entry)
    {
        if (!platform::isFolder(entry.kind) || !isValidFileName(entry.name)) return maker.make(entry, m_receiver);
        auto path = m_listed.emplace_back(maker.pathOf(entry.name));
        m_receiver.take(makeDirectory(std::move(path)), platform::isLink(entry.kind));
    }

    template <class Take>
    void read(platform::EntryKinds kinds, const Take& take)
    {
        platform::OpenFolder& folder = m_way.current();
        if (std::exchange(m_isRead, true) && !folder.rewind()) return ListScope::setPartial();
        while (folder.next(m_entry, kinds))
        {
            const bool isUnknown = platform::isUnknown(m_entry.kind);
            if (isUnknown) ListScope::setUnsure();
            if (!isUnknown || kinds != platform::EntryKinds::FOLDERS) take(m_entry);
        }
        if (platform::lastError() != platform::NO_MORE_FILES) ListScope::setPartial();
    }

    const SharedDirectory& m_top;
    FolderWay m_way;
    Circles m_circles;
    const String& m_pattern;
    Wildcard m_wildcard;
    std::span<const Kinds> m_kinds;
    ItemReceiver& m_receiver;
    std::vector<Level> m_levels;
    platform::FolderEntry m_entry;
    // Of the current folder.
    /// Null until it is needed.
    SharedDirectory m_path;
    /// Of the folders in it that are in the list.
    std::vector<SharedDirectory> m_listed;
    bool m_isRead = false;
};

}  // namespace

void listTree(const SharedDirectory& top, const String& pattern, std::span<const Kinds> kinds, ItemReceiver& receiver)
{
    auto folder = platform::OpenFolder::at(readablePath(*top), Links::FOLLOW);
    if (folder.isOpen()) return TreeList(std::move(folder), top, pattern, kinds, receiver).run();
    if (!saysMissing(platform::lastError())) ListScope::setPartial();
    for (std::size_t i = 0; i < kinds.size(); ++i) checkSearchString(pattern);
}

}  // namespace Oxa_1_1::detail
