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

bool refuseCopy(DWORD code, const DiskFolder& from, const DiskFolder& to)
{
    return platform::failStep(code, "copyFolder", fullName(from.written(), SEPARATOR),
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
        if (!information) return saysLost(platform::lastError()) && way.current().isLink(name);
        m_bytes += information->size;
        // What became a folder has not been looked into.
        return (information->attributes & platform::FOLDER) == 0 ||
               platform::failStep(EXCHANGED, "readInformation", way.fullName(name));
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
        { return !entry.isLink() && mayBeWanted(way.current().readIdentity(contents.nameOf(entry))); };
        return std::ranges::none_of(contents.folders(), isWanted) && std::ranges::none_of(contents.files(), isWanted);
    }

   private:
    bool mayBeWanted(const std::optional<FileIdentity>& found) const
    {
        return found ? contains(m_wanted, found) : !saysMissing(platform::lastError());
    }

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

/// Both are open, and are read from their beginnings.
bool mayLieIn(const FolderWay& source, OpenFolder sourceTop, const FolderWay& folder, OpenFolder folderTop)
{
    const auto aboveSource = sourceTop.ancestry();
    const auto identity = folderTop.identity();
    if (aboveSource.empty() || !identity || contains(aboveSource, identity)) return true;
    LinkVisitor links;
    if (!sourceTop.rewind() || !walkTree(source, links)) return true;
    if (links.found().empty()) return false;
    const auto above = folderTop.ancestry();
    if (above.empty() || std::ranges::find_first_of(above, links.found()) != above.end()) return true;
    SearchVisitor search(links.found());
    return !folderTop.rewind() || !walkTree(folder, search);
}

/// Removes a target that was there, unless another one stands in its place by now. Of a link, the link itself. False
/// when something stays.
bool removeFound(const DiskFolder& place, OpenTarget target)
{
    ParsedDirectory path = *place.absolute();
    const Text name(path.levels.back().view());
    path.levels.dropBack();
    const OpenFolder parent = OpenFolder::at(readablePath(path), Links::FOLLOW);
    const auto identity = target.folder.identity();
    if (!parent.isOpen() || !identity) return false;
    const auto inPlace = parent.readIdentity(name);
    if (!inPlace) return saysMissing(platform::lastError());
    if (inPlace != identity) return platform::failStep(EXCHANGED, "openFolder", fullName(*place.absolute(), SEPARATOR));
    OpenFolder found;
    if (!parent.isLink(name))
    {
        found = parent.open(name, Links::REFUSE);
        if (!found.isOpen() || found.identity() != identity) return false;
    }
    target = {};
    if (found.isOpen()) removeTreeContents(place.way(std::move(found)), true, platform::ReadOnlyFiles::STAY);
    if (removeEmptied([&] { return parent.removeFolder(name); })) return true;
    reportFolderThatStays(fullName(*place.absolute(), SEPARATOR));
    return false;
}

/// Why a link in one folder cannot come to another place without anything being lost; 0 when it can.
DWORD refusalOfLink(const OpenFolder& led, const OpenFolder& holder, const OpenFolder& target)
{
    const auto aboveLink = holder.ancestry();
    const auto aboveLed = !aboveLink.empty() ? led.ancestry() : std::vector<FileIdentity>();
    if (aboveLed.empty()) return platform::lastError();
    if (!target.isOpen()) return 0;
    const auto place = target.identity();
    if (!place) return platform::lastError();
    return contains(aboveLink, place) || contains(aboveLed, place) ? platform::INVALID_PARAMETER : 0;
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
    const auto places = identity ? toTop.ancestry() : std::vector<FileIdentity>();
    if (places.empty()) return refuseCopy(platform::lastError(), from, to);
    if (recursive ? contains(places, identity) : places.front() == identity)
        return refuseCopy(platform::INVALID_PARAMETER, from, to);
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
    const auto identity = fromTop.identity();
    const auto places = identity ? ancestryOfNearest(to) : std::vector<FileIdentity>();
    if (places.empty()) return refuseCopy(platform::lastError(), from, to);
    if (contains(places, identity)) return refuseCopy(platform::INVALID_PARAMETER, from, to);
    if (!to.written().absolute) return copy.create();
    OpenTarget target = openOrMake(copy);
    if (!target.folder.isOpen()) return false;

    bool cameToItself = false;
    {
        TreeCopy work(from.way(fromTop), *from.absolute(), to.way(target.folder), to.written());
        work.setOverwrite(overwrite);
        work.setProgress(std::move(progress));
        if (work.run(target.isMade)) return true;
        cameToItself = work.cameToItself();
    }
    // Why it failed counts, not what became of the rest.
    platform::KeptFailure reason;
    // What was there before is no half-made copy when the source is part of it, nor is the target itself.
    const bool mayGo = !cameToItself && !isDots(copy.getName()) && !to.absolute()->levels.empty();
    if (target.isMade)
        removeMade(to, std::move(target));
    else if (mayGo && !mayLieIn(from.way(fromTop), fromTop, to.way(target.folder), target.folder))
        removeFound(to, std::move(target));
    return reason.restore();
}

bool mayLieIn(const Directory& source, const Directory& folder)
{
    const DiskFolder from(source);
    const DiskFolder to(folder);
    const OpenFolder sourceTop = from.open(Links::FOLLOW);
    const OpenFolder folderTop = to.open(Links::FOLLOW);
    if (!sourceTop.isOpen() || !folderTop.isOpen()) return true;
    return mayLieIn(from.way(sourceTop), sourceTop, to.way(folderTop), folderTop);
}

bool moveContentsOnDisk(const Directory& source, const Directory& target, bool overwrite)
{
    const DiskFolder from(source);
    const DiskFolder to(target);
    OpenFolder fromTop = from.open(Links::REFUSE);
    if (!fromTop.isOpen()) return false;
    const OpenFolder nearest = to.openNearest();
    const auto places = nearest.isOpen() ? nearest.ancestry() : std::vector<FileIdentity>();
    const auto above = !places.empty() ? fromTop.ancestry() : std::vector<FileIdentity>();
    if (above.empty()) return refuseMove(platform::lastError(), from, to);
    const std::optional<bool> isThere = isFolderThere(target);
    if (!isThere) return refuseMove(platform::lastError(), from, to);
    const bool wasThere = *isThere;
    const bool isEmptied = overwrite && wasThere;
    if (contains(places, above.front()) || (isEmptied && contains(above, places.front())))
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
    const auto found = place.folder.identity();
    if (!found) return refuseMove(platform::lastError(), from, to);
    if (wasThere && found != places.front()) return refuseMove(EXCHANGED, from, to);
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
    const std::optional<bool> isThere = isFolderThere(target);
    OpenFolder replaced = isThere.value_or(false) ? to.open(Links::FOLLOW) : OpenFolder();
    if (!isThere || *isThere != replaced.isOpen()) return refuseMove(platform::lastError(), from, to);
    const DWORD refusal = refusalOfLink(led, holder, replaced);
    if (refusal != 0) return refuseMove(refusal, from, to);
    if (*isThere && !overwrite) return refuseMove(platform::ALREADY_EXISTS, from, to);
    const OpenFolder place = to.openParent();
    if (!place.isOpen()) return false;
    if (!holder.canRenameTo(place)) return false;
    if (*isThere && !removeFound(to, {.folder = std::move(replaced), .parent = {}})) return false;
    const TextView name = from.absolute()->levels.back();
    return holder.isLink(name) && holder.rename(name, place, to.absolute()->levels.back(), true);
}

}  // namespace Oxa_1_1::detail
