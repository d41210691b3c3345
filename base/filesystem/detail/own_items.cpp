#include "base/filesystem/detail/own_items.h"

#include <utility>

#include "base/filesystem/detail/disk_folder.h"
#include "base/filesystem/detail/items.h"
#include "base/filesystem/detail/tree_removal.h"
#include "base/platform/files/failed_step.h"

namespace Oxa_1_1::detail
{

namespace
{

using platform::Links;
using platform::OpenFolder;
using platform::ReadOnlyFiles;

/// Who is told of failures may throw, and there may be no memory.
template <class Remove>
void removeQuietly(const Remove& remove) noexcept
{
    platform::KeptFailure reason;
    try
    {
        remove();
    }
    catch (...)
    {
        // It stays.
    }
    reason.restore();
}

}  // namespace

void removeOwnFolder(const Directory& folder) noexcept
{
    removeQuietly(
        [&]
        {
            const DiskFolder place(folder);
            OpenFolder top = place.open(Links::REFUSE);
            if (top.isOpen()) removeTreeContents(place.way(std::move(top)), true, ReadOnlyFiles::GO);
            folder.remove(false);
        });
}

void removeOwnFile(const File& file) noexcept
{
    removeQuietly(
        [&]
        {
            if (windowsImpl(file) == nullptr)
            {
                file.remove();
                return;
            }
            const OpenFolder folder = OpenFolder::at(file.getDirectory()->getFullNameUnicode(), Links::FOLLOW);
            if (folder.isOpen()) folder.deleteFile(file.getName(), ReadOnlyFiles::GO);
        });
}

}  // namespace Oxa_1_1::detail
