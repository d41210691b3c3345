// Open folders: entries are opened relative to their handles. While such a handle is open, nobody renames or removes
// the folder, nor one above it.

// It stands on the third one, and its macros would replace names of the first one.
// clang-format off
#include "base/platform/system/last_error.h"
#include <winternl.h>
#include "base/platform/windows/windows_api.h"
// clang-format on

#include "base/platform/files/tree.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/files/detail/native_links.h"
#include "base/platform/files/detail/native_tree.h"
#include "base/platform/windows/files/file_handle.h"
#include "base/platform/windows/files/system_names.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr ACCESS_MASK LIST = FILE_LIST_DIRECTORY | FILE_TRAVERSE | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
/// For who may not read it.
constexpr ACCESS_MASK REACH = FILE_TRAVERSE | FILE_READ_ATTRIBUTES | SYNCHRONIZE;
constexpr DWORD PINNED = FILE_SHARE_READ | FILE_SHARE_WRITE;
constexpr std::size_t BUFFER_SIZE = 32768;

constexpr FILE_INFORMATION_CLASS RENAME_CLASS = static_cast<FILE_INFORMATION_CLASS>(10);
constexpr FILE_INFORMATION_CLASS DISPOSITION_CLASS = static_cast<FILE_INFORMATION_CLASS>(13);

extern "C" NTSTATUS NTAPI NtSetInformationFile(HANDLE, PIO_STATUS_BLOCK, PVOID, ULONG, FILE_INFORMATION_CLASS);

/// As the system defines it; not every compiler's headers do.
struct RenameInformation
{
    BOOLEAN replaces;
    HANDLE folder;
    ULONG length;
    WCHAR name[1];
};

bool succeeded(NTSTATUS status)
{
    if (status >= 0) return true;
    SetLastError(RtlNtStatusToDosError(status));
    return false;
}

bool hasAttributes(HANDLE handle, FILE_ATTRIBUTE_TAG_INFO& info)
{
    return GetFileInformationByHandleEx(handle, FileAttributeTagInfo, &info, sizeof info) != 0;
}

/// Other services mark their files in the same way.
bool isLinkTag(const FILE_ATTRIBUTE_TAG_INFO& info)
{
    return (info.FileAttributes & LINK) != 0 && IsReparseTagNameSurrogate(info.ReparseTag);
}

std::uint64_t join(DWORD high, DWORD low) { return std::uint64_t{high} << 32 | low; }

FileIdentity identityOf(const BY_HANDLE_FILE_INFORMATION& info)
{
    return {.volume = info.dwVolumeSerialNumber, .index = join(info.nFileIndexHigh, info.nFileIndexLow)};
}

Text finalPath(HANDLE handle, DWORD form)
{
    Text path(MAX_PATH, L'\0');
    DWORD length = GetFinalPathNameByHandleW(handle, path.data(), static_cast<DWORD>(path.size()), form);
    if (length > path.size())
    {
        path.resize(length);
        length = GetFinalPathNameByHandleW(handle, path.data(), static_cast<DWORD>(path.size()), form);
    }
    path.resize(length < path.size() ? length : 0);
    return path;
}

}  // namespace

class Folder
{
   public:
    /// `way` is the path by which it was opened.
    Folder(HANDLE handle, TextView way) : m_handle(handle), m_way(way)
    {
        if (!m_way.empty() && m_way.back() != L'\\') m_way += L'\\';
    }

    HANDLE get() const noexcept { return m_handle.get(); }

    /// INVALID_HANDLE_VALUE sets the last error.
    HANDLE openEntry(TextView name, ACCESS_MASK access, ULONG share, ULONG options, ULONG disposition = FILE_OPEN) const
    {
        UNICODE_STRING text{.Length = static_cast<USHORT>(name.size() * sizeof(WCHAR)),
                            .MaximumLength = static_cast<USHORT>(name.size() * sizeof(WCHAR)),
                            .Buffer = const_cast<WCHAR*>(name.data())};
        OBJECT_ATTRIBUTES attributes{};
        attributes.Length = sizeof attributes;
        attributes.RootDirectory = get();
        attributes.ObjectName = &text;
        attributes.Attributes = OBJ_CASE_INSENSITIVE;
        IO_STATUS_BLOCK block{};
        HANDLE handle = INVALID_HANDLE_VALUE;
        const ULONG all = options | FILE_SYNCHRONOUS_IO_NONALERT | FILE_OPEN_FOR_BACKUP_INTENT;
        const NTSTATUS status = NtCreateFile(&handle, access | SYNCHRONIZE, &attributes, &block, nullptr,
                                             FILE_ATTRIBUTE_NORMAL, share, disposition, all, nullptr, 0);
        return succeeded(status) ? handle : INVALID_HANDLE_VALUE;
    }

    /// The folder's own path, with a separator at its end; empty when it has none.
    Text path() const
    {
        Text path = finalPath(get(), VOLUME_NAME_DOS);
        if (path.empty()) path = finalPath(get(), VOLUME_NAME_GUID);
        // Not every system tells of long ones.
        if (path.empty()) path = m_way;
        if (!path.empty() && path.back() != L'\\') path += L'\\';
        return path;
    }
    Text pathOf(TextView name) const { return Text(m_way).append(name); }

    void rewind() noexcept
    {
        m_position = nullptr;
        m_isFresh = true;
    }

    const FILE_ID_BOTH_DIR_INFO* next()
    {
        if (m_position == nullptr && !fill()) return nullptr;
        const auto* const found = reinterpret_cast<const FILE_ID_BOTH_DIR_INFO*>(m_position);
        m_position = found->NextEntryOffset != 0 ? m_position + found->NextEntryOffset : nullptr;
        return found;
    }

   private:
    struct alignas(8) Buffer
    {
        std::byte bytes[BUFFER_SIZE];
    };

    bool fill()
    {
        if (m_buffer == nullptr) m_buffer = std::make_unique<Buffer>();
        const auto reading = m_isFresh ? FileIdBothDirectoryRestartInfo : FileIdBothDirectoryInfo;
        m_isFresh = false;
        if (!GetFileInformationByHandleEx(get(), reading, m_buffer->bytes, BUFFER_SIZE))
        {
            const DWORD reason = GetLastError();
            m_buffer.reset();
            SetLastError(reason);
            return false;
        }
        m_position = m_buffer->bytes;
        return true;
    }

    FileHandle m_handle;
    Text m_way;
    std::unique_ptr<Buffer> m_buffer;
    const std::byte* m_position = nullptr;
    bool m_isFresh = false;
};

namespace
{

/// The folder, unless it is a link that is not to be followed, or a file.
template <class Open>
SharedFolder openChecked(Links links, TextView way, const Open& open)
{
    const ULONG options = links == Links::REFUSE ? FILE_OPEN_REPARSE_POINT : 0;
    HANDLE handle = open(LIST, PINNED, options);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_ACCESS_DENIED) handle = open(REACH, PINNED, options);
    // Somebody is about to remove or rename it.
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION)
        handle = open(LIST, SHARE_ALL, options);
    if (handle == INVALID_HANDLE_VALUE) return nullptr;
    auto folder = std::make_shared<Folder>(handle, way);
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (!hasAttributes(handle, info)) return nullptr;
    const bool isLink = links == Links::REFUSE && isLinkTag(info);
    if (!isLink && (info.FileAttributes & FOLDER) != 0) return folder;
    SetLastError(ERROR_DIRECTORY);
    return nullptr;
}

FileHandle openItself(const Folder& folder, TextView name, ACCESS_MASK access)
{
    return FileHandle(folder.openEntry(name, access, SHARE_ALL, FILE_OPEN_REPARSE_POINT));
}

std::optional<BY_HANDLE_FILE_INFORMATION> informationOf(const FileHandle& file)
{
    BY_HANDLE_FILE_INFORMATION info{};
    if (!file.isOpen() || !GetFileInformationByHandle(file.get(), &info)) return std::nullopt;
    return info;
}

/// Of what the entry leads to.
std::optional<BY_HANDLE_FILE_INFORMATION> informationBehind(const Folder& folder, TextView name)
{
    return informationOf(FileHandle(folder.openEntry(name, FILE_READ_ATTRIBUTES, SHARE_ALL, 0)));
}

EntryKind kindOfLink(const Folder& folder, TextView name, bool isFolder)
{
    if (!isFolder) return EntryKind::FILE_LINK;
    // It is marked as a folder even when the folder is gone.
    if (const auto behind = informationBehind(folder, name))
        return (behind->dwFileAttributes & FOLDER) != 0 ? EntryKind::FOLDER_LINK : EntryKind::FILE_LINK;
    return saysLost(GetLastError()) ? EntryKind::FILE_LINK : EntryKind::UNKNOWN_LINK;
}

EntryKind kindOf(const Folder& folder, const FILE_ID_BOTH_DIR_INFO& found, TextView name)
{
    const bool isFolder = (found.FileAttributes & FOLDER) != 0;
    // Where extended attributes are not used, their size is the tag. Not every system fills it in.
    const bool mayBeLink = (found.FileAttributes & LINK) != 0;
    const bool isLinkEntry =
        mayBeLink && (found.EaSize != 0 ? IsReparseTagNameSurrogate(found.EaSize) : isLink(folder, name));
    if (!isLinkEntry) return isFolder ? EntryKind::SUBFOLDER : EntryKind::PLAIN_FILE;
    return kindOfLink(folder, name, isFolder);
}

/// When its last handle is closed.
bool removeOpened(const FileHandle& file)
{
    FILE_DISPOSITION_INFO disposition{.DeleteFile = TRUE};
    IO_STATUS_BLOCK block{};
    return succeeded(NtSetInformationFile(file.get(), &block, &disposition, sizeof disposition, DISPOSITION_CLASS));
}

/// Zeros leave the other times and the attributes alone.
bool setWritten(const FileHandle& file, LARGE_INTEGER time)
{
    FILE_BASIC_INFO info{};
    info.LastWriteTime = time;
    return SetFileInformationByHandle(file.get(), FileBasicInfo, &info, sizeof info) != 0;
}

bool differ()
{
    SetLastError(ERROR_FILE_INVALID);
    return false;
}

bool isSameLink(TextView a, TextView b)
{
    const Text textOfA = native::readLink(a);
    const Text textOfB = textOfA.empty() ? Text() : native::readLink(b);
    return !textOfB.empty() && (textOfA == textOfB || differ());
}

bool isSameBytes(const FileHandle& a, const FileHandle& b, const CopyProgress& progress)
{
    LARGE_INTEGER size{};
    if (!GetFileSizeEx(a.get(), &size)) return false;
    std::uint64_t done = 0;
    std::vector<std::byte> pieceOfA(BUFFER_SIZE);
    std::vector<std::byte> pieceOfB(BUFFER_SIZE);
    for (;;)
    {
        DWORD sizeOfA = 0;
        DWORD sizeOfB = 0;
        if (!ReadFile(a.get(), pieceOfA.data(), BUFFER_SIZE, &sizeOfA, nullptr) ||
            !ReadFile(b.get(), pieceOfB.data(), BUFFER_SIZE, &sizeOfB, nullptr))
            return false;
        if (sizeOfA != sizeOfB || std::memcmp(pieceOfA.data(), pieceOfB.data(), sizeOfA) != 0) return differ();
        if (sizeOfA == 0) return true;
        done += sizeOfA;
        if (progress) progress(done, static_cast<std::uint64_t>(size.QuadPart));
    }
}

void makeWritable(const FileHandle& file)
{
    FILE_BASIC_INFO info{};
    if (!GetFileInformationByHandleEx(file.get(), FileBasicInfo, &info, sizeof info)) return;
    if ((info.FileAttributes & READ_ONLY) == 0) return;
    info.FileAttributes = (info.FileAttributes & ~READ_ONLY) | NORMAL;
    SetFileInformationByHandle(file.get(), FileBasicInfo, &info, sizeof info);
}

}  // namespace

Text pathOf(const Folder& folder, TextView name) { return folder.pathOf(name); }

SharedFolder openTop(TextView path, Links links)
{
    const Text text = pathForSystem(links == Links::REFUSE ? withoutSeparator(path) : path);
    return openChecked(links, path,
                       [&](ACCESS_MASK access, ULONG share, ULONG options)
                       {
                           const DWORD flags = options != 0 ? FILE_FLAG_OPEN_REPARSE_POINT : 0;
                           return CreateFileW(text.c_str(), access, share, nullptr, OPEN_EXISTING,
                                              FILE_FLAG_BACKUP_SEMANTICS | flags, nullptr);
                       });
}

SharedFolder open(const Folder& folder, TextView name, Links links)
{
    return openChecked(links, folder.pathOf(name),
                       [&](ACCESS_MASK access, ULONG share, ULONG options)
                       { return folder.openEntry(name, access, share, options | FILE_DIRECTORY_FILE); });
}

SharedFolder openParent(const Folder& folder)
{
    const Text path = folder.path();
    const std::size_t end = path.size() < 2 ? Text::npos : path.rfind(L'\\', path.size() - 2);
    if (end != Text::npos) return openTop(TextView(path).substr(0, end + 1), Links::REFUSE);
    SetLastError(ERROR_PATH_NOT_FOUND);
    return nullptr;
}

bool nextEntry(Folder& folder, FolderEntry& entry, EntryKinds kinds)
{
    for (;;)
    {
        const FILE_ID_BOTH_DIR_INFO* const found = folder.next();
        if (found == nullptr) return false;
        const TextView name(found->FileName, found->FileNameLength / sizeof(WCHAR));
        if (name == L"." || name == L"..") continue;
        entry.kind = kindOf(folder, *found, name);
        if (!isOf(entry.kind, kinds)) continue;
        entry.name = name;
        return true;
    }
}

bool rewind(Folder& folder)
{
    folder.rewind();
    return true;
}

std::optional<FileIdentity> readIdentity(const Folder& folder)
{
    BY_HANDLE_FILE_INFORMATION info{};
    if (!GetFileInformationByHandle(folder.get(), &info)) return std::nullopt;
    return identityOf(info);
}

std::vector<FileIdentity> readAncestry(const Folder& folder)
{
    std::vector<FileIdentity> ancestry;
    Text path = folder.path();
    while (const auto identity = readIdentity(TextView(path)))
    {
        ancestry.push_back(*identity);
        const std::size_t end = path.size() < 2 ? Text::npos : path.rfind(L'\\', path.size() - 2);
        if (end == Text::npos) break;
        path.resize(end + 1);
    }
    return ancestry;
}

std::optional<FileInformation> readInformation(const Folder& folder, TextView name)
{
    const FileHandle file = openItself(folder, name, FILE_READ_ATTRIBUTES);
    FILE_ATTRIBUTE_TAG_INFO tag{};
    auto info = informationOf(file);
    if (!info || !hasAttributes(file.get(), tag)) return std::nullopt;
    const bool isLinkEntry = isLinkTag(tag);
    if (isLinkEntry) info = informationBehind(folder, name);
    if (!info) return std::nullopt;
    const auto ticksOf = [](const FILETIME& time) { return join(time.dwHighDateTime, time.dwLowDateTime); };
    return FileInformation{.attributes = (info->dwFileAttributes & ~LINK) | (isLinkEntry ? LINK : 0),
                           .size = join(info->nFileSizeHigh, info->nFileSizeLow),
                           .created = ticksOf(info->ftCreationTime),
                           .written = ticksOf(info->ftLastWriteTime)};
}

std::optional<FileIdentity> readIdentity(const Folder& folder, TextView name)
{
    const auto info = informationBehind(folder, name);
    return info ? std::optional(identityOf(*info)) : std::nullopt;
}

bool isLink(const Folder& folder, TextView name)
{
    const FileHandle file = openItself(folder, name, FILE_READ_ATTRIBUTES);
    FILE_ATTRIBUTE_TAG_INFO info{};
    return file.isOpen() && hasAttributes(file.get(), info) && isLinkTag(info);
}

std::optional<EntryKind> readKind(const Folder& folder, TextView name)
{
    FILE_ATTRIBUTE_TAG_INFO info{};
    {
        const FileHandle file = openItself(folder, name, FILE_READ_ATTRIBUTES);
        if (!file.isOpen() || !hasAttributes(file.get(), info)) return std::nullopt;
    }
    const bool isFolder = (info.FileAttributes & FOLDER) != 0;
    if (isLinkTag(info)) return kindOfLink(folder, name, isFolder);
    return isFolder ? EntryKind::SUBFOLDER : EntryKind::PLAIN_FILE;
}

std::optional<FileIdentity> readOwnIdentity(const Folder& folder, TextView name)
{
    const auto info = informationOf(openItself(folder, name, FILE_READ_ATTRIBUTES));
    return info ? std::optional(identityOf(*info)) : std::nullopt;
}

std::optional<FileTicks> readOwnLastWrite(const Folder& folder, TextView name)
{
    const auto info = informationOf(openItself(folder, name, FILE_READ_ATTRIBUTES));
    if (!info) return std::nullopt;
    return join(info->ftLastWriteTime.dwHighDateTime, info->ftLastWriteTime.dwLowDateTime);
}

bool isSameContent(const Folder& folder, TextView name, const Folder& other, TextView otherName,
                   const CopyProgress& progress)
{
    const FileHandle a = openItself(folder, name, FILE_GENERIC_READ);
    const FileHandle b = openItself(other, otherName, FILE_GENERIC_READ);
    FILE_ATTRIBUTE_TAG_INFO tagOfA{};
    FILE_ATTRIBUTE_TAG_INFO tagOfB{};
    if (!a.isOpen() || !b.isOpen() || !hasAttributes(a.get(), tagOfA) || !hasAttributes(b.get(), tagOfB)) return false;
    if (isLinkTag(tagOfA) != isLinkTag(tagOfB)) return differ();
    if (isLinkTag(tagOfA)) return isSameLink(folder.pathOf(name), other.pathOf(otherName));
    const bool areFiles = ((tagOfA.FileAttributes | tagOfB.FileAttributes) & FOLDER) == 0;
    return areFiles ? isSameBytes(a, b, progress) : differ();
}

bool makeFolder(const Folder& folder, TextView name, NewFolder /*access*/)
{
    return !refusesNew(folder.pathOf(name)) &&
           FileHandle(folder.openEntry(name, REACH, SHARE_ALL, FILE_DIRECTORY_FILE, FILE_CREATE)).isOpen();
}

/// A new folder has those of the one that it lies in.
bool takePermissions(const Folder& /*folder*/, const Folder& /*from*/, OwnerAccess /*access*/) { return true; }

/// New items are their maker's.
void takeOwner(const Folder& /*folder*/, const Folder& /*from*/) {}

bool takeTimes(const Folder& folder, const Folder& from)
{
    FILE_BASIC_INFO source{};
    if (!GetFileInformationByHandleEx(from.get(), FileBasicInfo, &source, sizeof source)) return false;
    const FileHandle itself(folder.openEntry({}, FILE_WRITE_ATTRIBUTES, SHARE_ALL, FILE_DIRECTORY_FILE));
    return itself.isOpen() && setWritten(itself, source.LastWriteTime);
}

/// The system removes no folder that is marked READ_ONLY.
bool unlock(Folder& folder)
{
    const FileHandle itself(
        folder.openEntry({}, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES, SHARE_ALL, FILE_DIRECTORY_FILE));
    if (itself.isOpen()) makeWritable(itself);
    return itself.isOpen();
}

bool canRename(const Folder& folder, const Folder& target)
{
    const auto from = readIdentity(folder);
    const auto to = readIdentity(target);
    if (!from || !to) return false;
    if (from->volume == to->volume) return true;
    SetLastError(ERROR_NOT_SAME_DEVICE);
    return false;
}

bool deleteFile(const Folder& folder, TextView name, ReadOnlyFiles readOnly)
{
    const bool evenReadOnly = readOnly == ReadOnlyFiles::GO;
    const FileHandle file =
        openItself(folder, name, DELETE | FILE_READ_ATTRIBUTES | (evenReadOnly ? FILE_WRITE_ATTRIBUTES : 0));
    FILE_ATTRIBUTE_TAG_INFO info{};
    if (!file.isOpen() || !hasAttributes(file.get(), info)) return false;
    if ((info.FileAttributes & FOLDER) != 0 && !isLinkTag(info))
    {
        SetLastError(ERROR_ACCESS_DENIED);
        return false;
    }
    if (evenReadOnly) makeWritable(file);
    return removeOpened(file);
}

bool removeFolder(const Folder& folder, TextView name)
{
    const FileHandle file(folder.openEntry(name, DELETE, SHARE_ALL, FILE_DIRECTORY_FILE | FILE_OPEN_REPARSE_POINT));
    return file.isOpen() && removeOpened(file);
}

bool renameEntry(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists)
{
    const FileHandle file = openItself(folder, name, DELETE);
    if (!file.isOpen() || refusesNew(target.pathOf(targetName))) return false;
    const std::size_t bytes = targetName.size() * sizeof(WCHAR);
    std::vector<std::max_align_t> room((sizeof(RenameInformation) + bytes) / sizeof(std::max_align_t) + 1);
    auto* const information = reinterpret_cast<RenameInformation*>(room.data());
    information->replaces = failIfExists ? FALSE : TRUE;
    information->folder = target.get();
    information->length = static_cast<ULONG>(bytes);
    std::memcpy(information->name, targetName.data(), bytes);
    IO_STATUS_BLOCK block{};
    // The shortest names leave room in the record, which is asked for whole.
    const auto size =
        static_cast<ULONG>(std::max(sizeof(RenameInformation), offsetof(RenameInformation, name) + bytes));
    return succeeded(NtSetInformationFile(file.get(), &block, information, size, RENAME_CLASS));
}

bool addName(const Folder& folder, TextView name, TextView newName)
{
    return CreateHardLinkW(folder.pathOf(newName).c_str(), folder.pathOf(name).c_str(), nullptr) != 0;
}

bool replace(const Folder& folder, TextView name, const Folder& target, TextView replaced, ReadOnlyFiles readOnly)
{
    if (readOnly == ReadOnlyFiles::GO)
        if (const FileHandle there = openItself(target, replaced, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES);
            there.isOpen())
            makeWritable(there);
    return renameEntry(folder, name, target, replaced, false);
}

/// The system copies by paths; those of folders that stay open do not change.
bool copyFile(const Folder& folder, TextView name, EntryKind /*kind*/, const Folder& target, TextView targetName,
              bool failIfExists, const CopyProgress& progress, Kept kept)
{
    if (!copyFile(folder.pathOf(name), target.pathOf(targetName), failIfExists, progress)) return false;
    if (kept.permissions && kept.times) return true;
    const FileHandle made = openItself(target, targetName, FILE_READ_ATTRIBUTES | FILE_WRITE_ATTRIBUTES);
    if (!made.isOpen()) return true;
    if (!kept.permissions) makeWritable(made);
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    LARGE_INTEGER time{};
    time.QuadPart = static_cast<LONGLONG>(join(now.dwHighDateTime, now.dwLowDateTime));
    if (!kept.times) setWritten(made, time);
    return true;
}

bool copyLink(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists,
              Kept /*kept*/)
{
    FILE_ATTRIBUTE_TAG_INFO info{};
    {
        const FileHandle link = openItself(folder, name, FILE_READ_ATTRIBUTES);
        if (!link.isOpen() || !hasAttributes(link.get(), info)) return false;
    }
    if ((info.FileAttributes & FOLDER) == 0)
        return copyLink(folder.pathOf(name), target.pathOf(targetName), failIfExists);
    // The system copies links to files only.
    const Text text = native::readLink(folder.pathOf(name));
    const bool isJunction = info.ReparseTag == IO_REPARSE_TAG_MOUNT_POINT;
    return !text.empty() &&
           native::createLink(target.pathOf(targetName), text, isJunction ? LinkKind::JUNCTION : LinkKind::TO_FOLDER);
}

}  // namespace Oxa_1_1::platform::native
