// Files and folders that come, go, and get new names and times.

// clang-format off: it stands on the other one
#include <shlwapi.h>
#include "base/platform/windows/windows_api.h"
// clang-format on

#include "base/platform/files/detail/native_files.h"
#include "base/platform/windows/files/file_handle.h"

namespace Oxa_1_1::platform::native
{

namespace
{

bool setWrittenNow(const FileHandle& file)
{
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return SetFileTime(file.get(), nullptr, nullptr, &now) != 0;
}

/// A link to a folder that is gone counts as a file, but the system removes it like a folder.
bool isLostFolderLink(const Text& path)
{
    const DWORD own = GetFileAttributesW(path.c_str());
    return own != INVALID_FILE_ATTRIBUTES && (own & FOLDER) != 0 && isLink(path) && !readAttributes(path);
}

}  // namespace

Touch touchFile(TextView path)
{
    const FileHandle file(CreateFileW(Text(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.isOpen()) return Touch::FAILED;
    if (GetLastError() != ERROR_ALREADY_EXISTS) return Touch::CREATED;
    return setWrittenNow(file) ? Touch::EXISTED : Touch::FAILED;
}

void flushFile(TextView path)
{
    const FileHandle file(CreateFileW(Text(path).c_str(), GENERIC_READ | GENERIC_WRITE, SHARE_ALL, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.isOpen()) FlushFileBuffers(file.get());
}

bool touchFolder(TextView path)
{
    const FileHandle folder(CreateFileW(Text(path).c_str(), GENERIC_READ | FILE_WRITE_ATTRIBUTES, SHARE_ALL, nullptr,
                                        OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    return folder.isOpen() && setWrittenNow(folder);
}

bool deleteFile(TextView path)
{
    const Text text(path);
    if (DeleteFileW(text.c_str()) != 0) return true;
    const DWORD reason = GetLastError();
    if (isLostFolderLink(text) && RemoveDirectoryW(text.c_str()) != 0) return true;
    SetLastError(reason);
    return false;
}

bool renameFile(TextView from, TextView to, bool failIfExists)
{
    const DWORD flags = failIfExists ? 0 : MOVEFILE_REPLACE_EXISTING;
    return MoveFileExW(withoutSeparator(from).c_str(), withoutSeparator(to).c_str(), flags) != 0;
}

bool createFolder(TextView path) { return CreateDirectoryW(Text(path).c_str(), nullptr) != 0; }

bool removeFolder(TextView path) { return RemoveDirectoryW(Text(path).c_str()) != 0; }

bool isEmptyFolder(TextView path) { return PathIsDirectoryEmptyW(Text(path).c_str()) == TRUE; }

}  // namespace Oxa_1_1::platform::native
