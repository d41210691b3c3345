#include "base/platform/linux/system/environment.h"

namespace Oxa_1_1::platform
{

std::string configurationFolder()
{
    const std::string folder = environmentVariable("XDG_CONFIG_HOME");
    return folder.empty() ? environmentVariable("HOME") + "/.config" : folder;
}

}  // namespace Oxa_1_1::platform
