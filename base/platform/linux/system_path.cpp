#include "base/platform/system_path.h"

#include "base/platform/linux/native_path.h"

namespace Oxa_1_1::platform
{

std::filesystem::path systemPath(TextView spelling) { return nativePathOf(spelling); }

Text spellingOfSystemPath(const std::filesystem::path& path) { return spellingOf(path.native()); }

}  // namespace Oxa_1_1::platform
