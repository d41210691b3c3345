#pragma once

#include "base/filesystem/detail/tree_walk.h"

namespace Oxa_1_1::detail
{

/// Removes what lies in the folder at the top of the way: the files, and with `recursive` the folders with all that is
/// below them. Links go themselves. What stays is reported. Files that are READ_ONLY go in trees that were made only
/// now, whose folders are open to their owner for that.
void removeTreeContents(FolderWay way, bool recursive, platform::ReadOnlyFiles readOnly);

void reportFileThatStays(const String& fullName);
void reportFolderThatStays(const String& fullName);

}  // namespace Oxa_1_1::detail
