#include "base/platform/files/new_items.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "base/platform/files/detail/native_new_items.h"
#include "base/platform/windows/files/file_handle.h"
#include "base/platform/windows/files/system_names.h"
// It needs the types of the one above.
#include <aclapi.h>

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
    return FileHandle(CreateFileW(pathForSystem(path).c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

/// Records of the system that end in what is as long as it is.
using Record = std::vector<std::max_align_t>;

Record recordOf(std::size_t bytes) { return Record(bytes / sizeof(std::max_align_t) + 1); }

template <class T>
T* as(Record& record)
{
    return reinterpret_cast<T*>(record.data());
}

/// Who acts on this thread. None when the system does not tell.
std::optional<Record> currentUser()
{
    HANDLE opened = nullptr;
    if (!OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &opened) &&
        !OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened))
        return std::nullopt;
    const FileHandle token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    Record user = recordOf(size);
    if (size == 0 || !GetTokenInformation(token.get(), TokenUser, user.data(), size, &size)) return std::nullopt;
    return user;
}

/// Lets nobody in but the user, whatever the folder would hand on; what is made inside inherits that.
class PrivateAccess
{
   public:
    PrivateAccess()
    {
        std::optional<Record> user = currentUser();
        if (!user) return;
        const PSID name = as<TOKEN_USER>(*user)->User.Sid;
        const DWORD size = sizeof(ACL) + sizeof(ACCESS_ALLOWED_ACE) + GetLengthSid(name);
        m_list = recordOf(size);
        ACL* const list = as<ACL>(m_list);
        m_isKnown = InitializeAcl(list, size, ACL_REVISION) &&
                    AddAccessAllowedAceEx(list, ACL_REVISION, OBJECT_INHERIT_ACE | CONTAINER_INHERIT_ACE,
                                          FILE_ALL_ACCESS, name) &&
                    InitializeSecurityDescriptor(&m_descriptor, SECURITY_DESCRIPTOR_REVISION) &&
                    SetSecurityDescriptorDacl(&m_descriptor, TRUE, list, FALSE) &&
                    SetSecurityDescriptorControl(&m_descriptor, SE_DACL_PROTECTED, SE_DACL_PROTECTED);
    }
    PrivateAccess(const PrivateAccess&) = delete;
    PrivateAccess& operator=(const PrivateAccess&) = delete;
    ~PrivateAccess() = default;

    bool isKnown() const noexcept { return m_isKnown; }
    SECURITY_ATTRIBUTES* get() noexcept { return &m_attributes; }

   private:
    Record m_list;
    SECURITY_DESCRIPTOR m_descriptor{};
    SECURITY_ATTRIBUTES m_attributes{
        .nLength = sizeof(SECURITY_ATTRIBUTES), .lpSecurityDescriptor = &m_descriptor, .bInheritHandle = FALSE};
    bool m_isKnown = false;
};

/// Who may not read or set them leaves the new file as it is. What the folder hands on comes anew.
void takeOverPermissions(Text& to, Text& from)
{
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(from.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                              &descriptor) != ERROR_SUCCESS)
        return;
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    GetSecurityDescriptorControl(descriptor, &control, &revision);
    const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                                                : UNPROTECTED_DACL_SECURITY_INFORMATION;
    SetNamedSecurityInfoW(to.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION | inheritance, nullptr, nullptr, list,
                          nullptr);
    LocalFree(descriptor);
}

bool canOpenFor(const Text& path, DWORD access)
{
    return FileHandle(CreateFileW(path.c_str(), access, SHARE_ALL, nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT,
                                  nullptr))
        .isOpen();
}

/// Others that have it open do not count here.
bool mayWrite(const Text& path) { return canOpenFor(path, FILE_WRITE_DATA) || GetLastError() != ERROR_ACCESS_DENIED; }

}  // namespace

Text temporaryFolder()
{
    return textOf([](wchar_t* buffer, DWORD size) { return GetTempPathW(size, buffer); });
}

bool createPrivateFile(TextView path)
{
    PrivateAccess access;
    return !refusesNew(path) && access.isKnown() &&
           FileHandle(CreateFileW(pathForSystem(path).c_str(), GENERIC_WRITE, SHARE_ALL, access.get(), CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr))
               .isOpen();
}

bool createPrivateFolder(TextView path)
{
    PrivateAccess access;
    return !refusesNew(path) && access.isKnown() && CreateDirectoryW(pathForSystem(path).c_str(), access.get()) != 0;
}

bool replaceFile(TextView replacement, TextView target, bool waitForDisk)
{
    if (refusesNew(target)) return false;
    Text from = pathForSystem(replacement);
    Text to = pathForSystem(target);
    const DWORD attributes = GetFileAttributesW(to.c_str());
    const bool isThere = attributes != INVALID_FILE_ATTRIBUTES;
    if (!isThere && GetLastError() != ERROR_FILE_NOT_FOUND) return false;
    if (isThere)
    {
        const bool isFile = (attributes & (READ_ONLY | FOLDER)) == 0 && !isLink(target);
        if (!isFile || !mayWrite(to))
        {
            SetLastError(ERROR_ACCESS_DENIED);
            return false;
        }
        takeOverPermissions(from, to);
        SetFileAttributesW(from.c_str(), attributes & ~LINK);
    }
    const DWORD flags = MOVEFILE_REPLACE_EXISTING | (waitForDisk ? MOVEFILE_WRITE_THROUGH : 0);
    if (MoveFileExW(from.c_str(), to.c_str(), flags)) return true;
    if (GetLastError() != ERROR_ACCESS_DENIED) return false;
    // That is also said of a file that somebody holds open; who just asks is told the difference. One that others may
    // remove meanwhile is not replaced either, and who replaces it at the same time holds it, too.
    if (canOpenFor(to, DELETE) && MoveFileExW(from.c_str(), to.c_str(), flags)) return true;
    const DWORD reason = GetLastError();
    const bool isGone = reason == ERROR_FILE_NOT_FOUND;
    const bool isHeld = isGone ? isThere : reason == ERROR_ACCESS_DENIED && canOpenFor(to, DELETE);
    SetLastError(isHeld ? ERROR_SHARING_VIOLATION : isGone ? ERROR_ACCESS_DENIED : reason);
    return false;
}

bool flushToDisk(TextView path)
{
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
