#include "base/platform/shell_folders.h"

#include "base/platform/linux/environment.h"
#include "base/platform/linux/native_path.h"

namespace Oxa_1_1::platform
{

Text commonProgramFiles()
{
    const std::string folder = environmentVariable("OXA_COMMON_FILES");
    return spellingOf(folder.empty() ? "/usr/share" : folder);
}

}  // namespace Oxa_1_1::platform
