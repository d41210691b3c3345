#include "base/filesystem/detail/tree_move.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/tree_copy.h"
#include "base/filesystem/detail/tree_removal.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::FileIdentity;
using platform::Links;
using platform::OpenFolder;

namespace
{

bool failWith(DWORD code, const FolderWay& place)
{
    return platform::failStep(code, "moveFolder", fullName(*place.path(), SEPARATOR));
}

/// Whether the entry is a link to what stands in the target: put in its place, it would lead to itself.
bool leadsToItsPlace(const OpenFolder& source, const OpenFolder& target, TextView name)
{
    if (!source.isLink(name) || target.isLink(name)) return false;
    const auto identity = source.readIdentity(name);
    return identity && identity == target.readIdentity(name);
}

bool replaceByRenaming(const OpenFolder& source, const OpenFolder& target, TextView name)
{
    if (leadsToItsPlace(source, target, name))
    {
        platform::setLastError(platform::ALREADY_EXISTS);
        return false;
    }
    const auto information = target.readInformation(name);
    const bool isFolder = information && (information->attributes & platform::FOLDER) != 0;
    if (isFolder && !target.removeFolder(name)) return false;
    return source.rename(name, target, name, false);
}

}  // namespace

/// What a walk does in each folder of the tree that was read.
class TreeMove::Step
{
   public:
    explicit Step(TreeMove& move) : m_move(move) {}
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    virtual ~Step() = default;

    virtual bool begin(Folder& folder) = 0;
    virtual bool end(Folder& /*folder*/) { return true; }
    /// Goes from the target's current folder into the one of this name; none when there is nothing to do in it.
    virtual std::optional<bool> enterTarget(const Folder& folder, TextView name) = 0;
    virtual bool leaveTarget() { return true; }
    virtual bool goesBackwards() const { return false; }

   protected:
    OpenFolder& source() { return m_move.m_source.current(); }
    TreeMove& m_move;
};

/// Looks for places in the target that are folders to be moved themselves.
class TreeMove::CheckStep final : public Step
{
   public:
    CheckStep(TreeMove& move, FolderWay& target) : Step(move), m_target(target)
    {
        for (const Folder& folder : move.m_folders) m_moved.push_back(keyOf(folder.identity));
        std::ranges::sort(m_moved);
    }

    bool begin(Folder& /*folder*/) override
    {
        const auto place = m_target.current().identity();
        return place &&
               (!std::ranges::binary_search(m_moved, keyOf(*place)) || failWith(platform::INVALID_PARAMETER, m_target));
    }
    std::optional<bool> enterTarget(const Folder& /*folder*/, TextView name) override
    {
        if (m_target.enter(name, m_move.m_links)) return true;
        return std::nullopt;
    }
    bool leaveTarget() override { return m_target.leave(); }

   private:
    using Key = std::pair<std::uint64_t, std::uint64_t>;
    static Key keyOf(const FileIdentity& identity) { return {identity.volume, identity.index}; }

    FolderWay& m_target;
    std::vector<Key> m_moved;
};

/// Makes the places of all folders, and moves the links to folders.
class TreeMove::MakeStep final : public Step
{
   public:
    MakeStep(TreeMove& move, FolderWay& target, const ParsedDirectory& path)
        : Step(move), m_target(target), m_path(path)
    {
    }

    bool begin(Folder& folder) override
    {
        if (folder.isMade) m_target.current().takePermissions(source(), platform::OwnerAccess::FULL);
        std::size_t inside = 0;
        for (const auto& entry : folder.contents.folders())
        {
            const TextView name = folder.contents.nameOf(entry);
            if (entry.isLink() ? !source().rename(name, m_target.current(), name, true)
                               : !make(m_move.m_folders[folder.inside[inside++]], name))
                return false;
        }
        return true;
    }
    std::optional<bool> enterTarget(const Folder& folder, TextView name) override
    {
        return m_target.enter(name, m_move.linksTo(folder));
    }
    bool leaveTarget() override { return m_target.leave(); }

   private:
    /// False also for a file that is in the way.
    bool make(Folder& folder, TextView name)
    {
        const auto isThere = [&]
        {
            const auto information = m_target.current().readInformation(name);
            return information && (information->attributes & platform::FOLDER) != 0;
        };
        if (!m_path.absolute && isThere()) return true;
        const Place place = makePlace(m_target, name, m_path);
        folder.isMade = place == Place::MADE;
        return folder.isMade || (place == Place::FOUND && isThere());
    }

    FolderWay& m_target;
    const ParsedDirectory& m_path;
};

class TreeMove::FileStep final : public Step
{
   public:
    FileStep(TreeMove& move, FolderWay& target) : Step(move), m_target(target) {}

    bool begin(Folder& folder) override
    {
        return std::ranges::all_of(folder.contents.files(),
                                   [&](const auto& file) { return moveFile(folder.contents.nameOf(file)); });
    }
    bool end(Folder& folder) override
    {
        if (folder.isMade) m_target.current().takePermissions(source(), platform::OwnerAccess::AS_GIVEN);
        return true;
    }
    std::optional<bool> enterTarget(const Folder& folder, TextView name) override
    {
        return m_target.enter(name, m_move.linksTo(folder));
    }
    bool leaveTarget() override { return m_target.leave(); }

   private:
    bool moveFile(TextView name)
    {
        OpenFolder& target = m_target.current();
        if (source().rename(name, target, name, true)) return true;
        const DWORD reason = platform::lastError();
        const bool isTaken = reason == platform::ALREADY_EXISTS || reason == platform::FILE_EXISTS;
        if (isTaken && !m_move.m_overwrites) return false;
        if (isTaken && replaceByRenaming(source(), target, name)) return true;
        const String from = m_move.m_source.longName(name);
        const String to = m_target.longName(name);
        platform::noteFailedStep("renameFile", from, to);
        return reportFailedMove(from, to);
    }

    FolderWay& m_target;
};

/// Removes the folders, the last first. What came meanwhile stays, and what it lies in.
class TreeMove::RemoveStep final : public Step
{
   public:
    using Step::Step;
    bool begin(Folder& /*folder*/) override { return true; }
    bool end(Folder& folder) override
    {
        for (std::size_t i = folder.entries.size(); i-- > 0;)
            if (!remove(folder.contents.nameOf(folder.contents.folders()[folder.entries[i]]))) return false;
        return true;
    }
    std::optional<bool> enterTarget(const Folder& folder, TextView /*name*/) override
    {
        if (folder.inside.empty()) return std::nullopt;
        return true;
    }
    bool goesBackwards() const override { return true; }

   private:
    bool remove(TextView name)
    {
        if (source().removeFolder(name) || saysMissing(platform::lastError())) return true;
        reportFolderThatStays(m_move.m_source.fullName(name, true));
        return false;
    }
};

TreeMove::TreeMove(FolderWay source, bool overwrite) : m_source(std::move(source)), m_overwrites(overwrite) {}

bool TreeMove::addCurrent(const Destination* destination)
{
    Folder& folder = m_folders.emplace_back();
    const auto identity = m_source.current().identity();
    if (!identity || !folder.contents.read(m_source.current())) return false;
    folder.identity = *identity;
    for (std::size_t i = 0; i < folder.contents.folders().size(); ++i)
        if (!folder.contents.folders()[i].isLink()) folder.entries.push_back(i);
    return destination == nullptr || canGetTo(*destination, folder);
}

/// Of the current folder.
bool TreeMove::canGetTo(const Destination& destination, const Folder& folder)
{
    const auto& files = folder.contents.files();
    const bool hasLinks = folder.entries.size() < folder.contents.folders().size();
    if ((files.empty() && !hasLinks) || m_source.current().canRenameTo(destination.nearest)) return true;
    if (files.empty()) return false;
    const ParsedDirectory& from = *m_source.path();
    ParsedDirectory to = *destination.place.path();
    to.levels.append(std::span(from.levels).last(m_source.depth()));
    const TextView name = folder.contents.nameOf(files.front());
    platform::noteFailedStep("renameFile", longName(from, name), longName(to, name));
    return reportFailedMove(longName(from, name), longName(to, name));
}

bool TreeMove::readSource(const Destination* destination)
{
    if (!addCurrent(destination)) return false;
    std::vector<std::size_t> open{0};
    while (!open.empty())
    {
        Folder& folder = m_folders[open.back()];
        const std::size_t next = folder.inside.size();
        if (next == folder.entries.size())
        {
            open.pop_back();
            if (!open.empty() && !m_source.leave()) return false;
            continue;
        }
        const TextView name = folder.contents.nameOf(folder.contents.folders()[folder.entries[next]]);
        if (!m_source.enter(name, Links::REFUSE)) return false;
        open.push_back(m_folders.size());
        folder.inside.push_back(m_folders.size());
        if (!addCurrent(destination)) return false;
    }
    return true;
}

bool TreeMove::walk(Step& step)
{
    struct Level
    {
        std::size_t folder;
        std::size_t next = 0;
    };
    std::vector<Level> levels{{.folder = 0}};
    if (!step.begin(m_folders.front())) return false;
    for (;;)
    {
        Level& level = levels.back();
        Folder& folder = m_folders[level.folder];
        if (level.next == folder.inside.size())
        {
            if (!step.end(folder)) return false;
            levels.pop_back();
            if (levels.empty()) return true;
            if (!m_source.leave() || !step.leaveTarget()) return false;
            continue;
        }
        const std::size_t i = step.goesBackwards() ? folder.inside.size() - 1 - level.next : level.next;
        ++level.next;
        const std::size_t below = folder.inside[i];
        const TextView name = folder.contents.nameOf(folder.contents.folders()[folder.entries[i]]);
        const std::optional<bool> isEntered = step.enterTarget(m_folders[below], name);
        if (!isEntered) continue;
        if (!*isEntered || !m_source.enter(name, Links::REFUSE)) return false;
        // Somebody may have put another folder in its place.
        const auto found = m_source.current().identity();
        if (found != m_folders[below].identity) return found && failWith(EXCHANGED, m_source);
        levels.push_back({.folder = below});
        if (!step.begin(m_folders[below])) return false;
    }
}

bool TreeMove::run(FolderWay target, const ParsedDirectory& targetPath, Target kind)
{
    m_folders.front().isMade = kind == Target::MADE;
    m_links = kind == Target::FOUND ? Links::FOLLOW : Links::REFUSE;
    if (kind != Target::MADE)
    {
        CheckStep check(*this, target);
        if (!walk(check)) return false;
    }
    MakeStep make(*this, target, targetPath);
    if (!walk(make)) return false;
    FileStep files(*this, target);
    if (!walk(files)) return false;
    RemoveStep removal(*this);
    return walk(removal);
}

}  // namespace Oxa_1_1::detail
