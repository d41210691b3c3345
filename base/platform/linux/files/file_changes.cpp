// Files and folders that come, go, and get new names and times.

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <string_view>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/linux/files/places.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr struct timespec NOW_WRITTEN[]
{
    {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, { .tv_sec = 0, .tv_nsec = UTIME_NOW }
};

/// Only owners may choose which time is set; others who may write set both.
template <class SetTimes>
bool setWrittenNow(const SetTimes& setTimes)
{
    return setTimes(NOW_WRITTEN) == 0 || (errno == EPERM && setTimes(nullptr) == 0);
}

Touch touchExisting(const ReachablePath& reachable)
{
    struct stat status;
    if (!reachable.readStatus(status)) return Touch::FAILED;
    if (isReadOnly(status) && !S_ISDIR(status.st_mode))
    {
        failWith(EACCES);
        return Touch::FAILED;
    }
    const FileDescriptor file(reachable.open(O_WRONLY));
    if (file.isOpen() && setWrittenNow([&](const struct timespec* times) { return futimens(file.get(), times); }))
        return Touch::EXISTED;
    reachable.fail();
    return Touch::FAILED;
}

std::string_view lastNameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// Whether two paths are the same name in the same folder.
bool isSameName(const ReachablePath& a, const ReachablePath& b)
{
    if (lastNameOf(a.itself()) != lastNameOf(b.itself())) return false;
    const FileDescriptor folderA = a.openParent(O_PATH);
    const FileDescriptor folderB = b.openParent(O_PATH);
    struct stat statusA;
    struct stat statusB;
    return fstat(folderA.get(), &statusA) == 0 && fstat(folderB.get(), &statusB) == 0 && isSameFile(statusA, statusB);
}

/// Where renaming itself always replaces: by calls that never do.
bool renameToFreeName(const ReachablePath& from, const ReachablePath& to)
{
    struct stat source;
    if (!from.readOwnStatus(source)) return false;
    if (S_ISDIR(source.st_mode))
    {
        // Of folders, only an empty one gives way, and it is this one.
        if (mkdirat(to.folder(), to.itself(), 0700) != 0) return to.fail();
        if (renameat(from.folder(), from.itself(), to.folder(), to.itself()) == 0) return true;
        const int number = errno;
        unlinkat(to.folder(), to.itself(), AT_REMOVEDIR);
        return from.fail(number);
    }
    if (linkat(from.folder(), from.itself(), to.folder(), to.itself(), 0) == 0)
    {
        if (unlinkat(from.folder(), from.itself(), 0) == 0) return true;
        const int number = errno;
        unlinkat(to.folder(), to.itself(), 0);
        return from.fail(number);
    }
    if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS && errno != EMLINK) return to.fail();
    setLastError(NOT_SUPPORTED);
    return false;
}

/// A link that leads nowhere is in the way of a new file, and never goes by itself.
bool isLostLink(const ReachablePath& path)
{
    struct stat status;
    return path.readOwnStatus(status) && S_ISLNK(status.st_mode) && !path.readStatus(status);
}

}  // namespace

Touch touchFile(TextView path)
{
    // Who removes the file between two looks at it, again and again, is not after this one.
    constexpr int ROUNDS = 1000;
    const ReachablePath reachable(path);
    for (int round = 1;; ++round)
    {
        if (FileDescriptor(reachable.open(O_WRONLY | O_CREAT | O_EXCL, 0666)).isOpen()) return Touch::CREATED;
        if (errno != EEXIST) break;
        const Touch result = touchExisting(reachable);
        const bool isGone = result == Touch::FAILED && lastError() == FILE_NOT_FOUND;
        if (!isGone || round == ROUNDS || isLostLink(reachable)) return result;
    }
    reachable.fail();
    return Touch::FAILED;
}

void flushFile(TextView path)
{
    const ReachablePath reachable(path);
    const FileDescriptor file(reachable.open(O_RDWR));
    if (!file.isOpen() || fsync(file.get()) != 0) reachable.fail();
}

bool touchFolder(TextView path)
{
    const ReachablePath reachable(path);
    return setWrittenNow([&](const struct timespec* times)
                         { return utimensat(reachable.folder(), reachable.path(), times, 0); }) ||
           reachable.fail();
}

bool deleteFile(const ReachablePath& reachable)
{
    struct stat status;
    if (!reachable.readOwnStatus(status)) return false;
    if (S_ISDIR(status.st_mode)) return failWith(EISDIR);
    if (!S_ISLNK(status.st_mode) && isReadOnly(status)) return failWith(EACCES);
    return unlinkat(reachable.folder(), reachable.path(), 0) == 0 || reachable.fail();
}

bool replaceByRenaming(const ReachablePath& from, const ReachablePath& to, ReadOnlyFiles readOnly)
{
    struct stat source;
    struct stat target;
    if (!from.readOwnStatus(source)) return false;
    const bool isThere = fstatat(to.folder(), to.itself(), &target, AT_SYMLINK_NOFOLLOW) == 0;
    if (isThere && isSameFile(source, target))
    {
        if (source.st_nlink == 1 || isSameName(from, to))
            return renameat(from.folder(), from.itself(), to.folder(), to.itself()) == 0 || from.fail();
        // The system would leave both names of the file.
        return unlinkat(from.folder(), from.itself(), 0) == 0 || from.fail();
    }
    if (isThere && (S_ISDIR(target.st_mode) || S_ISDIR(source.st_mode))) return failWith(EISDIR);
    const bool isKept = readOnly == ReadOnlyFiles::STAY;
    if (isThere && isKept && !S_ISLNK(target.st_mode) && isReadOnly(target)) return failWith(EACCES);
    return renameat(from.folder(), from.itself(), to.folder(), to.itself()) == 0 || to.fail();
}

bool renameFile(const ReachablePath& source, const ReachablePath& target, bool failIfExists)
{
    if (renameat2(source.folder(), source.itself(), target.folder(), target.itself(), RENAME_NOREPLACE) == 0)
        return true;
    const int number = errno;
    // Not every file system knows how to leave an existing target alone.
    const bool isUnknown = number == EINVAL || number == ENOSYS;
    if (!failIfExists && (isUnknown || number == EEXIST)) return replaceByRenaming(source, target, ReadOnlyFiles::STAY);
    if (isUnknown) return renameToFreeName(source, target);
    struct stat status;
    if (number == ENOENT && source.readOwnStatus(status)) return target.fail(number);
    return source.fail(number);
}

bool createFolder(TextView path)
{
    const ReachablePath reachable(path);
    return mkdirat(reachable.folder(), reachable.path(), 0777) == 0 || reachable.fail();
}

bool removeFolder(const ReachablePath& reachable)
{
    if (unlinkat(reachable.folder(), reachable.itself(), AT_REMOVEDIR) == 0) return true;
    if (errno != ENOTDIR) return reachable.fail();
    // A link is no folder, but one that may have led to a folder is removed like it.
    struct stat own;
    struct stat behind;
    if (!reachable.readOwnStatus(own)) return false;
    const bool leadsToFile =
        fstatat(reachable.folder(), reachable.itself(), &behind, 0) == 0 && !S_ISDIR(behind.st_mode);
    if (S_ISLNK(own.st_mode) && !leadsToFile)
        return unlinkat(reachable.folder(), reachable.itself(), 0) == 0 || reachable.fail();
    setLastError(NOT_A_FOLDER);
    return false;
}

bool deleteFile(TextView path) { return deleteFile(ReachablePath(path)); }

bool renameFile(TextView from, TextView to, bool failIfExists)
{
    return renameFile(ReachablePath(from), ReachablePath(to), failIfExists);
}

bool removeFolder(TextView path) { return removeFolder(ReachablePath(path)); }

}  // namespace Oxa_1_1::platform::native
