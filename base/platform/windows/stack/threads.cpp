#include "base/platform/stack/threads.h"

#include "base/platform/windows/modules/library.h"
#include "base/platform/windows/stack/suspended_thread.h"
// Behind the system's header, which it builds on.
#include <tlhelp32.h>

namespace Oxa_1_1::platform
{

namespace
{

/// Closes its handle.
class Handle
{
   public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    ~Handle()
    {
        if (isOpen()) CloseHandle(m_handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool isOpen() const { return m_handle != nullptr && m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

   private:
    HANDLE m_handle;
};

}  // namespace

std::vector<std::uint32_t> listThreads()
{
    std::vector<std::uint32_t> threads;
    const Handle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    if (!snapshot.isOpen()) return threads;
    for (BOOL isThere = Thread32First(snapshot.get(), &entry); isThere != 0;
         isThere = Thread32Next(snapshot.get(), &entry))
        if (entry.th32OwnerProcessID == GetCurrentProcessId()) threads.push_back(entry.th32ThreadID);
    return threads;
}

std::uint32_t currentThreadId() noexcept { return GetCurrentThreadId(); }

bool isRunning(std::uint32_t thread) noexcept
{
    const Handle handle(OpenThread(THREAD_QUERY_LIMITED_INFORMATION, FALSE, thread));
    DWORD code = 0;
    return handle.isOpen() && GetExitCodeThread(handle.get(), &code) != 0 && code == STILL_ACTIVE;
}

std::string threadName(std::uint32_t thread)
{
    // Older systems do not have it.
    static const Library KERNEL("kernel32.dll");
    HRESULT(WINAPI * describe)(HANDLE, PWSTR*) = nullptr;
    const Handle handle(OpenThread(THREAD_QUERY_LIMITED_INFORMATION, FALSE, thread));
    PWSTR text = nullptr;
    if (!handle.isOpen() || !KERNEL.find("GetThreadDescription", describe) || describe(handle.get(), &text) < 0 ||
        text == nullptr)
        return {};
    std::string name(static_cast<std::size_t>(WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr)),
                     0);
    WideCharToMultiByte(CP_ACP, 0, text, -1, name.data(), static_cast<int>(name.size()), nullptr, nullptr);
    LocalFree(text);
    return name.c_str();
}

std::size_t captureThread(std::uint32_t thread, std::span<void*> addresses)
{
    const Handle handle(OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, thread));
    if (!handle.isOpen()) return 0;
    const SuspendedThread suspended(handle.get());
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    if (!suspended.isSuspended() || GetThreadContext(handle.get(), &context) == 0 || addresses.empty()) return 0;
    const DWORD64 first = context.Rip;
    const std::size_t count = captureFrom(context, addresses, 0);
    if (count > 0) addresses[0] = reinterpret_cast<void*>(first + 1);
    return count;
}

}  // namespace Oxa_1_1::platform
