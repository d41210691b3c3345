#include "base/platform/system/system_info.h"

#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "base/text/utf8.h"

namespace Oxa_1_1::platform
{

Text decodeNarrow(const std::string& bytes) { return text::decodeUtf8(bytes); }

std::string programFile()
{
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).string();
}

std::string workingFolder()
{
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

std::string environmentVariable(const char* name)
{
    const char* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): the library never sets any
    return value == nullptr ? std::string() : std::string(value);
}

std::string userName()
{
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return error == 0 && found != nullptr ? std::string(found->pw_name) : environmentVariable("USER");
}

std::uint32_t currentProcessId() noexcept { return static_cast<std::uint32_t>(::getpid()); }

char pathSeparator() noexcept { return '/'; }

SystemVersion systemVersion()
{
    utsname names{};
    if (::uname(&names) != 0) return {};
    SystemVersion version;
    version.description = names.release;
    // "6.1.0-18-amd64" is version 6.1, build 0.
    char* rest = names.release;
    for (std::uint32_t* const part : {&version.major, &version.minor, &version.build})
    {
        *part = static_cast<std::uint32_t>(std::strtoul(rest, &rest, 10));
        if (*rest != '.') break;
        ++rest;
    }
    return version;
}

}  // namespace Oxa_1_1::platform
