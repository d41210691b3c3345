#include "base/filesystem/detail/disk_tree.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/path_text.h"
#include "base/filesystem/detail/tree_copy.h"
#include "base/filesystem/detail/tree_move.h"
#include "base/filesystem/detail/tree_removal.h"
#include "base/filesystem/file.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::FileIdentity;
using platform::Links;
using platform::OpenFolder;

bool refuseCopy(const DiskFolder& from, const DiskFolder& to)
{
    return platform::failStep(platform::INVALID_PARAMETER, "copyFolder", fullName(from.written(), SEPARATOR),
                              fullName(to.written(), SEPARATOR));
}

bool refuseMove(DWORD code, const DiskFolder& from, const DiskFolder& to)
{
    return platform::failStep(code, "moveFolder", fullName(from.written(), SEPARATOR),
                              fullName(to.written(), SEPARATOR));
}

class SizeVisitor final : public TreeVisitor
{
   public:
    SizeVisitor(const ParsedDirectory& top, unsigned long long& bytes) : m_circles(top), m_bytes(bytes) {}

    bool visit(FolderWay& way, const FolderContents& contents) override
    {
        return std::ranges::all_of(contents.files(), [&](const auto& file) { return add(way, contents.nameOf(file)); });
    }
    bool follows(FolderWay& way, TextView link) override { return !m_circles.closesAt(way, link); }

   private:
    bool add(FolderWay& way, TextView name)
    {
        const auto information = way.current().readInformation(name);
        // A link that leads nowhere is there, and holds nothing.
        if (!information) return way.current().isLink(name);
        m_bytes += information->size;
        // What became a folder has not been looked into.
        return (information->attributes & platform::FOLDER) == 0;
    }

    Circles m_circles;
    unsigned long long& m_bytes;
};

/// What the links of a tree lead to.
class LinkVisitor final : public TreeVisitor
{
   public:
    bool visit(FolderWay& way, const FolderContents& contents) override
    {
        const auto isNoted = [&](const auto& entry) { return note(way, contents, entry); };
        return std::ranges::all_of(contents.folders(), isNoted) && std::ranges::all_of(contents.files(), isNoted);
    }
    const std::vector<FileIdentity>& found() const noexcept { return m_found; }

   private:
    bool note(FolderWay& way, const FolderContents& contents, const FolderContents::Entry& entry)
    {
        if (!entry.isLink()) return true;
        const auto target = way.current().readIdentity(contents.nameOf(entry));
        if (target) m_found.push_back(*target);
        return target || saysMissing(platform::lastError());
    }

    std::vector<FileIdentity> m_found;
};

/// Ends the walk when it finds one of these.
class SearchVisitor final : public TreeVisitor
{
   public:
    explicit SearchVisitor(const std::vector<FileIdentity>& wanted) : m_wanted(wanted) {}
    bool visit(FolderWay& way, const FolderContents& contents) override
    {
        const auto isWanted = [&](const auto& entry)
        { return !entry.isLink() && contains(m_wanted, way.current().readIdentity(contents.nameOf(entry))); };
        return std::ranges::none_of(contents.folders(), isWanted) && std::ranges::none_of(contents.files(), isWanted);
    }

   private:
    const std::vector<FileIdentity>& m_wanted;
};

/// Whether there is something that is no folder.
bool isTakenByFile(const Directory& place)
{
    const auto parent = place.getParent();
    const auto file = parent != nullptr ? File::fromString(*parent, place.getName()) : nullptr;
    return file != nullptr && file->exists();
}

/// Of what was made only now, even what is read-only goes.
void removeMade(const DiskFolder& place, OpenTarget target)
{
    removeTreeContents(place.way(std::move(target.folder)), true, platform::ReadOnlyFiles::GO);
    if (!target.parent.removeFolder(place.absolute()->levels.back()))
        reportFolderThatStays(fullName(*place.absolute(), SEPARATOR));
}

/// Whether a link in one folder can come to another place without anything being lost.
bool canMoveLink(const OpenFolder& led, const OpenFolder& holder, const OpenFolder& target)
{
    const auto aboveLink = holder.ancestry();
    const auto aboveLed = led.ancestry();
    if (aboveLink.empty() || aboveLed.empty()) return false;
    if (!target.isOpen()) return true;
    const auto place = target.identity();
    return place && !contains(aboveLink, place) && !contains(aboveLed, place);
}

}  // namespace

bool isOnDisk(const Directory& folder) noexcept { return windowsImpl(folder) != nullptr && areOwnCreatorsFirst(); }

void emptyOnDisk(const Directory& folder, bool recursive)
{
    const DiskFolder place(folder);
    OpenFolder top = place.open(Links::REFUSE);
    platform::forgetFailedStep();
    if (top.isOpen()) removeTreeContents(place.way(std::move(top)), recursive, platform::ReadOnlyFiles::STAY);
}

bool sizeOnDisk(const Directory& folder, unsigned long long& bytes)
{
    const DiskFolder place(folder);
    OpenFolder top = place.open(Links::FOLLOW);
    if (!top.isOpen()) return saysMissing(platform::lastError()) && !folder.exists();
    SizeVisitor visitor(*place.absolute(), bytes);
    return walkTree(place.way(std::move(top)), visitor);
}

bool copyContentsOnDisk(const Directory& source, const Directory& target, bool recursive, bool overwrite,
                        std::shared_ptr<IProgress> progress)
{
    const DiskFolder from(source);
    const DiskFolder to(target);
    OpenFolder fromTop = from.open(Links::FOLLOW);
    OpenFolder toTop = fromTop.isOpen() ? to.open(Links::FOLLOW) : OpenFolder();
    if (!toTop.isOpen()) return false;
    const auto identity = fromTop.identity();
    if (toTop.identity() == identity) return refuseCopy(from, to);
    const auto places = toTop.ancestry();
    if (places.empty() || (recursive && contains(places, identity))) return refuseCopy(from, to);
    TreeCopy copy(from.way(std::move(fromTop)), *from.absolute(), to.way(std::move(toTop)), to.written());
    copy.setRecursive(recursive);
    copy.setOverwrite(overwrite);
    copy.setProgress(std::move(progress));
    return copy.run(false);
}

bool copyOnDisk(const Directory& source, const Directory& copy, bool overwrite, std::shared_ptr<IProgress> progress)
{
    const DiskFolder from(source);
    const DiskFolder to(copy);
    OpenFolder fromTop = from.open(Links::FOLLOW);
    if (!fromTop.isOpen()) return false;
    const auto places = ancestryOfNearest(to);
    if (places.empty() || contains(places, fromTop.identity())) return refuseCopy(from, to);
    if (!to.written().absolute) return copy.create();
    OpenTarget target = openOrMake(copy);
    if (!target.folder.isOpen()) return false;

    bool cameToItself = false;
    {
        TreeCopy work(from.way(std::move(fromTop)), *from.absolute(), to.way(target.folder), to.written());
        work.setOverwrite(overwrite);
        work.setProgress(std::move(progress));
        if (work.run(target.isMade)) return true;
        cameToItself = work.cameToItself();
    }
    // Why it failed counts, not what became of the rest.
    platform::KeptFailure reason;
    const bool isMade = target.isMade;
    if (isMade)
    {
        removeMade(to, std::move(target));
    }
    else
    {
        target = {};
        // What was there before is no half-made copy when the source is part of it, nor is the target itself.
        if (!cameToItself && !isDots(copy.getName()) && !mayLieIn(source, copy)) copy.remove(true);
    }
    return reason.restore();
}

bool mayLieIn(const Directory& source, const Directory& folder)
{
    const DiskFolder from(source);
    const DiskFolder to(folder);
    const OpenFolder sourceTop = from.open(Links::FOLLOW);
    const OpenFolder folderTop = to.open(Links::FOLLOW);
    if (!sourceTop.isOpen() || !folderTop.isOpen()) return true;
    const auto aboveSource = sourceTop.ancestry();
    if (aboveSource.empty() || contains(aboveSource, folderTop.identity())) return true;
    LinkVisitor links;
    if (!walkTree(from.way(sourceTop), links)) return true;
    if (links.found().empty()) return false;
    const auto above = folderTop.ancestry();
    if (above.empty() || std::ranges::find_first_of(above, links.found()) != above.end()) return true;
    SearchVisitor search(links.found());
    return !walkTree(to.way(folderTop), search);
}

bool moveContentsOnDisk(const Directory& source, const Directory& target, bool overwrite)
{
    const DiskFolder from(source);
    const DiskFolder to(target);
    OpenFolder fromTop = from.open(Links::REFUSE);
    if (!fromTop.isOpen()) return false;
    const OpenFolder nearest = to.openNearest();
    const auto places = nearest.isOpen() ? nearest.ancestry() : std::vector<FileIdentity>();
    if (places.empty() || contains(places, fromTop.identity()))
        return refuseMove(platform::INVALID_PARAMETER, from, to);
    const bool wasThere = target.exists();
    const bool isEmptied = overwrite && wasThere;
    const auto above = fromTop.ancestry();
    if (above.empty() || (isEmptied && contains(above, places.front())))
        return refuseMove(platform::INVALID_PARAMETER, from, to);

    TreeMove move(from.way(std::move(fromTop)), overwrite);
    // What cannot be renamed there is told before anything is lost for it.
    const TreeMove::Destination destination{.nearest = nearest, .place = to.way({})};
    if (!move.readSource(isEmptied || !wasThere ? &destination : nullptr)) return false;

    OpenTarget place;
    TreeMove::Target kind = TreeMove::Target::FOUND;
    if (isEmptied) place.folder = to.open(Links::REFUSE);
    const bool isFolderItself = place.folder.isOpen();
    if (!isFolderItself) place = openOrMake(target);
    if (!place.folder.isOpen()) return false;
    // Somebody may have put another folder there, or a link to one, of which nothing is known.
    if (wasThere && place.folder.identity() != places.front()) return refuseMove(EXCHANGED, from, to);
    if (isFolderItself)
    {
        removeTreeContents(to.way(place.folder), true, platform::ReadOnlyFiles::STAY);
        kind = TreeMove::Target::EMPTIED;
    }
    else if (place.isMade)
    {
        kind = TreeMove::Target::MADE;
    }
    return move.run(to.way(std::move(place.folder)), to.written(), kind);
}

bool moveLinkOnDisk(const Directory& link, const Directory& target, bool overwrite)
{
    const DiskFolder from(link);
    const DiskFolder to(target);
    if (from.absolute()->levels.empty() || to.absolute()->levels.empty())
        return refuseMove(platform::INVALID_PARAMETER, from, to);
    if (isTakenByFile(target)) return refuseMove(platform::ALREADY_EXISTS, from, to);
    const OpenFolder led = from.open(Links::FOLLOW);
    const OpenFolder holder = from.openParent();
    if (!led.isOpen() || !holder.isOpen()) return false;
    const bool isThere = target.exists();
    if (!canMoveLink(led, holder, isThere ? to.open(Links::FOLLOW) : OpenFolder()))
        return refuseMove(platform::INVALID_PARAMETER, from, to);
    if (isThere && !overwrite) return refuseMove(platform::ALREADY_EXISTS, from, to);
    const OpenFolder place = to.openParent();
    if (!place.isOpen()) return false;
    if (!holder.canRenameTo(place)) return false;
    if (isThere && !target.remove(true)) return false;
    const TextView name = from.absolute()->levels.back();
    return holder.isLink(name) && holder.rename(name, place, to.absolute()->levels.back(), true);
}

}  // namespace Oxa_1_1::detail
