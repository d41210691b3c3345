#include "base/platform/linux/system/environment.h"

#include <pwd.h>
#include <unistd.h>

#include <array>

namespace Oxa_1_1::platform
{

namespace
{

/// Services run without the variable.
std::string homeFolder()
{
    if (std::string home = environmentVariable("HOME"); !home.empty()) return home;
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return error == 0 && found != nullptr ? found->pw_dir : "";
}

}  // namespace

std::string configurationFolder()
{
    if (std::string folder = environmentVariable("XDG_CONFIG_HOME"); !folder.empty()) return folder;
    const std::string home = homeFolder();
    return home.empty() ? home : home + "/.config";
}

}  // namespace Oxa_1_1::platform
