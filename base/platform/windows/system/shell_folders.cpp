#include "base/platform/system/shell_folders.h"

#include <array>

#include "base/platform/windows/windows_api.h"
// Behind the system's header, which it builds on.
#include <shlobj.h>

namespace Oxa_1_1::platform
{

Text commonProgramFiles()
{
    std::array<wchar_t, MAX_PATH> path{};
    const BOOL found = SHGetSpecialFolderPathW(nullptr, path.data(), CSIDL_PROGRAM_FILES_COMMON, FALSE);
    return found != FALSE ? Text(path.data()) : Text();
}

}  // namespace Oxa_1_1::platform
