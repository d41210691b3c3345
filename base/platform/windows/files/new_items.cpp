#include "base/platform/files/new_items.h"

#include <cstddef>
#include <vector>

#include "base/platform/files/detail/native_new_items.h"
#include "base/platform/windows/files/file_handle.h"

namespace Oxa_1_1::platform::native
{

namespace
{

/// Asks with a buffer that grows until the answer fits. 0 is a failure.
template <class Ask>
Text textOf(const Ask& ask)
{
    Text text(MAX_PATH, L'\0');
    for (;;)
    {
        const DWORD length = ask(text.data(), static_cast<DWORD>(text.size()));
        if (length <= text.size())
        {
            text.resize(length);
            return text;
        }
        text.resize(length);
    }
}

FileHandle openAny(TextView path, DWORD access)
{
    return FileHandle(CreateFileW(Text(path).c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// Who may not set them leaves those that new files inherit in the folder.
void takeOverPermissions(const Text& to, const Text& from)
{
    DWORD size = 0;
    GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> descriptor(size);
    if (size > 0 && GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, descriptor.data(), size, &size))
        SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, descriptor.data());
}

}  // namespace

/// A folder of the user's own, whose permissions what is made in it inherits.
Text temporaryFolder()
{
    return textOf([](wchar_t* buffer, DWORD size) { return GetTempPathW(size, buffer); });
}

bool createPrivateFile(TextView path)
{
    return FileHandle(CreateFileW(Text(path).c_str(), GENERIC_WRITE, SHARE_ALL, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr))
        .isOpen();
}

bool createPrivateFolder(TextView path) { return CreateDirectoryW(Text(path).c_str(), nullptr) != 0; }

bool replaceFile(TextView replacement, TextView target)
{
    const Text from(replacement);
    const Text to(target);
    const DWORD attributes = GetFileAttributesW(to.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES)
    {
        if ((attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return false;
        }
        takeOverPermissions(from, to);
        SetFileAttributesW(from.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_REPARSE_POINT));
    }
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING)) return true;
    if (GetLastError() != ERROR_ACCESS_DENIED || attributes == INVALID_FILE_ATTRIBUTES) return false;
    // That is also said of a file that somebody holds open: asking for it alone tells these apart.
    const FileHandle held(CreateFileW(to.c_str(), DELETE, SHARE_ALL, nullptr, OPEN_EXISTING, 0, nullptr));
    if (held.isOpen()) SetLastError(ERROR_ACCESS_DENIED);
    return false;
}

bool flushToDisk(TextView path)
{
    // The names in folders are written by the system's own log.
    const std::optional<DWORD> attributes = readAttributes(path);
    if (attributes && (*attributes & FOLDER) != 0) return true;
    const FileHandle file = openAny(path, GENERIC_WRITE);
    return file.isOpen() && FlushFileBuffers(file.get()) != 0;
}

Text finalPath(TextView path)
{
    const FileHandle item = openAny(path, 0);
    if (!item.isOpen()) return {};
    Text text = textOf([&](wchar_t* buffer, DWORD size)
                       { return GetFinalPathNameByHandleW(item.get(), buffer, size, VOLUME_NAME_DOS); });
    constexpr TextView LONG_SHARE = L"\\\\?\\UNC\\";
    constexpr TextView LONG_PATH = L"\\\\?\\";
    if (text.starts_with(LONG_SHARE)) return text.replace(0, LONG_SHARE.size(), L"\\\\");
    if (text.starts_with(LONG_PATH)) text.erase(0, LONG_PATH.size());
    return text;
}

bool writeLastWrite(TextView path, FileTicks ticks)
{
    const FILETIME time{.dwLowDateTime = static_cast<DWORD>(ticks), .dwHighDateTime = static_cast<DWORD>(ticks >> 32)};
    const FileHandle item = openAny(path, FILE_WRITE_ATTRIBUTES);
    return item.isOpen() && SetFileTime(item.get(), nullptr, nullptr, &time) != 0;
}

}  // namespace Oxa_1_1::platform::native
