#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "base/char.h"
#include "base/platform/platform_types.h"

/// Files and folders by their Windows spelling. Each function makes one operation of the system, says whether it
/// succeeded, and else leaves the reason in the last error of the thread.
namespace Oxa_1_1::platform
{

/// Attribute bits.
inline constexpr DWORD READ_ONLY = 0x1;
inline constexpr DWORD FOLDER = 0x10;
/// None of the others.
inline constexpr DWORD NORMAL = 0x80;
/// A symbolic link or junction.
inline constexpr DWORD LINK = 0x400;

/// 100 ns ticks since 1601.
using FileTicks = std::uint64_t;

struct FileInformation
{
    DWORD attributes = 0;
    std::uint64_t size = 0;
    FileTicks created = 0;
    FileTicks written = 0;
};

/// Follows links: all is told of what the path leads to, and LINK says that it is one. None when there is no such file
/// or folder.
std::optional<FileInformation> readInformation(TextView path);
/// Just the attributes, in the same way.
std::optional<DWORD> readAttributes(TextView path);
bool writeAttributes(TextView path, DWORD attributes);

/// Whether the path itself is a link (of any kind; a dangling one, too).
bool isLink(TextView path);

/// What makes two spellings the same file or folder; links are followed.
struct FileIdentity
{
    std::uint64_t volume = 0;
    std::uint64_t index = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};
std::optional<FileIdentity> readIdentity(TextView path);

/// Fails with 534 for files of 2 GiB and more.
bool statFile(TextView path, struct _stat64i32& result);

/// Whether the file or folder is there and may be read.
bool isReadable(TextView path);
/// Opens the existing file or folder for just this access, sharing everything, and closes it at once. Folders open only
/// when `attributes` hold FOLDER.
bool canOpen(TextView path, bool read, bool write, DWORD attributes);

enum class Touch
{
    FAILED,
    CREATED,
    EXISTED
};
/// Opens a file for writing, and makes it when it is missing; one that is there gets the current time as its last
/// write.
Touch touchFile(TextView path);
/// Writes what the system has buffered of the file to the disk.
void flushFile(TextView path);
/// Sets the last write of a folder to the current time.
bool touchFolder(TextView path);

/// Removes a file, or the link to one or to nothing itself. Read-only files stay, with error 5.
bool deleteFile(TextView path);
/// Renames a file or folder; an existing target file is replaced, unless it is read-only. With `failIfExists` nothing
/// is ever replaced, not even what came a moment ago: it fails with 183, or with 50 where the file system cannot
/// promise it.
bool renameFile(TextView from, TextView to, bool failIfExists = false);

/// Called with the bytes copied and the size of the file, at least every MiB and once at the end.
using CopyProgress = std::function<void(std::uint64_t done, std::uint64_t total)>;
/// Copies content, attributes and times. An existing target stays until the copy is whole, which then takes its place
/// at once; only one of several names, or one in a folder that takes no new file, is written in place. What is
/// incomplete is removed on failure. `progress` may be empty.
bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress);
/// Copies a link itself, with its time.
bool copyLink(TextView from, TextView to, bool failIfExists);

/// Fails with 183 when there is such a folder or file.
bool createFolder(TextView path);
/// Removes an empty folder, or the link to a folder itself, even if that is gone.
bool removeFolder(TextView path);
/// Whether the folder is there and holds nothing.
bool isEmptyFolder(TextView path);

enum class EntryKind : std::uint8_t
{
    PLAIN_FILE,
    SUBFOLDER,
    /// To a file, to something else or to nothing.
    FILE_LINK,
    FOLDER_LINK,
    /// The system does not tell what it leads to.
    UNKNOWN_LINK,
    /// A pipe, a device and the like.
    OTHER,
    /// The system does not tell what it is.
    UNKNOWN
};

constexpr bool isFolder(EntryKind kind) noexcept
{
    return kind == EntryKind::SUBFOLDER || kind == EntryKind::FOLDER_LINK;
}
constexpr bool isLink(EntryKind kind) noexcept
{
    return kind == EntryKind::FILE_LINK || kind == EntryKind::FOLDER_LINK || kind == EntryKind::UNKNOWN_LINK;
}
/// Whether it counts as a file, but may be a folder or lead to one.
constexpr bool isUnknown(EntryKind kind) noexcept
{
    return kind == EntryKind::UNKNOWN_LINK || kind == EntryKind::UNKNOWN;
}

struct FolderEntry
{
    Text name;
    EntryKind kind = EntryKind::PLAIN_FILE;
};
/// What is unknown is among all of them.
enum class EntryKinds
{
    ALL,
    FILES,
    FOLDERS
};
constexpr bool isOf(EntryKind kind, EntryKinds kinds) noexcept
{
    return kinds == EntryKinds::ALL || isUnknown(kind) || isFolder(kind) == (kinds == EntryKinds::FOLDERS);
}
/// Reads a folder an entry at a time, without "." and "..", in the system's order.
class FolderReader
{
   public:
    FolderReader() = default;
    FolderReader(const FolderReader&) = delete;
    FolderReader& operator=(const FolderReader&) = delete;
    virtual ~FolderReader() = default;
    /// False at the end (the last error is 18), or when reading fails: what was read until then counts.
    bool next(FolderEntry& entry) { return nextOf(entry, EntryKinds::ALL); }
    /// The same, passing over entries of other kinds.
    virtual bool nextOf(FolderEntry& entry, EntryKinds kinds) = 0;
};
/// Null when the folder cannot be opened.
std::unique_ptr<FolderReader> openFolder(TextView path);

/// The current folder of the process for 0, or that of a drive (1 for A); empty when there is none.
Text currentFolder(int drive);

}  // namespace Oxa_1_1::platform
