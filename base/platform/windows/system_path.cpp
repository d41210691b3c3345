#include "base/platform/system_path.h"

namespace Oxa_1_1::platform
{

std::filesystem::path systemPath(TextView spelling) { return spelling; }

Text spellingOfSystemPath(const std::filesystem::path& path) { return path.native(); }

}  // namespace Oxa_1_1::platform
