// Open folders: every call names an entry of one, and none of them walks a path.

#include "base/platform/files/tree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <string>
#include <utility>

#include "base/platform/files/detail/file_time.h"
#include "base/platform/files/detail/native_tree.h"
#include "base/platform/linux/files/folder_entries.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/places.h"
#include "base/platform/linux/files/replacement.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

class Folder
{
   public:
    Folder(FileDescriptor descriptor, bool isReadable) : m_entries(std::move(descriptor)), m_isReadable(isReadable) {}

    int number() const noexcept { return m_entries.folder(); }
    ReachablePath entry(TextView name) const { return {number(), name}; }

    const struct dirent64* next()
    {
        if (m_isReadable) return m_entries.next();
        failWith(EACCES);
        return nullptr;
    }

    bool rewind() { return m_entries.rewind(); }

    /// Null sets the last error.
    const struct stat* status() const
    {
        if (!m_isKnown) m_isKnown = fstat(number(), &m_status) == 0 || failWith(errno);
        return m_isKnown ? &m_status : nullptr;
    }

    bool setMode(mode_t mode) const
    {
        if ((m_status.st_mode & 07777) == mode) return true;
        // One that is no more than a place can be reached by another name only.
        const std::string place = "/proc/self/fd/" + std::to_string(number());
        if (m_isReadable ? fchmod(number(), mode) != 0 : chmod(place.c_str(), mode) != 0) return failWith(errno);
        m_status.st_mode = (m_status.st_mode & S_IFMT) | mode;
        return true;
    }

    bool setTimes(const struct timespec& written) const
    {
        const struct timespec times[]
        {
            {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, written
        };
        const std::string place = "/proc/self/fd/" + std::to_string(number());
        const bool isSet =
            m_isReadable ? futimens(number(), times) == 0 : utimensat(AT_FDCWD, place.c_str(), times, 0) == 0;
        return isSet || failWith(errno);
    }

    void makeReadable()
    {
        if (m_isReadable) return;
        FileDescriptor again(openat(number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        m_isReadable = again.isOpen();
        if (m_isReadable) m_entries = FolderEntries(std::move(again));
    }

   private:
    FolderEntries m_entries;
    bool m_isReadable;
    mutable bool m_isKnown = false;
    mutable struct stat m_status = {};
};

namespace
{

/// Who may not read a folder may still reach what is in it.
SharedFolder openAt(int parent, const char* name, Links links)
{
    const int flags = O_DIRECTORY | O_CLOEXEC | (links == Links::REFUSE ? O_NOFOLLOW : 0);
    const auto open = [&](int access)
    { return FileDescriptor(uninterrupted([&] { return openat(parent, name, flags | access); })); };
    FileDescriptor folder = open(O_RDONLY);
    const bool isReadable = folder.isOpen();
    if (!isReadable && errno == EACCES) folder = open(O_PATH);
    if (!folder.isOpen()) return nullptr;
    return std::make_shared<Folder>(std::move(folder), isReadable);
}

SharedFolder openReachable(const ReachablePath& path, const char* name, Links links)
{
    SharedFolder folder = openAt(path.folder(), name, links);
    if (folder != nullptr) return folder;
    if (errno == ENOTDIR || (errno == ELOOP && links == Links::REFUSE))
        setLastError(NOT_A_FOLDER);
    else
        path.fail();
    return nullptr;
}

FileIdentity identityOf(const struct stat& status) { return {.volume = status.st_dev, .index = status.st_ino}; }

}  // namespace

Text pathOf(const Folder& folder, TextView name)
{
    std::string path(PATH_MAX, '\0');
    const std::string place = "/proc/self/fd/" + std::to_string(folder.number());
    const ssize_t length = readlink(place.c_str(), path.data(), path.size());
    path.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    Text spelling = spellingOf(path);
    if (length > 0 && !spelling.ends_with(u'\\')) spelling += u'\\';
    return spelling.append(name);
}

SharedFolder openTop(TextView path, Links links)
{
    const ReachablePath reachable(path);
    return openReachable(reachable, links == Links::REFUSE ? reachable.itself() : reachable.path(), links);
}

SharedFolder open(const Folder& folder, TextView name, Links links)
{
    const ReachablePath entry = folder.entry(name);
    return openReachable(entry, entry.path(), links);
}

SharedFolder openParent(const Folder& folder)
{
    SharedFolder parent = openAt(folder.number(), "..", Links::REFUSE);
    if (parent == nullptr) failWith(errno);
    return parent;
}

bool nextEntry(Folder& folder, FolderEntry& entry, EntryKinds kinds)
{
    const struct dirent64* found = nullptr;
    do
    {
        found = folder.next();
        if (found == nullptr) return false;
        entry.kind = kindOf(folder.number(), *found);
    } while (!isOf(entry.kind, kinds));
    spellName(found->d_name, entry.name);
    return true;
}

bool rewind(Folder& folder) { return folder.rewind(); }

std::optional<FileIdentity> readIdentity(const Folder& folder)
{
    const struct stat* const status = folder.status();
    return status != nullptr ? std::optional(identityOf(*status)) : std::nullopt;
}

std::vector<FileIdentity> readAncestry(const Folder& folder)
{
    std::vector<FileIdentity> ancestry;
    struct stat status;
    FileDescriptor above;
    int place = folder.number();
    while (fstat(place, &status) == 0)
    {
        // The root lies in itself.
        if (!ancestry.empty() && ancestry.back() == identityOf(status)) return ancestry;
        ancestry.push_back(identityOf(status));
        above = FileDescriptor(openat(place, "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
        place = above.get();
        if (place < 0) break;
    }
    failWith(errno);
    return {};
}

std::optional<FileInformation> readInformation(const Folder& folder, TextView name)
{
    return readInformation(folder.entry(name));
}

std::optional<FileIdentity> readIdentity(const Folder& folder, TextView name)
{
    struct stat status;
    if (!folder.entry(name).readStatus(status)) return std::nullopt;
    return identityOf(status);
}

bool isLink(const Folder& folder, TextView name)
{
    struct stat status;
    return folder.entry(name).readOwnStatus(status) && S_ISLNK(status.st_mode);
}

std::optional<EntryKind> readKind(const Folder& folder, TextView name)
{
    const ReachablePath entry = folder.entry(name);
    const auto kind = platform::readKind(entry.folder(), entry.path());
    if (!kind) entry.fail();
    return kind;
}

std::optional<FileIdentity> readOwnIdentity(const Folder& folder, TextView name)
{
    struct stat status;
    if (!folder.entry(name).readOwnStatus(status)) return std::nullopt;
    return identityOf(status);
}

std::optional<FileTicks> readOwnLastWrite(const Folder& folder, TextView name)
{
    struct stat status;
    if (!folder.entry(name).readOwnStatus(status)) return std::nullopt;
    return ticksOfUnixTime(status.st_mtim.tv_sec, status.st_mtim.tv_nsec);
}

bool isSameContent(const Folder& folder, TextView name, const Folder& other, TextView otherName,
                   const CopyProgress& progress)
{
    return isSameContent(folder.entry(name), other.entry(otherName), progress);
}

bool makeFolder(const Folder& folder, TextView name, NewFolder access)
{
    const ReachablePath entry = folder.entry(name);
    const mode_t mode = access == NewFolder::PRIVATE ? 0700 : 0777;
    return mkdirat(entry.folder(), entry.path(), mode) == 0 || entry.fail();
}

bool takePermissions(const Folder& folder, const Folder& from, OwnerAccess access)
{
    const struct stat* const source = from.status();
    const struct stat* const own = folder.status();
    if (source == nullptr || own == nullptr) return false;
    // For whom new entries are is settled by where the folder lies.
    const mode_t kept = own->st_mode & (S_ISUID | S_ISGID);
    const mode_t owner = access == OwnerAccess::FULL ? S_IRWXU : 0;
    return folder.setMode((source->st_mode & 01777) | owner | kept);
}

void takeOwner(const Folder& folder, const Folder& from)
{
    const struct stat* const source = from.status();
    if (source == nullptr) return;
    platform::takeOwner(*source, folder.number());
    takeExtendedAttributes(from.number(), folder.number());
}

bool takeTimes(const Folder& folder, const Folder& from)
{
    struct stat status;
    if (fstat(from.number(), &status) != 0) return failWith(errno);
    return folder.setTimes(status.st_mtim);
}

bool unlock(Folder& folder)
{
    const struct stat* const status = folder.status();
    if (status == nullptr || !folder.setMode((status->st_mode & 07777) | S_IRWXU)) return false;
    folder.makeReadable();
    return true;
}

bool canRename(const Folder& folder, const Folder& target)
{
    const struct stat* const from = folder.status();
    const struct stat* const to = target.status();
    if (from == nullptr || to == nullptr) return false;
    // Nothing can be called so, but before that the system sees whether both are part of the same mounted tree.
    const bool isApart = renameat(folder.number(), ".", target.number(), ".") != 0 && errno == EXDEV;
    if (isApart || from->st_dev != to->st_dev) return failWith(EXDEV);
    return faccessat(folder.number(), ".", W_OK | X_OK, AT_EACCESS) == 0 || failWith(errno);
}

bool deleteFile(const Folder& folder, TextView name, ReadOnlyFiles readOnly)
{
    const ReachablePath entry = folder.entry(name);
    if (readOnly == ReadOnlyFiles::STAY) return deleteFile(entry);
    return unlinkat(entry.folder(), entry.path(), 0) == 0 || entry.fail();
}

bool removeFolder(const Folder& folder, TextView name) { return removeFolder(folder.entry(name)); }

bool renameEntry(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists)
{
    return renameFile(folder.entry(name), target.entry(targetName), failIfExists);
}

bool addName(const Folder& folder, TextView name, TextView newName)
{
    const ReachablePath entry = folder.entry(name);
    const ReachablePath added = folder.entry(newName);
    return linkat(entry.folder(), entry.path(), added.folder(), added.path(), 0) == 0 || entry.fail();
}

bool replace(const Folder& folder, TextView name, const Folder& target, TextView replaced, ReadOnlyFiles readOnly)
{
    return replaceByRenaming(folder.entry(name), target.entry(replaced), readOnly);
}

bool copyFile(const Folder& folder, TextView name, EntryKind kind, const Folder& target, TextView targetName,
              bool failIfExists, const CopyProgress& progress, Kept kept)
{
    ReachablePath source = folder.entry(name);
    if (kind == EntryKind::PLAIN_FILE) source.expectPlainFile();
    return copyFile(source, target.entry(targetName), failIfExists, progress, kept);
}

bool copyLink(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists,
              Kept kept)
{
    return copyLink(folder.entry(name), target.entry(targetName), failIfExists, kept);
}

}  // namespace Oxa_1_1::platform::native
