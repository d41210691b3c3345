#pragma once

#include "base/platform/files/files.h"

/// New files and folders, and their way into the place of others, by the rules of files.h.
namespace Oxa_1_1::platform
{

/// Where programs put what is not to stay, as this user is told to; ends with a separator.
Text temporaryFolder();

/// Makes an empty file, or a folder, that nobody else may read. Fails with 80 or 183 when something of that name is
/// there, a link to nothing, too.
/// @{
bool createPrivateFile(TextView path);
bool createPrivateFolder(TextView path);
/// @}

/// Puts a file in the place of another in one step, with the permissions of the one that was there. What this user may
/// not write stays, with error 5, and so does what is no plain file; 32 and 33 say that another program holds the
/// target. Waits on demand until the disk has the new name: when only that fails, the file is in its place.
bool replaceFile(TextView replacement, TextView target, bool waitForDisk);

/// Waits until what the system has buffered of the file is on the disk.
bool flushToDisk(TextView path);

/// What an existing path leads to through all links; empty when it leads nowhere.
Text finalPath(TextView path);

/// Sets the last write.
bool writeLastWrite(TextView path, FileTicks ticks);

}  // namespace Oxa_1_1::platform
