#include "base/platform/stack/call_stack.h"

#include "base/platform/windows/stack/suspended_thread.h"
#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

bool readProcessMemory(HANDLE process, std::uint64_t address, void* buffer, std::uint32_t size, std::uint32_t& read)
{
    SIZE_T count = 0;
    const HANDLE handle = process == nullptr ? GetCurrentProcess() : process;
    const BOOL isRead = ReadProcessMemory(handle, reinterpret_cast<const void*>(address), buffer, size, &count);
    read = static_cast<std::uint32_t>(count);
    return isRead != 0;
}

std::size_t captureFrom(CONTEXT& context, std::span<void*> addresses, std::uint64_t bound) noexcept
{
    UNWIND_HISTORY_TABLE history{};
    std::size_t count = 0;
    while (context.Rip != 0 && count < addresses.size())
    {
        if (context.Rsp > bound) addresses[count++] = reinterpret_cast<void*>(context.Rip);
        DWORD64 base = 0;
        const auto function = RtlLookupFunctionEntry(context.Rip, &base, &history);
        const DWORD64 stack = context.Rsp;
        if (function == nullptr)
        {
            // Only functions that call nothing lack an entry: the return address is on top of the stack.
            std::uint32_t read = 0;
            if (!readProcessMemory(nullptr, stack, &context.Rip, sizeof context.Rip, read)) break;
            context.Rsp += sizeof context.Rip;
            if (count > 1) break;
            continue;
        }
        void* handlerData = nullptr;
        DWORD64 frame = 0;
        RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handlerData, &frame, nullptr);
        if (context.Rsp <= stack) break;
    }
    return count;
}

std::size_t captureStack(std::span<void*> addresses, const void* innermost) noexcept
{
    const auto bound = reinterpret_cast<std::uintptr_t>(innermost == nullptr ? OXA_CURRENT_FRAME : innermost);
    CONTEXT context;
    RtlCaptureContext(&context);
    return captureFrom(context, addresses, bound);
}

HANDLE openCurrentThread() noexcept
{
    HANDLE handle = nullptr;
    const HANDLE process = GetCurrentProcess();
    const BOOL isOpen = DuplicateHandle(process, GetCurrentThread(), process, &handle, 0, FALSE, DUPLICATE_SAME_ACCESS);
    return isOpen != 0 ? handle : nullptr;
}

void closeThread(HANDLE thread) noexcept
{
    if (thread != nullptr) CloseHandle(thread);
}

CONTEXT contextOfFault(const void* fault) noexcept
{
    const auto* const pointers = static_cast<const EXCEPTION_POINTERS*>(fault);
    return pointers == nullptr || pointers->ContextRecord == nullptr ? CONTEXT{} : *pointers->ContextRecord;
}

bool isCurrentProcess(std::uint32_t processId, HANDLE process) noexcept
{
    const DWORD meant = process == nullptr ? processId : GetProcessId(process);
    return (process == nullptr && processId == 0) || meant == GetCurrentProcessId();
}

HANDLE currentProcess() noexcept { return GetCurrentProcess(); }

}  // namespace Oxa_1_1::platform
