#include "base/platform/files/new_items.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/platform/files/detail/file_time.h"
#include "base/platform/files/detail/native_new_items.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/linux/system/environment.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr const char* ACCESS_LIST = "system.posix_acl_access";

/// The finer permissions, where the file system has them. What the folder has given the new file goes with them.
void copyAccessList(int from, int to)
{
    const ssize_t size = fgetxattr(from, ACCESS_LIST, nullptr, 0);
    if (size <= 0)
    {
        fremovexattr(to, ACCESS_LIST);
        return;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    const ssize_t length = fgetxattr(from, ACCESS_LIST, list.data(), list.size());
    if (length > 0) fsetxattr(to, ACCESS_LIST, list.data(), static_cast<std::size_t>(length), 0);
}

/// Who may not give a file away keeps it; but then nobody gets rights by it that they did not have.
bool takeOverPermissions(const ReachablePath& replacement, const ReachablePath& target, const struct stat& former)
{
    const FileDescriptor file(replacement.open(O_RDONLY | O_NOFOLLOW));
    struct stat own;
    if (!file.isOpen() || fstat(file.get(), &own) != 0) return replacement.fail();
    mode_t mode = former.st_mode & 07777;
    const bool isAnothers = own.st_uid != former.st_uid || own.st_gid != former.st_gid;
    // Not every file system has modes that can be set.
    const bool hasMode = !isAnothers && (own.st_mode & 07777) == mode;
    if (isAnothers && fchown(file.get(), former.st_uid, former.st_gid) != 0)
    {
        mode &= ~mode_t{S_ISUID | S_ISGID};
        if (own.st_gid != former.st_gid && fchown(file.get(), static_cast<uid_t>(-1), former.st_gid) != 0)
            mode &= ~mode_t{S_IRWXG} | (mode & S_IRWXO) << 3;
    }
    if (!hasMode && fchmod(file.get(), mode) != 0) return replacement.fail();
    const FileDescriptor old(target.open(O_RDONLY));
    copyAccessList(old.get(), file.get());
    return true;
}

/// Where names cannot be waited for, they are there at once, or nobody knows better.
bool flushNames(const FileDescriptor& folder)
{
    return uninterrupted([&] { return fsync(folder.get()); }) == 0 || errno == EINVAL || errno == EROFS;
}

}  // namespace

Text temporaryFolder()
{
    const std::string named = environmentVariable("TMPDIR");
    Text folder = spellingOf(named.starts_with('/') ? named : "/tmp");
    if (!folder.ends_with(u'\\')) folder += u'\\';
    return folder;
}

bool createPrivateFile(TextView path)
{
    const ReachablePath reachable(path);
    return FileDescriptor(reachable.open(O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600)).isOpen() || reachable.fail();
}

bool createPrivateFolder(TextView path)
{
    const ReachablePath reachable(path);
    return mkdirat(reachable.folder(), reachable.itself(), 0700) == 0 || reachable.fail();
}

bool replaceFile(TextView replacement, TextView target, bool waitForDisk)
{
    const ReachablePath from(replacement);
    const ReachablePath to(target);
    struct stat former;
    if (fstatat(to.folder(), to.itself(), &former, AT_SYMLINK_NOFOLLOW) == 0)
    {
        // A device that was replaced by a file would be missed by everybody.
        if (!S_ISREG(former.st_mode) || isReadOnly(former)) return failWith(EACCES);
        if (faccessat(to.folder(), to.itself(), W_OK, AT_EACCESS) != 0) return to.fail();
        if (!takeOverPermissions(from, to, former)) return false;
    }
    else if (errno != ENOENT)
    {
        return to.fail();
    }
    const FileDescriptor folder = waitForDisk ? to.openParent(O_RDONLY) : FileDescriptor();
    if (waitForDisk && !folder.isOpen()) return to.fail();
    if (renameat(from.folder(), from.itself(), to.folder(), to.itself()) != 0) return from.fail();
    return !waitForDisk || flushNames(folder) || to.fail();
}

bool flushToDisk(TextView path)
{
    const ReachablePath reachable(path);
    const FileDescriptor item(reachable.open(O_RDONLY));
    return (item.isOpen() && uninterrupted([&] { return fsync(item.get()); }) == 0) || reachable.fail();
}

Text finalPath(TextView path)
{
    const ReachablePath reachable(path);
    const FileDescriptor item(reachable.open(O_PATH));
    char target[PATH_MAX];
    const std::string self = "/proc/self/fd/" + std::to_string(item.get());
    if (!item.isOpen() || realpath(self.c_str(), target) == nullptr)
    {
        reachable.fail();
        return {};
    }
    return spellingOf(target);
}

bool writeLastWrite(TextView path, FileTicks ticks)
{
    const long nanoseconds = static_cast<long>(ticks % TICKS_IN_SECOND) * NANOSECONDS_IN_TICK;
    const struct timespec times[]
    {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, { .tv_sec = unixTimeOfTicks(ticks), .tv_nsec = nanoseconds }
    };
    const ReachablePath reachable(path);
    return utimensat(reachable.folder(), reachable.path(), times, 0) == 0 || reachable.fail();
}

}  // namespace Oxa_1_1::platform::native
