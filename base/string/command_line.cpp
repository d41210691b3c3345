#include "base/string/command_line.h"

#include "base/platform/system/process.h"

namespace Oxa_1_1
{

std::vector<String> commandLineArguments()
{
    std::vector<Text> texts = platform::commandLineArguments();
    return {texts.begin(), texts.end()};
}

}  // namespace Oxa_1_1
