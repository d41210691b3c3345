#pragma once

#include "base/platform/platform_types.h"

/// The calling thread's last error, numbered as on Windows everywhere.
namespace Oxa_1_1::platform
{

/// What the last failed operation of the seam left; 0 for none. Successful operations may leave it as it is.
DWORD lastError() noexcept;
void setLastError(DWORD code) noexcept;

/// The numbers that are told apart here.
inline constexpr DWORD FILE_NOT_FOUND = 2;
inline constexpr DWORD PATH_NOT_FOUND = 3;
inline constexpr DWORD ACCESS_DENIED = 5;
inline constexpr DWORD INVALID_HANDLE = 6;
inline constexpr DWORD INVALID_DRIVE = 15;
inline constexpr DWORD NOT_SAME_DEVICE = 17;
inline constexpr DWORD NO_MORE_FILES = 18;
inline constexpr DWORD SHARING_VIOLATION = 32;
inline constexpr DWORD LOCK_VIOLATION = 33;
inline constexpr DWORD NOT_SUPPORTED = 50;
inline constexpr DWORD SHARE_NOT_FOUND = 53;
inline constexpr DWORD FILE_EXISTS = 80;
inline constexpr DWORD INVALID_PARAMETER = 87;
inline constexpr DWORD INVALID_NAME = 123;
inline constexpr DWORD MODULE_NOT_FOUND = 126;
inline constexpr DWORD FOLDER_NOT_EMPTY = 145;
inline constexpr DWORD BAD_PATH = 161;
inline constexpr DWORD ALREADY_EXISTS = 183;
inline constexpr DWORD NOT_A_FOLDER = 267;
inline constexpr DWORD FILE_CHANGED = 1006;
inline constexpr DWORD REQUEST_ABORTED = 1235;
inline constexpr DWORD TOO_MANY_LINKS = 1921;
inline constexpr DWORD NOT_A_LINK = 4390;

/// Whether this code of a failed question says that there is no such file or folder. All others leave that open.
constexpr bool saysMissing(DWORD code) noexcept
{
    return code == FILE_NOT_FOUND || code == PATH_NOT_FOUND || code == SHARE_NOT_FOUND || code == INVALID_NAME ||
           code == NOT_A_FOLDER;
}
/// Whether it says of a link that it leads nowhere.
constexpr bool saysLost(DWORD code) noexcept { return saysMissing(code) || code == TOO_MANY_LINKS; }

}  // namespace Oxa_1_1::platform
