#include "base/platform/files/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "base/platform/files/detail/file_time.h"
#include "base/platform/files/detail/native_files.h"
#include "base/platform/linux/files/current_folder.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/places.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr int DRIVES = 26;

FileTicks ticksOf(const struct statx_timestamp& time)
{
    return ticksOfUnixTime(time.tv_sec, static_cast<long>(time.tv_nsec));
}

/// Not every file system knows when a file was made; it was no later than anything else that happened to it.
FileTicks creationOf(const struct statx& status)
{
    if ((status.stx_mask & STATX_BTIME) != 0) return ticksOf(status.stx_btime);
    return std::min(ticksOf(status.stx_mtime), ticksOf(status.stx_ctime));
}

DWORD attributesOf(mode_t mode, bool isLink)
{
    DWORD attributes = isLink ? LINK : 0;
    if ((mode & 0222) == 0) attributes |= READ_ONLY;
    if (S_ISDIR(mode)) attributes |= FOLDER;
    return attributes != 0 ? attributes : NORMAL;
}

FileInformation informationOf(const struct statx& status, bool isLink)
{
    return {.attributes = attributesOf(status.stx_mode, isLink),
            .size = S_ISDIR(status.stx_mode) ? 0 : status.stx_size,
            .created = creationOf(status),
            .written = ticksOf(status.stx_mtime)};
}

std::int16_t shortOf(std::uint64_t number)
{
    constexpr std::uint64_t MAX = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(number, MAX));
}

mode_t processMask()
{
    // Asking by umask() would change it for other threads meanwhile.
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> status(std::fopen("/proc/self/status", "re"), &std::fclose);
    char line[256];
    while (status != nullptr && std::fgets(line, sizeof line, status.get()) != nullptr)
    {
        const std::string_view text(line);
        if (text.starts_with("Umask:")) return static_cast<mode_t>(std::strtoul(line + 6, nullptr, 8));
    }
    return 022;
}

/// Who may read gets to write again as new files would let them; the owner in any case.
mode_t writableMode(mode_t mode) { return mode | (((mode & 0444) >> 1) & ~processMask()) | S_IWUSR; }

/// Where the current folder is on that drive, the drive's current folder is this; else it is the drive's root.
Text currentFolderOfDrive(int drive)
{
    const Text root{static_cast<Char>(u'A' + drive - 1), u':', u'\\'};
    const std::string folder = nativeRootOf(root);
    if (access(folder.c_str(), F_OK) != 0)
    {
        setLastError(INVALID_DRIVE);
        return {};
    }
    return root + spellingOf(currentFolderBelow(folder).value_or(std::string()));
}

}  // namespace

std::optional<FileInformation> readInformation(TextView path) { return readInformation(ReachablePath(path)); }

std::optional<FileInformation> readInformation(const ReachablePath& reachable)
{
    constexpr unsigned WANTED = STATX_BASIC_STATS | STATX_BTIME;
    struct statx status;
    if (statx(reachable.folder(), reachable.itself(), AT_SYMLINK_NOFOLLOW, WANTED, &status) != 0)
    {
        reachable.fail();
        return std::nullopt;
    }
    const bool isLink = S_ISLNK(status.stx_mode);
    if (isLink && statx(reachable.folder(), reachable.path(), 0, WANTED, &status) != 0)
    {
        reachable.fail();
        return std::nullopt;
    }
    if (reachable.asksForFolder() && !S_ISDIR(status.stx_mode))
    {
        failWith(ENOTDIR);
        return std::nullopt;
    }
    return informationOf(status, isLink);
}

std::optional<DWORD> readAttributes(TextView path)
{
    const ReachablePath reachable(path);
    struct stat status;
    if (!reachable.readOwnStatus(status)) return std::nullopt;
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && !reachable.readStatus(status)) return std::nullopt;
    if (reachable.asksForFolder() && !S_ISDIR(status.st_mode))
    {
        failWith(ENOTDIR);
        return std::nullopt;
    }
    return attributesOf(status.st_mode, isLink);
}

bool writeAttributes(TextView path, DWORD attributes)
{
    const ReachablePath reachable(path);
    struct stat status;
    if (!reachable.readStatus(status)) return false;
    const bool isWanted = (attributes & READ_ONLY) != 0;
    if (isReadOnly(status) == isWanted) return true;
    const mode_t mode = isWanted ? status.st_mode & ~mode_t{0222} : writableMode(status.st_mode);
    return fchmodat(reachable.folder(), reachable.path(), mode & 07777, 0) == 0 || reachable.fail();
}

bool isLink(TextView path)
{
    struct stat status;
    return ReachablePath(path).readOwnStatus(status) && S_ISLNK(status.st_mode);
}

std::optional<FileIdentity> readIdentity(TextView path)
{
    struct stat status;
    if (!ReachablePath(path).readStatus(status)) return std::nullopt;
    return FileIdentity{.volume = status.st_dev, .index = status.st_ino};
}

bool statFile(TextView path, struct _stat64i32& result)
{
    struct stat status;
    if (!ReachablePath(path).readStatus(status)) return false;
    const off_t size = S_ISDIR(status.st_mode) ? 0 : status.st_size;
    if (size > std::numeric_limits<std::int32_t>::max()) return failWith(EOVERFLOW);
    result = {};
    result.st_dev = static_cast<std::uint32_t>(status.st_dev);
    result.st_mode = static_cast<std::uint16_t>(status.st_mode);
    result.st_nlink = shortOf(status.st_nlink);
    result.st_uid = shortOf(status.st_uid);
    result.st_gid = shortOf(status.st_gid);
    result.st_rdev = static_cast<std::uint32_t>(status.st_dev);
    result.st_size = static_cast<std::int32_t>(size);
    result.st_atime = status.st_atime;
    result.st_mtime = status.st_mtime;
    result.st_ctime = status.st_ctime;
    return true;
}

bool isReadable(TextView path)
{
    const ReachablePath reachable(path);
    return faccessat(reachable.folder(), reachable.path(), R_OK, AT_EACCESS) == 0 || reachable.fail();
}

bool canOpen(TextView path, bool read, bool write, DWORD attributes)
{
    const ReachablePath reachable(path);
    struct stat status;
    if (!reachable.readStatus(status)) return false;
    const bool isFolder = S_ISDIR(status.st_mode);
    if (isFolder && (attributes & FOLDER) == 0) return failWith(EISDIR);
    if (!isFolder && write && isReadOnly(status)) return failWith(EACCES);
    const int access = (read ? R_OK : 0) | (write ? W_OK : 0);
    return faccessat(reachable.folder(), reachable.path(), access, AT_EACCESS) == 0 || reachable.fail();
}

Text currentFolder(int drive)
{
    const std::string current = currentFolderPath();
    if (current.empty())
    {
        failWith(errno);
        return {};
    }
    if (drive == 0) return spellingOf(current);
    if (drive > 0 && drive <= DRIVES) return currentFolderOfDrive(drive);
    setLastError(INVALID_DRIVE);
    return {};
}

}  // namespace Oxa_1_1::platform::native
