#pragma once

#include "base/platform/files/new_items.h"

/// The operations of new_items.h as each system makes them.
namespace Oxa_1_1::platform::native
{

Text temporaryFolder();
bool createPrivateFile(TextView path);
bool createPrivateFolder(TextView path);
bool replaceFile(TextView replacement, TextView target, bool waitForDisk);
bool flushToDisk(TextView path);
Text finalPath(TextView path);
bool writeLastWrite(TextView path, FileTicks ticks);

}  // namespace Oxa_1_1::platform::native
