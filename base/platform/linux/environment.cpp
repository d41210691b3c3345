#include "base/platform/linux/environment.h"

#include <cstdlib>

namespace Oxa_1_1::platform
{

std::string environmentVariable(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string configurationFolder()
{
    const std::string folder = environmentVariable("XDG_CONFIG_HOME");
    return folder.empty() ? environmentVariable("HOME") + "/.config" : folder;
}

}  // namespace Oxa_1_1::platform
