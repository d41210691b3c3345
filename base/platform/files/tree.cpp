#include "base/platform/files/tree.h"

#include <utility>

#include "base/platform/files/detail/native_tree.h"
#include "base/platform/files/detail/observed.h"

// The observer sees the names of entries, as the system is to get them. Failures are noted with their paths.
namespace Oxa_1_1::platform
{

namespace
{

template <class Perform>
std::invoke_result_t<Perform> observedIn(const native::Folder& folder, std::string_view operation, TextView name,
                                         const Perform& perform)
{
    std::invoke_result_t<Perform> result = asked(operation, name, perform);
    if (saysFailure(result)) noteFailedStep(operation, native::pathOf(folder, name));
    return result;
}

/// From one folder to another.
template <class Perform>
bool observedIn(const native::Folder& folder, std::string_view operation, TextView name, const native::Folder& target,
                TextView targetName, const Perform& perform)
{
    const bool isDone = asked(operation, name, targetName, perform);
    if (!isDone) noteFailedStep(operation, native::pathOf(folder, name), native::pathOf(target, targetName));
    return isDone;
}

}  // namespace

OpenFolder::OpenFolder(std::shared_ptr<native::Folder> folder) noexcept : m_folder(std::move(folder)) {}

OpenFolder OpenFolder::at(TextView path, Links links)
{
    return OpenFolder(observed("openFolder", path, [&] { return native::openTop(path, links); }));
}

bool OpenFolder::next(FolderEntry& entry, EntryKinds kinds)
{
    if (asked("nextEntry", {}, [&] { return native::nextEntry(*m_folder, entry, kinds); })) return true;
    if (lastError() != NO_MORE_FILES) noteFailedStep("nextEntry", native::pathOf(*m_folder, {}));
    return false;
}

bool OpenFolder::rewind()
{
    return observedIn(*m_folder, "rewind", {}, [&] { return native::rewind(*m_folder); });
}

std::optional<FileIdentity> OpenFolder::identity() const
{
    return observedIn(*m_folder, "readIdentity", {}, [&] { return native::readIdentity(*m_folder); });
}

std::vector<FileIdentity> OpenFolder::ancestry() const
{
    return observedIn(*m_folder, "readAncestry", {}, [&] { return native::readAncestry(*m_folder); });
}

OpenFolder OpenFolder::open(TextView name, Links links) const
{
    return OpenFolder(observedIn(*m_folder, "openFolder", name, [&] { return native::open(*m_folder, name, links); }));
}

OpenFolder OpenFolder::openParent() const
{
    return OpenFolder(
        observedIn(*m_folder, "openFolder", OXA_TEXT(".."), [&] { return native::openParent(*m_folder); }));
}

std::optional<FileInformation> OpenFolder::readInformation(TextView name) const
{
    return observedIn(*m_folder, "readInformation", name, [&] { return native::readInformation(*m_folder, name); });
}

std::optional<FileIdentity> OpenFolder::readIdentity(TextView name) const
{
    return observedIn(*m_folder, "readIdentity", name, [&] { return native::readIdentity(*m_folder, name); });
}

bool OpenFolder::isLink(TextView name) const
{
    return asked("isLink", name, [&] { return native::isLink(*m_folder, name); });
}

std::optional<EntryKind> OpenFolder::readKind(TextView name) const
{
    return asked("readKind", name, [&] { return native::readKind(*m_folder, name); });
}

std::optional<FileIdentity> OpenFolder::readOwnIdentity(TextView name) const
{
    return asked("readIdentity", name, [&] { return native::readOwnIdentity(*m_folder, name); });
}

std::optional<FileTicks> OpenFolder::readOwnLastWrite(TextView name) const
{
    return asked("readInformation", name, [&] { return native::readOwnLastWrite(*m_folder, name); });
}

bool OpenFolder::isSameContent(TextView name, const OpenFolder& other, TextView otherName,
                               const CopyProgress& progress) const
{
    return asked("compareFiles", name, otherName,
                 [&] { return native::isSameContent(*m_folder, name, *other.m_folder, otherName, progress); });
}

bool OpenFolder::makeFolder(TextView name, NewFolder access) const
{
    return observedIn(*m_folder, "createFolder", name, [&] { return native::makeFolder(*m_folder, name, access); });
}

bool OpenFolder::takePermissions(const OpenFolder& from, OwnerAccess access) const
{
    return observedIn(*m_folder, "takePermissions", {},
                      [&] { return native::takePermissions(*m_folder, *from.m_folder, access); });
}

void OpenFolder::takeOwner(const OpenFolder& from) const
{
    asked("takeOwner", {}, [&] { native::takeOwner(*m_folder, *from.m_folder); });
}

bool OpenFolder::takeTimes(const OpenFolder& from) const
{
    return observedIn(*m_folder, "takeTimes", {}, [&] { return native::takeTimes(*m_folder, *from.m_folder); });
}

bool OpenFolder::unlock()
{
    return observedIn(*m_folder, "unlock", {}, [&] { return native::unlock(*m_folder); });
}

bool OpenFolder::canRenameTo(const OpenFolder& target) const
{
    return observedIn(*m_folder, "canRename", {}, *target.m_folder, {},
                      [&] { return native::canRename(*m_folder, *target.m_folder); });
}

bool OpenFolder::deleteFile(TextView name, ReadOnlyFiles readOnly) const
{
    return observedIn(*m_folder, "deleteFile", name, [&] { return native::deleteFile(*m_folder, name, readOnly); });
}

bool OpenFolder::removeFolder(TextView name) const
{
    return observedIn(*m_folder, "removeFolder", name, [&] { return native::removeFolder(*m_folder, name); });
}

bool OpenFolder::rename(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists) const
{
    return observedIn(*m_folder, "renameFile", name, *target.m_folder, targetName,
                      [&] { return native::renameEntry(*m_folder, name, *target.m_folder, targetName, failIfExists); });
}

bool OpenFolder::addName(TextView name, TextView newName) const
{
    return observedIn(*m_folder, "addName", name, *m_folder, newName,
                      [&] { return native::addName(*m_folder, name, newName); });
}

bool OpenFolder::replace(TextView name, const OpenFolder& target, TextView replaced, ReadOnlyFiles readOnly) const
{
    return observedIn(*m_folder, "renameFile", name, *target.m_folder, replaced,
                      [&] { return native::replace(*m_folder, name, *target.m_folder, replaced, readOnly); });
}

bool OpenFolder::copyFile(TextView name, EntryKind kind, const OpenFolder& target, TextView targetName,
                          bool failIfExists, const CopyProgress& progress, Kept kept) const
{
    return observedIn(*m_folder, "copyFile", name, *target.m_folder, targetName,
                      [&] {
                          return native::copyFile(*m_folder, name, kind, *target.m_folder, targetName, failIfExists,
                                                  progress, kept);
                      });
}

bool OpenFolder::copyLink(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists,
                          Kept kept) const
{
    return observedIn(*m_folder, "copyLink", name, *target.m_folder, targetName,
                      [&]
                      { return native::copyLink(*m_folder, name, *target.m_folder, targetName, failIfExists, kept); });
}

}  // namespace Oxa_1_1::platform
