#include "base/platform/files.h"

#include <unistd.h>

#include "base/platform/linux/native_path.h"

namespace Oxa_1_1::platform
{

bool isReadable(TextView path) { return access(nativePathOf(path).c_str(), R_OK) == 0; }

}  // namespace Oxa_1_1::platform
