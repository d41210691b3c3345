#include "base/platform/files.h"

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

bool isReadable(TextView path) { return GetFileAttributesW(Text(path).c_str()) != INVALID_FILE_ATTRIBUTES; }

}  // namespace Oxa_1_1::platform
