#include "base/platform/stack/threads.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <charconv>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "base/platform/linux/stack/walk_stack.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr const char* TASKS = "/proc/self/task";

}  // namespace

std::vector<std::uint32_t> listThreads()
{
    std::vector<std::uint32_t> threads;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(TASKS, error), end; !error && entry != end; entry.increment(error))
    {
        const std::string name = entry->path().filename().string();
        std::uint32_t number = 0;
        if (std::from_chars(name.data(), name.data() + name.size(), number).ec == std::errc())
            threads.push_back(number);
    }
    return threads;
}

std::uint32_t currentThreadId() noexcept { return static_cast<std::uint32_t>(::syscall(SYS_gettid)); }

bool isRunning(std::uint32_t thread) noexcept { return ::syscall(SYS_tgkill, ::getpid(), thread, 0) == 0; }

std::string threadName(std::uint32_t thread)
{
    std::ifstream file(std::string(TASKS) + "/" + std::to_string(thread) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

std::size_t captureThread(std::uint32_t thread, std::span<void*> addresses)
{
    // Room is taken before the thread is stopped, which may hold the lock of the memory.
    std::vector<StackFrame> frames(addresses.size());
    WalkRequest walk;
    walk.thread = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(thread));
    const std::size_t count = walkStack(walk, frames);
    for (std::size_t i = 0; i < count; ++i)
        addresses[i] = reinterpret_cast<void*>(frames[i].address + (frames[i].isAfterCall ? 0 : 1));
    return count;
}

}  // namespace Oxa_1_1::platform
