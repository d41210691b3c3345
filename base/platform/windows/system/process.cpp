#include "base/platform/system/process.h"

#include "base/platform/windows/windows_api.h"
// Behind the system's header, which it builds on.
#include <shellapi.h>

namespace Oxa_1_1::platform
{

std::vector<Text> commandLineArguments()
{
    int count = 0;
    wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr) return {};
    std::vector<Text> result(arguments, arguments + count);
    LocalFree(arguments);
    return result;
}

}  // namespace Oxa_1_1::platform
