#include "base/platform/linux/files/folder_entries.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string_view>
#include <utility>

#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::size_t BUFFER_SIZE = 32768;

EntryKind kindOfMode(mode_t mode)
{
    if (S_ISDIR(mode)) return EntryKind::SUBFOLDER;
    return S_ISREG(mode) ? EntryKind::PLAIN_FILE : EntryKind::OTHER;
}

EntryKind kindOfLink(int folder, const char* name)
{
    struct stat status;
    if (fstatat(folder, name, &status, 0) == 0)
        return S_ISDIR(status.st_mode) ? EntryKind::FOLDER_LINK : EntryKind::FILE_LINK;
    failWith(errno);
    return saysLost(lastError()) ? EntryKind::FILE_LINK : EntryKind::UNKNOWN_LINK;
}

}  // namespace

std::optional<EntryKind> readKind(int folder, const char* name)
{
    struct stat status;
    if (fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return std::nullopt;
    return S_ISLNK(status.st_mode) ? kindOfLink(folder, name) : kindOfMode(status.st_mode);
}

EntryKind kindOf(int folder, const struct dirent64& entry)
{
    switch (entry.d_type)
    {
        case DT_REG:
            return EntryKind::PLAIN_FILE;
        case DT_DIR:
            return EntryKind::SUBFOLDER;
        case DT_LNK:
            return kindOfLink(folder, entry.d_name);
        case DT_UNKNOWN:
            // A few file systems do not tell.
            if (const auto kind = readKind(folder, entry.d_name)) return *kind;
            failWith(errno);
            return saysMissing(lastError()) ? EntryKind::OTHER : EntryKind::UNKNOWN;
        default:
            return EntryKind::OTHER;
    }
}

FolderEntries::FolderEntries(FileDescriptor folder) : m_folder(std::move(folder)) {}

const struct dirent64* FolderEntries::next()
{
    for (;;)
    {
        if (m_position == m_end && !fill()) return nullptr;
        const auto* const found = reinterpret_cast<const struct dirent64*>(m_buffer.get() + m_position);
        m_position += found->d_reclen;
        const std::string_view name = found->d_name;
        if (name != "." && name != "..") return found;
    }
}

bool FolderEntries::rewind()
{
    m_position = m_end = 0;
    return lseek(m_folder.get(), 0, SEEK_SET) == 0 || failWith(errno);
}

/// Whoever removes a folder empties it first.
bool FolderEntries::isRemoved() const
{
    struct stat status;
    return fstat(m_folder.get(), &status) == 0 && status.st_nlink == 0;
}

bool FolderEntries::fill()
{
    if (m_buffer == nullptr) m_buffer = std::make_unique_for_overwrite<std::byte[]>(BUFFER_SIZE);
    const ssize_t size = uninterrupted([&] { return getdents64(m_folder.get(), m_buffer.get(), BUFFER_SIZE); });
    if (size < 0 && !(errno == ENOENT && isRemoved())) return failWith(errno);
    if (size <= 0)
    {
        m_buffer.reset();
        m_position = m_end = 0;
        setLastError(NO_MORE_FILES);
        return false;
    }
    m_position = 0;
    m_end = static_cast<std::size_t>(size);
    return true;
}

}  // namespace Oxa_1_1::platform
