#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/linux/files/folder_entries.h"
#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

class NativeFolderReader : public FolderReader
{
   public:
    explicit NativeFolderReader(FileDescriptor folder) : m_entries(std::move(folder)) {}

    bool nextOf(FolderEntry& entry, EntryKinds kinds) override
    {
        const struct dirent64* found = nullptr;
        do
        {
            found = m_entries.next();
            if (found == nullptr) return false;
            entry.kind = kindOf(m_entries.folder(), *found);
        } while (!isOf(entry.kind, kinds));
        spellName(found->d_name, entry.name);
        return true;
    }

   private:
    FolderEntries m_entries;
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
    const bool isEmpty = FolderEntries(std::move(folder)).next() == nullptr;
    return isEmpty && lastError() == NO_MORE_FILES;
}

}  // namespace Oxa_1_1::platform::native
