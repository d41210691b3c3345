#include "base/platform/system/shell.h"

#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/files/reachable_path.h"
#include "base/platform/linux/system/program.h"
#include "base/platform/system/detail/native_shell.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

/// Handing over a file is a matter of moments; what takes longer is the application itself.
constexpr std::chrono::milliseconds OPENING{1000};
/// The bus gives up after two seconds.
constexpr std::chrono::milliseconds ANSWERING{3000};

constexpr const char* MANAGER = "org.freedesktop.FileManager1";
constexpr const char* MANAGER_PATH = "/org/freedesktop/FileManager1";
constexpr const char* SHOW_ITEMS = "org.freedesktop.FileManager1.ShowItems";

bool isUnreserved(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

/// All but the plainest characters are escaped, so that the bus's own syntax has nothing to find.
std::string uriOf(const std::string& path)
{
    constexpr std::string_view DIGITS = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char c : path)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(c))
            uri += c;
        else
            uri += {'%', DIGITS[byte >> 4], DIGITS[byte & 15]};
    }
    return uri;
}

std::string absolutePath(const std::string& path)
{
    if (path.starts_with('/')) return path;
    const std::unique_ptr<char, decltype(&std::free)> current(getcwd(nullptr, 0), &std::free);
    return current != nullptr ? std::string(current.get()) + '/' + path : path;
}

bool open(const std::string& path)
{
    // A name that begins like an option is none.
    return runProgram({"xdg-open", path.starts_with('-') ? "./" + path : path}, OPENING);
}

bool showItem(const std::string& uri)
{
    return runProgram(
               {"dbus-send", "--session", "--print-reply", "--reply-timeout=2000", std::string("--dest=") + MANAGER,
                "--type=method_call", MANAGER_PATH, SHOW_ITEMS, "array:string:" + uri, "string:"},
               ANSWERING) ||
           runProgram({"gdbus", "call", "--session", "--timeout", "2", "--dest", MANAGER, "--object-path", MANAGER_PATH,
                       "--method", SHOW_ITEMS, "['" + uri + "']", ""},
                      ANSWERING);
}

std::string folderOf(std::string path)
{
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    const std::size_t end = path.rfind('/');
    return end == 0 ? "/" : path.substr(0, end);
}

bool select(TextView path)
{
    struct stat status;
    if (!ReachablePath(path).readOwnStatus(status)) return false;
    const std::string native = absolutePath(nativePathOf(path));
    return showItem(uriOf(native)) || open(folderOf(native));
}

}  // namespace

std::intptr_t askShell(const ShellRequest& request)
{
    const bool isDone = request.isSelection ? select(request.path) : open(nativePathOf(request.path));
    return isDone ? SHELL_SUCCESS : 0;
}

}  // namespace Oxa_1_1::platform::native
