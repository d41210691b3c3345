#pragma once

#include "base/filesystem/detail/tree_walk.h"
#include "base/platform/files/failed_step.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::detail
{

/// Removes what lies in the folder at the top of the way: the files, and with `recursive` the folders with all that is
/// below them. Links go themselves. What stays is reported. Files that are READ_ONLY go in trees that were made only
/// now, whose folders are open to their owner for that.
void removeTreeContents(FolderWay way, bool recursive, platform::ReadOnlyFiles readOnly);

/// Removes a folder whose contents were to go before. What stays in it says more about a failure than that it is not
/// empty.
template <class Remove>
bool removeEmptied(const Remove& remove)
{
    platform::KeptFailure inside;
    const bool isDone = remove();
    if (isDone || platform::lastError() == platform::FOLDER_NOT_EMPTY) inside.restoreStep();
    return isDone;
}

void reportFileThatStays(const String& fullName);
void reportFolderThatStays(const String& fullName);

}  // namespace Oxa_1_1::detail
