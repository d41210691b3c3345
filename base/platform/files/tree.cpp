#include "base/platform/files/tree.h"

#include <utility>

#include "base/platform/files/detail/native_tree.h"
#include "base/platform/files/detail/observed.h"

// The observer sees the names of entries, as the system is to get them.
namespace Oxa_1_1::platform
{

OpenFolder::OpenFolder(std::shared_ptr<native::Folder> folder) noexcept : m_folder(std::move(folder)) {}

OpenFolder OpenFolder::at(TextView path, Links links)
{
    return OpenFolder(observed("openFolder", path, [&] { return native::openTop(path, links); }));
}

bool OpenFolder::next(TreeEntry& entry, EntryKinds kinds)
{
    return observed("nextEntry", {}, [&] { return native::nextEntry(*m_folder, entry, kinds); });
}

bool OpenFolder::rewind()
{
    return observed("rewind", {}, [&] { return native::rewind(*m_folder); });
}

std::optional<FileIdentity> OpenFolder::identity() const
{
    return observed("readIdentity", {}, [&] { return native::readIdentity(*m_folder); });
}

std::vector<FileIdentity> OpenFolder::ancestry() const
{
    return observed("readAncestry", {}, [&] { return native::readAncestry(*m_folder); });
}

OpenFolder OpenFolder::open(TextView name, Links links) const
{
    return OpenFolder(observed("openFolder", name, [&] { return native::open(*m_folder, name, links); }));
}

OpenFolder OpenFolder::openParent() const
{
    return OpenFolder(observed("openFolder", OXA_TEXT(".."), [&] { return native::openParent(*m_folder); }));
}

std::optional<FileInformation> OpenFolder::readInformation(TextView name) const
{
    return observed("readInformation", name, [&] { return native::readInformation(*m_folder, name); });
}

std::optional<FileIdentity> OpenFolder::readIdentity(TextView name) const
{
    return observed("readIdentity", name, [&] { return native::readIdentity(*m_folder, name); });
}

bool OpenFolder::isLink(TextView name) const
{
    return observed("isLink", name, [&] { return native::isLink(*m_folder, name); });
}

std::optional<EntryKind> OpenFolder::readKind(TextView name) const
{
    return observed("readKind", name, [&] { return native::readKind(*m_folder, name); });
}

std::optional<FileIdentity> OpenFolder::readOwnIdentity(TextView name) const
{
    return observed("readIdentity", name, [&] { return native::readOwnIdentity(*m_folder, name); });
}

bool OpenFolder::isSameContent(TextView name, const OpenFolder& other, TextView otherName) const
{
    return observed("isSameContent", name, otherName,
                    [&] { return native::isSameContent(*m_folder, name, *other.m_folder, otherName); });
}

bool OpenFolder::makeFolder(TextView name, NewFolder access) const
{
    return observed("createFolder", name, [&] { return native::makeFolder(*m_folder, name, access); });
}

bool OpenFolder::takePermissions(const OpenFolder& from, OwnerAccess access) const
{
    return observed("takePermissions", {}, [&] { return native::takePermissions(*m_folder, *from.m_folder, access); });
}

bool OpenFolder::takeTimes(const OpenFolder& from) const
{
    return observed("takeTimes", {}, [&] { return native::takeTimes(*m_folder, *from.m_folder); });
}

bool OpenFolder::unlock()
{
    return observed("unlock", {}, [&] { return native::unlock(*m_folder); });
}

bool OpenFolder::canRenameTo(const OpenFolder& target) const
{
    return observed("canRename", {}, [&] { return native::canRename(*m_folder, *target.m_folder); });
}

bool OpenFolder::deleteFile(TextView name, ReadOnlyFiles readOnly) const
{
    return observed("deleteFile", name, [&] { return native::deleteFile(*m_folder, name, readOnly); });
}

bool OpenFolder::removeFolder(TextView name) const
{
    return observed("removeFolder", name, [&] { return native::removeFolder(*m_folder, name); });
}

bool OpenFolder::rename(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists) const
{
    return observed("renameFile", name, targetName,
                    [&] { return native::renameEntry(*m_folder, name, *target.m_folder, targetName, failIfExists); });
}

bool OpenFolder::addName(TextView name, TextView newName) const
{
    return observed("addName", name, newName, [&] { return native::addName(*m_folder, name, newName); });
}

bool OpenFolder::replace(TextView name, TextView replaced, ReadOnlyFiles readOnly) const
{
    return observed("renameFile", name, replaced, [&] { return native::replace(*m_folder, name, replaced, readOnly); });
}

bool OpenFolder::copyFile(TextView name, EntryKind kind, const OpenFolder& target, TextView targetName,
                          bool failIfExists, const CopyProgress& progress, Kept kept) const
{
    return observed("copyFile", name, targetName,
                    [&] {
                        return native::copyFile(*m_folder, name, kind, *target.m_folder, targetName, failIfExists,
                                                progress, kept);
                    });
}

bool OpenFolder::copyLink(TextView name, const OpenFolder& target, TextView targetName, bool failIfExists) const
{
    return observed("copyLink", name, targetName,
                    [&] { return native::copyLink(*m_folder, name, *target.m_folder, targetName, failIfExists); });
}

}  // namespace Oxa_1_1::platform
