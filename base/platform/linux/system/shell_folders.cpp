#include "base/platform/system/shell_folders.h"

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/system/environment.h"

namespace Oxa_1_1::platform
{

Text commonProgramFiles()
{
    const std::string folder = environmentVariable("OXA_COMMON_FILES");
    return spellingOf(folder.empty() ? "/usr/share" : folder);
}

}  // namespace Oxa_1_1::platform
