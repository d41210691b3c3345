#pragma once

#include "base/char.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

inline constexpr DWORD SHARE_ALL = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// What a link itself is reached by must end in a name; a root ends in its separator.
inline Text withoutSeparator(TextView path)
{
    while (path.size() > 1 && (path.back() == L'\\' || path.back() == L'/') && path[path.size() - 2] != L':')
        path.remove_suffix(1);
    return Text(path);
}

/// An open file or folder, closed at the end of its scope.
class FileHandle
{
   public:
    explicit FileHandle(HANDLE handle) noexcept : m_handle(handle) {}
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle()
    {
        if (!isOpen()) return;
        const DWORD error = GetLastError();
        CloseHandle(m_handle);
        SetLastError(error);
    }

    HANDLE get() const noexcept { return m_handle; }
    bool isOpen() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }

   private:
    HANDLE m_handle;
};

}  // namespace Oxa_1_1::platform
