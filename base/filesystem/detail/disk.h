#pragma once

#include "base/platform/platform_types.h"
#include "base/platform/system/last_error.h"
#include "base/string/oxa_string.h"

struct _stat64i32;

/// What is asked of the system for files and folders alike.
namespace Oxa_1_1::detail
{

using platform::saysLost;
using platform::saysMissing;

/// False for null.
bool readCreationTime(const String& path, FILETIME* time);
bool readLastWriteTime(const String& path, FILETIME* time);
/// One separator at the end of the path does not count, unless it is that of a root.
bool readStatus(const String& path, struct _stat64i32& result);
/// 0 exists, 2 write, 4 read, 6 both.
bool canAccess(const String& path, int mode);

}  // namespace Oxa_1_1::detail
