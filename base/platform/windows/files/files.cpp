#include "base/platform/files/files.h"

#include <sys/stat.h>
#include <wchar.h>

#include <cstdlib>
#include <limits>

#include "base/platform/files/detail/file_time.h"
#include "base/platform/files/detail/native_files.h"
#include "base/platform/windows/files/file_handle.h"
#include "base/platform/windows/files/system_names.h"

namespace Oxa_1_1::platform::native
{

static_assert(READ_ONLY == FILE_ATTRIBUTE_READONLY && FOLDER == FILE_ATTRIBUTE_DIRECTORY);
static_assert(NORMAL == FILE_ATTRIBUTE_NORMAL && LINK == FILE_ATTRIBUTE_REPARSE_POINT);

namespace
{

std::uint64_t join(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

FileTicks ticksOf(const FILETIME& time) { return join(time.dwHighDateTime, time.dwLowDateTime); }

/// Files and folders are opened alike, to ask or to set something.
FileHandle openAny(TextView path, DWORD access, DWORD flags = 0)
{
    return FileHandle(CreateFileW(pathForSystem(path).c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr));
}

/// Not everything that the attributes call so is a link: other services mark their files in the same way.
bool leadsElsewhere(TextView path)
{
    const FileHandle file = openAny(withoutSeparator(path), FILE_READ_ATTRIBUTES, FILE_FLAG_OPEN_REPARSE_POINT);
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (!file.isOpen() || !GetFileInformationByHandleEx(file.get(), FileAttributeTagInfo, &info, sizeof info))
        return false;
    return (info.FileAttributes & LINK) != 0 && IsReparseTagNameSurrogate(info.ReparseTag);
}

std::optional<BY_HANDLE_FILE_INFORMATION> informationBehind(TextView path)
{
    const FileHandle file = openAny(path, 0);
    BY_HANDLE_FILE_INFORMATION info{};
    if (!file.isOpen() || !GetFileInformationByHandle(file.get(), &info)) return std::nullopt;
    return info;
}

__time64_t secondsOf(const FILETIME& time) { return unixTimeOfTicks(ticksOf(time)); }

/// What the run-time library would tell, which takes no path of any length.
bool statLong(const Text& path, struct _stat64& status)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data)) return false;
    constexpr unsigned FOR_OWNER = 0700;
    const bool isFolder = (data.dwFileAttributes & FOLDER) != 0;
    unsigned mode = _S_IREAD | (isFolder ? _S_IEXEC : 0);
    if ((data.dwFileAttributes & READ_ONLY) == 0) mode |= _S_IWRITE;
    if (path.ends_with(L".exe") || path.ends_with(L".com") || path.ends_with(L".bat") || path.ends_with(L".cmd"))
        mode |= _S_IEXEC;
    mode |= (mode & FOR_OWNER) >> 3 | (mode & FOR_OWNER) >> 6;
    status = {};
    status.st_mode = static_cast<unsigned short>(mode | (isFolder ? _S_IFDIR : _S_IFREG));
    status.st_nlink = 1;
    status.st_size = static_cast<__int64>(join(data.nFileSizeHigh, data.nFileSizeLow));
    status.st_atime = secondsOf(data.ftLastAccessTime);
    status.st_mtime = secondsOf(data.ftLastWriteTime);
    status.st_ctime = secondsOf(data.ftCreationTime);
    return true;
}

/// What is no drive for the run-time library counts as an invalid parameter, for which it may end the process.
bool isDrive(int drive)
{
    if (drive < 1 || drive > 26) return false;
    const wchar_t root[] = {static_cast<wchar_t>(L'A' + drive - 1), L':', L'\\', 0};
    return GetDriveTypeW(root) > DRIVE_NO_ROOT_DIR;
}

/// Of all the records that the system has for the same things.
template <class Data>
FileInformation informationOf(const Data& data)
{
    return {.attributes = data.dwFileAttributes,
            .size = join(data.nFileSizeHigh, data.nFileSizeLow),
            .created = ticksOf(data.ftCreationTime),
            .written = ticksOf(data.ftLastWriteTime)};
}

}  // namespace

std::optional<FileInformation> readInformation(TextView path)
{
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (!GetFileAttributesExW(pathForSystem(path).c_str(), GetFileExInfoStandard, &data)) return std::nullopt;
    FileInformation information = informationOf(data);
    if ((information.attributes & LINK) == 0) return information;
    information.attributes &= ~LINK;
    if (!leadsElsewhere(path)) return information;
    const std::optional<BY_HANDLE_FILE_INFORMATION> behind = informationBehind(path);
    if (!behind) return std::nullopt;
    information = informationOf(*behind);
    information.attributes |= LINK;
    return information;
}

std::optional<DWORD> readAttributes(TextView path)
{
    const DWORD attributes = GetFileAttributesW(pathForSystem(path).c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return std::nullopt;
    if ((attributes & LINK) == 0) return attributes;
    const std::optional<FileInformation> information = readInformation(path);
    return information ? std::optional(information->attributes) : std::nullopt;
}

bool writeAttributes(TextView path, DWORD attributes)
{
    return SetFileAttributesW(pathForSystem(path).c_str(), attributes & ~LINK) != 0;
}

bool isLink(TextView path)
{
    const DWORD attributes = GetFileAttributesW(pathForSystem(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & LINK) != 0 && leadsElsewhere(path);
}

std::optional<FileIdentity> readIdentity(TextView path)
{
    const std::optional<BY_HANDLE_FILE_INFORMATION> info = informationBehind(path);
    if (!info) return std::nullopt;
    return FileIdentity{.volume = info->dwVolumeSerialNumber, .index = join(info->nFileIndexHigh, info->nFileIndexLow)};
}

bool statFile(TextView path, struct _stat64i32& result)
{
    // The call for 32 bits cuts off what is too large in some run-time libraries.
    struct _stat64 status;
    const Text text = pathForSystem(path);
    const bool isLong = text.starts_with(L"\\\\?\\");
    if (!(isLong ? statLong(text, status) : _wstat64(text.c_str(), &status) == 0)) return false;
    if (status.st_size > std::numeric_limits<decltype(result.st_size)>::max())
    {
        SetLastError(ERROR_ARITHMETIC_OVERFLOW);
        return false;
    }
    result = {};
    result.st_dev = status.st_dev;
    result.st_ino = status.st_ino;
    result.st_mode = status.st_mode;
    result.st_nlink = status.st_nlink;
    result.st_uid = status.st_uid;
    result.st_gid = status.st_gid;
    result.st_rdev = status.st_rdev;
    result.st_size = static_cast<decltype(result.st_size)>(status.st_size);
    result.st_atime = status.st_atime;
    result.st_mtime = status.st_mtime;
    result.st_ctime = status.st_ctime;
    return true;
}

bool isReadable(TextView path) { return GetFileAttributesW(pathForSystem(path).c_str()) != INVALID_FILE_ATTRIBUTES; }

bool canOpen(TextView path, bool read, bool write, DWORD attributes)
{
    const DWORD access = (read ? GENERIC_READ : 0) | (write ? GENERIC_WRITE : 0);
    const DWORD flags =
        (attributes & FOLDER) != 0 ? FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT : FILE_ATTRIBUTE_NORMAL;
    return FileHandle(
               CreateFileW(pathForSystem(path).c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING, flags, nullptr))
        .isOpen();
}

Text currentFolder(int drive)
{
    if (drive != 0 && !isDrive(drive))
    {
        SetLastError(ERROR_INVALID_DRIVE);
        return {};
    }
    // The buffer grows as needed, but Wine takes its least size for the size that there is.
    const std::unique_ptr<wchar_t, decltype(&std::free)> folder(
        drive == 0 ? _wgetcwd(nullptr, MAX_PATH) : _wgetdcwd(drive, nullptr, MAX_PATH), &std::free);
    return folder != nullptr ? folder.get() : Text();
}

}  // namespace Oxa_1_1::platform::native
