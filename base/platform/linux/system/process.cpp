#include "base/platform/system/process.h"

#include <fstream>
#include <string>

#include "base/platform/linux/files/native_path.h"

namespace Oxa_1_1::platform
{

std::vector<Text> commandLineArguments()
{
    std::vector<Text> arguments;
    std::ifstream file("/proc/self/cmdline", std::ios::binary);
    for (std::string argument; std::getline(file, argument, '\0');) arguments.push_back(decodeKeepingBytes(argument));
    return arguments;
}

}  // namespace Oxa_1_1::platform
