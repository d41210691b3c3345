// Folders, read in large pieces as the system has them.

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/platform/detail/native_files.h"
#include "base/platform/last_error.h"
#include "base/platform/linux/native_path.h"
#include "base/platform/linux/reachable_path.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr DWORD FILE_NOT_FOUND = 2;
constexpr DWORD PATH_NOT_FOUND = 3;
constexpr DWORD NO_MORE_FILES = 18;
constexpr DWORD NOT_A_FOLDER = 267;
constexpr std::size_t BUFFER_SIZE = 32768;

class NativeFolderReader : public FolderReader
{
   public:
    explicit NativeFolderReader(FileDescriptor folder)
        : m_folder(std::move(folder)), m_buffer(std::make_unique_for_overwrite<std::byte[]>(BUFFER_SIZE))
    {
    }

    bool next(FolderEntry& entry) override
    {
        const struct dirent64* const found = nextFound();
        if (found == nullptr) return false;
        spellName(found->d_name, entry.name);
        readKind(*found, entry);
        return true;
    }

    const struct dirent64* nextFound()
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

   private:
    bool fill()
    {
        const ssize_t size = uninterrupted([&] { return getdents64(m_folder.get(), m_buffer.get(), BUFFER_SIZE); });
        if (size < 0) return failWith(errno);
        if (size == 0)
        {
            setLastError(NO_MORE_FILES);
            return false;
        }
        m_position = 0;
        m_end = static_cast<std::size_t>(size);
        return true;
    }

    /// The kind stands in the entry, except on a few file systems.
    void readKind(const struct dirent64& found, FolderEntry& entry) const
    {
        struct stat status;
        entry.isLink = found.d_type == DT_LNK;
        entry.isFolder = found.d_type == DT_DIR;
        if (found.d_type == DT_UNKNOWN && fstatat(m_folder.get(), found.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
        {
            entry.isLink = S_ISLNK(status.st_mode);
            entry.isFolder = S_ISDIR(status.st_mode);
        }
        if (entry.isLink)
            entry.isFolder = fstatat(m_folder.get(), found.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
    }

    FileDescriptor m_folder;
    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_position = 0;
    std::size_t m_end = 0;
};

FileDescriptor openToRead(TextView path)
{
    const ReachablePath reachable(path);
    FileDescriptor folder(reachable.open(O_RDONLY | O_DIRECTORY));
    if (folder.isOpen()) return folder;
    struct stat status;
    if (errno == ENOTDIR && fstatat(reachable.folder(), reachable.path(), &status, 0) == 0)
    {
        setLastError(NOT_A_FOLDER);
        return folder;
    }
    reachable.fail();
    // A folder is a path to what is in it.
    if (lastError() == FILE_NOT_FOUND) setLastError(PATH_NOT_FOUND);
    return folder;
}

}  // namespace

std::unique_ptr<FolderReader> openFolder(TextView path)
{
    FileDescriptor folder = openToRead(path);
    if (!folder.isOpen()) return nullptr;
    return std::make_unique<NativeFolderReader>(std::move(folder));
}

bool isEmptyFolder(TextView path)
{
    FileDescriptor folder = openToRead(path);
    if (!folder.isOpen()) return false;
    setLastError(0);
    const bool isEmpty = NativeFolderReader(std::move(folder)).nextFound() == nullptr;
    return isEmpty && lastError() == NO_MORE_FILES;
}

}  // namespace Oxa_1_1::platform::native
