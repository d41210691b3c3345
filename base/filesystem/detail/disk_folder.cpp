#include "base/filesystem/detail/disk_folder.h"

#include <algorithm>
#include <utility>

#include "base/filesystem/detail/disk.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/windows/oxa_windows_file_system_directory.h"
#include "base/platform/files/files.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

using platform::Links;
using platform::OpenFolder;

DiskFolder::DiskFolder(const Directory& folder)
    : m_written(windowsImpl(folder)->path()), m_absolute(makeAbsolute(m_written))
{
    if (m_absolute == nullptr) m_absolute = m_written;
}

OpenFolder DiskFolder::open(Links links) const { return OpenFolder::at(readablePath(*m_absolute), links); }

OpenFolder DiskFolder::openNearest() const
{
    ParsedDirectory place = *m_absolute;
    for (;;)
    {
        OpenFolder folder = OpenFolder::at(readablePath(place), Links::FOLLOW);
        if (folder.isOpen() || place.levels.empty() || !saysMissing(platform::lastError())) return folder;
        place.levels.dropBack();
    }
}

OpenFolder DiskFolder::openParent() const
{
    if (m_absolute->levels.empty()) return {};
    auto path = copyForChange(*m_absolute);
    path->levels.dropBack();
    const auto parent = makeDirectory(std::move(path));
    return parent->create() ? DiskFolder(*parent).open(Links::FOLLOW) : OpenFolder();
}

std::optional<bool> isFolderThere(const Directory& folder)
{
    if (const auto attributes = platform::readAttributes(windowsImpl(folder)->getFullNameUnicode()))
        return (*attributes & platform::FOLDER) != 0;
    return saysMissing(platform::lastError()) ? std::optional(false) : std::nullopt;
}

OpenTarget openOrMake(const Directory& folder)
{
    const DiskFolder place(folder);
    OpenTarget target;
    if (!folder.exists() && place.written().absolute && !place.absolute()->levels.empty())
    {
        target.parent = place.openParent();
        if (!target.parent.isOpen()) return target;
        const TextView name = place.absolute()->levels.back();
        target.isMade = target.parent.makeFolder(name);
        if (target.isMade) target.folder = target.parent.open(name, Links::REFUSE);
        if (target.isMade && !target.folder.isOpen()) target.parent.removeFolder(name);
    }
    // What is the matter with the others, this tells.
    if (!target.isMade && (folder.exists() || folder.create())) target.folder = place.open(Links::FOLLOW);
    return target;
}

std::vector<platform::FileIdentity> ancestryOfNearest(const DiskFolder& folder)
{
    const OpenFolder nearest = folder.openNearest();
    return nearest.isOpen() ? nearest.ancestry() : std::vector<platform::FileIdentity>();
}

bool contains(const std::vector<platform::FileIdentity>& folders, const std::optional<platform::FileIdentity>& folder)
{
    return folder && std::ranges::find(folders, *folder) != folders.end();
}

}  // namespace Oxa_1_1::detail
