#include "base/platform/system/debug_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string_view>

#include "base/text/utf8.h"

namespace Oxa_1_1::platform
{

namespace
{

void writeAll(std::string_view bytes)
{
    const int saved = errno;
    while (!bytes.empty())
    {
        const ssize_t written = ::write(STDERR_FILENO, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) break;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    errno = saved;
}

/// A debugger's process id stands in the status of the process it is attached to.
bool isDebuggerAttached()
{
    const int file = ::open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    std::array<char, 4096> buffer{};
    const ssize_t size = ::read(file, buffer.data(), buffer.size());
    ::close(file);
    const std::string_view status(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
    constexpr std::string_view FIELD = "\nTracerPid:\t";
    const std::size_t at = status.find(FIELD);
    return at != std::string_view::npos && status.substr(at + FIELD.size(), 1) != "0";
}

}  // namespace

void writeDebugOutput(const Char* text)
{
    if (text != nullptr) writeAll(text::encodeUtf8(text));
}

void writeDebugOutput(const char* text)
{
    if (text != nullptr) writeAll(text);
}

void breakIntoDebugger()
{
    if (isDebuggerAttached()) ::raise(SIGTRAP);
}

}  // namespace Oxa_1_1::platform
