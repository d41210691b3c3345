#include "base/platform/system/debug_output.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
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

/// What the beginning of a file of the system says.
class FileHead
{
   public:
    explicit FileHead(const char* name)
    {
        const int file = ::open(name, O_RDONLY | O_CLOEXEC);
        if (file < 0) return;
        const ssize_t size = ::read(file, m_buffer.data(), m_buffer.size());
        ::close(file);
        m_size = size > 0 ? static_cast<std::size_t>(size) : 0;
    }

    std::string_view text() const { return {m_buffer.data(), m_size}; }

   private:
    std::array<char, 4096> m_buffer{};
    std::size_t m_size = 0;
};

/// A program that takes cores is asked whatever the limit is.
bool isCoreWanted()
{
    rlimit limit{};
    return (::getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_cur > 0) ||
           FileHead("/proc/sys/kernel/core_pattern").text().starts_with('|');
}

/// A debugger's process id stands in the status of the process it is attached to.
bool isDebuggerAttached()
{
    const FileHead head("/proc/self/status");
    const std::string_view status = head.text();
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

void leaveCoreFile()
{
    if (!isCoreWanted()) return;
    // A copy of the process is aborted, because this one has an exit code to return.
    const pid_t copy = ::_Fork();
    if (copy == 0)
    {
        std::signal(SIGABRT, SIG_DFL);
        sigset_t abortOnly;
        sigemptyset(&abortOnly);
        sigaddset(&abortOnly, SIGABRT);
        ::sigprocmask(SIG_UNBLOCK, &abortOnly, nullptr);
        std::raise(SIGABRT);
        ::_exit(0);
    }
    while (copy > 0 && ::waitpid(copy, nullptr, __WALL) < 0 && errno == EINTR)
    {
    }
}

}  // namespace Oxa_1_1::platform
