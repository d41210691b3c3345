#pragma once

#include "base/platform/files/tree.h"
#include "base/platform/linux/files/reachable_path.h"

/// The operations of files.h that are made in open folders, too.
namespace Oxa_1_1::platform::native
{

std::optional<FileInformation> readInformation(const ReachablePath& path);
bool deleteFile(const ReachablePath& path);
bool removeFolder(const ReachablePath& path);
bool renameFile(const ReachablePath& from, const ReachablePath& to, bool failIfExists);
/// What is missing cannot be replaced, but gets a new name as well.
bool replaceByRenaming(const ReachablePath& from, const ReachablePath& to, ReadOnlyFiles readOnly);
bool copyFile(const ReachablePath& from, const ReachablePath& to, bool failIfExists, const CopyProgress& progress,
              Kept kept = {});
bool isSameContent(const ReachablePath& a, const ReachablePath& b, const CopyProgress& progress);
bool copyLink(const ReachablePath& from, const ReachablePath& to, bool failIfExists, Kept kept = {});

}  // namespace Oxa_1_1::platform::native
