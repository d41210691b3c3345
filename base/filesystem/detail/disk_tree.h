#pragma once

#include <memory>

#include "base/filesystem/directory.h"
#include "base/filesystem/progress.h"

/// Operations on whole trees of the library's own folders, each by open folders from its top down. They do what those
/// of Directory say, with folders that are there.
namespace Oxa_1_1::detail
{

/// Whether everything in the folder is the library's own, too.
bool isOnDisk(const Directory& folder) noexcept;

void emptyOnDisk(const Directory& folder, bool recursive);
bool sizeOnDisk(const Directory& folder, unsigned long long& bytes);
bool copyContentsOnDisk(const Directory& source, const Directory& target, bool recursive, bool overwrite,
                        std::shared_ptr<IProgress> progress);
/// To a folder that need not be there; on failure it is removed.
bool copyOnDisk(const Directory& source, const Directory& copy, bool overwrite, std::shared_ptr<IProgress> progress);
/// Whether something of the source lies in the folder, be it by way of a link. When that cannot be seen, it may.
bool mayLieIn(const Directory& source, const Directory& folder);
/// Leaves nothing in the source but what came meanwhile. False also for a link.
bool moveContentsOnDisk(const Directory& source, const Directory& target, bool overwrite);
/// Moves the link itself.
bool moveLinkOnDisk(const Directory& link, const Directory& target, bool overwrite);

}  // namespace Oxa_1_1::detail
