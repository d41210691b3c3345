#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "base/char.h"
#include "base/platform/files/files.h"

/// Folders that are held open. What lies in one is reached by its name alone, so that no path can lead elsewhere
/// meanwhile. As everywhere here, what fails leaves its reason in the last error.
namespace Oxa_1_1::platform
{

namespace native
{
class Folder;
}

/// What happens to a link in the place of what is opened.
enum class Links
{
    /// It fails, with 267.
    REFUSE,
    FOLLOW
};

enum class ReadOnlyFiles
{
    /// Removing one fails with 5.
    STAY,
    GO
};

/// What the owner of a folder may do in it.
enum class OwnerAccess
{
    /// Everything, as long as the folder is filled.
    FULL,
    AS_GIVEN
};

/// What the copy of a file takes over from it, where the system lets it choose.
struct Kept
{
    bool permissions = true;
    bool times = true;
    /// And extended attributes.
    bool owner = false;
};

enum class NewFolder
{
    /// Nobody but the owner has access to it.
    PRIVATE,
    /// As the user makes folders.
    USUAL
};

/// Copies share the same open folder, which is closed with the last of them. All operations are for open ones.
class OpenFolder
{
   public:
    /// None.
    OpenFolder() noexcept = default;
    explicit OpenFolder(std::shared_ptr<native::Folder> folder) noexcept;
    /// By its path, for the top of an operation. It need not be readable until next() is called.
    static OpenFolder at(TextView path, Links links);

    bool isOpen() const noexcept { return m_folder != nullptr; }
    void close() noexcept { m_folder.reset(); }

    /// Reads an entry of these kinds, without "." and "..", in the system's order. False at the end (the last error is
    /// 18), or when reading fails.
    bool next(FolderEntry& entry, EntryKinds kinds = EntryKinds::ALL);
    /// Goes back to the first entry.
    bool rewind();
    /// Asks the system once.
    std::optional<FileIdentity> identity() const;
    /// The folder's own, then those of all folders above it, whatever way has led here. Empty when one cannot be
    /// asked, where the system asks them singly.
    std::vector<FileIdentity> ancestry() const;

    OpenFolder open(TextView name, Links links) const;
    /// What it lies in now.
    OpenFolder openParent() const;

    /// As the functions of files.h with the path of the entry. Links are followed.
    /// @{
    std::optional<FileInformation> readInformation(TextView name) const;
    std::optional<FileIdentity> readIdentity(TextView name) const;
    bool isLink(TextView name) const;
    /// @}
    /// What next() would say of it. None when it is not there. Of what is UNKNOWN, the last error tells why.
    std::optional<EntryKind> readKind(TextView name) const;
    /// Of the entry itself, be it a link.
    std::optional<FileIdentity> readOwnIdentity(TextView name) const;
    std::optional<FileTicks> readOwnLastWrite(TextView name) const;
    /// Whether both are plain files of the same bytes, or links that say the same. If not, the last error is 1006, or
    /// tells why that cannot be seen. What `progress` throws ends the comparison.
    bool isSameContent(TextView name, const OpenFolder& other, TextView otherName,
                       const CopyProgress& progress = {}) const;
    /// Fails with 183 when something of that name is there.
    bool makeFolder(TextView name, NewFolder access = NewFolder::PRIVATE) const;
    /// Gives this folder the permissions of another one, where the system has them.
    bool takePermissions(const OpenFolder& from, OwnerAccess access) const;
    /// Gives it the owner and extended attributes of another one, as far as this user may, where the system has them.
    void takeOwner(const OpenFolder& from) const;
    /// Gives this folder the last write of another one.
    bool takeTimes(const OpenFolder& from) const;
    /// Lets the owner remove what is in it.
    bool unlock();
    /// Whether entries can get from here to the other folder by renaming, as far as that can be told beforehand: both
    /// are on the same disk, by the way that has led to them, and this one may be changed.
    bool canRenameTo(const OpenFolder& target) const;
    /// A file, or a link to one or to nothing.
    bool deleteFile(TextView name, ReadOnlyFiles readOnly) const;
    /// An empty folder, or the link to a folder itself.
    bool removeFolder(TextView name) const;
    /// Renames a file, folder or link; as renameFile().
    bool rename(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists) const;
    /// Gives a file in here one more name, where the file system has that.
    bool addName(TextView name, TextView newName) const;
    /// Renames a file or link onto another one, in one step. A read-only one gives way only when it may.
    bool replace(TextView name, const OpenFolder& target, TextView replaced, ReadOnlyFiles readOnly) const;
    /// What was listed as a PLAIN_FILE must still be one.
    bool copyFile(TextView name, EntryKind kind, const OpenFolder& target, TextView targetName, bool failIfExists,
                  const CopyProgress& progress, Kept kept = {}) const;
    bool copyLink(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists,
                  Kept kept = {}) const;

   private:
    std::shared_ptr<native::Folder> m_folder;
};

}  // namespace Oxa_1_1::platform
