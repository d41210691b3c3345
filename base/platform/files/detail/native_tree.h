#pragma once

#include "base/platform/files/tree.h"

/// The operations of tree.h as each system makes them.
namespace Oxa_1_1::platform::native
{

using SharedFolder = std::shared_ptr<Folder>;

/// Of an entry, for messages; that of the folder itself for no name.
Text pathOf(const Folder& folder, TextView name);
SharedFolder openTop(TextView path, Links links);
SharedFolder open(const Folder& folder, TextView name, Links links);
SharedFolder openParent(const Folder& folder);
bool nextEntry(Folder& folder, FolderEntry& entry, EntryKinds kinds);
bool rewind(Folder& folder);
std::optional<FileIdentity> readIdentity(const Folder& folder);
std::vector<FileIdentity> readAncestry(const Folder& folder);
std::optional<FileInformation> readInformation(const Folder& folder, TextView name);
std::optional<FileIdentity> readIdentity(const Folder& folder, TextView name);
bool isLink(const Folder& folder, TextView name);
std::optional<EntryKind> readKind(const Folder& folder, TextView name);
std::optional<FileIdentity> readOwnIdentity(const Folder& folder, TextView name);
std::optional<FileTicks> readOwnLastWrite(const Folder& folder, TextView name);
bool isSameContent(const Folder& folder, TextView name, const Folder& other, TextView otherName,
                   const CopyProgress& progress);
bool makeFolder(const Folder& folder, TextView name, NewFolder access);
bool takePermissions(const Folder& folder, const Folder& from, OwnerAccess access);
void takeOwner(const Folder& folder, const Folder& from);
bool takeTimes(const Folder& folder, const Folder& from);
bool unlock(Folder& folder);
bool canRename(const Folder& folder, const Folder& target);
bool deleteFile(const Folder& folder, TextView name, ReadOnlyFiles readOnly);
bool removeFolder(const Folder& folder, TextView name);
bool renameEntry(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists);
bool addName(const Folder& folder, TextView name, TextView newName);
bool replace(const Folder& folder, TextView name, const Folder& target, TextView replaced, ReadOnlyFiles readOnly);
bool copyFile(const Folder& folder, TextView name, EntryKind kind, const Folder& target, TextView targetName,
              bool failIfExists, const CopyProgress& progress, Kept kept);
bool copyLink(const Folder& folder, TextView name, const Folder& target, TextView targetName, bool failIfExists,
              Kept kept);

}  // namespace Oxa_1_1::platform::native
