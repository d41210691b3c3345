#include "base/platform/files/links.h"

#include <array>

#include "base/formats/reparse_point.h"
#include "base/platform/files/detail/native_links.h"
#include "base/platform/windows/files/file_handle.h"
// It needs the types of the one above.
#include <winioctl.h>

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr DWORD MAY_BE_UNPRIVILEGED = 0x2;

FileHandle openItself(const Text& path, DWORD access)
{
    return FileHandle(CreateFileW(path.c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

bool createJunction(const Text& path, TextView target)
{
    std::optional<std::vector<std::byte>> bytes = formats::makeJunction(target);
    if (!bytes)
    {
        SetLastError(ERROR_INVALID_NAME);
        return false;
    }
    if (!CreateDirectoryW(path.c_str(), nullptr)) return false;
    {
        const FileHandle folder = openItself(path, GENERIC_WRITE);
        DWORD written = 0;
        if (folder.isOpen() && DeviceIoControl(folder.get(), FSCTL_SET_REPARSE_POINT, bytes->data(),
                                               static_cast<DWORD>(bytes->size()), nullptr, 0, &written, nullptr))
            return true;
    }
    const DWORD reason = GetLastError();
    RemoveDirectoryW(path.c_str());
    SetLastError(reason);
    return false;
}

/// Some systems that have no links say that they made one.
bool isThere(const Text& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool isAnything = attributes != INVALID_FILE_ATTRIBUTES;
    if (isAnything && (attributes & LINK) != 0) return true;
    SetLastError(isAnything ? ERROR_ALREADY_EXISTS : ERROR_NOT_SUPPORTED);
    return false;
}

bool createSymbolicLink(const Text& path, const Text& target, DWORD flags)
{
    if (CreateSymbolicLinkW(path.c_str(), target.c_str(), flags | MAY_BE_UNPRIVILEGED)) return isThere(path);
    // Systems that do not know the flag refuse it.
    return GetLastError() == ERROR_INVALID_PARAMETER && CreateSymbolicLinkW(path.c_str(), target.c_str(), flags);
}

}  // namespace

Text readLink(TextView path)
{
    const FileHandle link = openItself(withoutSeparator(path), FILE_READ_ATTRIBUTES);
    if (!link.isOpen()) return {};
    std::array<std::byte, MAXIMUM_REPARSE_DATA_BUFFER_SIZE> bytes{};
    DWORD length = 0;
    if (!DeviceIoControl(link.get(), FSCTL_GET_REPARSE_POINT, nullptr, 0, bytes.data(),
                         static_cast<DWORD>(bytes.size()), &length, nullptr))
        return {};
    std::optional<Text> target = formats::readReparsePoint(std::span(bytes).first(length));
    if (target) return std::move(*target);
    SetLastError(ERROR_NOT_A_REPARSE_POINT);
    return {};
}

bool createLink(TextView path, TextView target, LinkKind kind)
{
    const Text link = withoutSeparator(path);
    if (kind == LinkKind::JUNCTION) return createJunction(link, target);
    return createSymbolicLink(link, Text(target), kind == LinkKind::TO_FOLDER ? SYMBOLIC_LINK_FLAG_DIRECTORY : 0);
}

}  // namespace Oxa_1_1::platform::native
