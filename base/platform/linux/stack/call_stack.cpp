#include "base/platform/stack/call_stack.h"

#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/formats/unwind.h"
#include "base/platform/linux/stack/quick_walk.h"
#include "base/platform/linux/stack/remote_process.h"
#include "base/platform/linux/stack/stopped_thread.h"
#include "base/platform/linux/stack/walk_stack.h"
#include "base/platform/linux/system/error_code.h"
#include "base/platform/stack/detail/frame_list.h"
#include "base/platform/system/error_text.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr std::pair<unsigned, DWORD64 CONTEXT::*> CONTEXT_FIELDS[]{
    {formats::RAX, &CONTEXT::Rax}, {formats::RDX, &CONTEXT::Rdx}, {formats::RCX, &CONTEXT::Rcx},
    {formats::RBX, &CONTEXT::Rbx}, {formats::RSI, &CONTEXT::Rsi}, {formats::RDI, &CONTEXT::Rdi},
    {formats::RBP, &CONTEXT::Rbp}, {formats::RSP, &CONTEXT::Rsp}, {formats::R8, &CONTEXT::R8},
    {formats::R9, &CONTEXT::R9},   {formats::R10, &CONTEXT::R10}, {formats::R11, &CONTEXT::R11},
    {formats::R12, &CONTEXT::R12}, {formats::R13, &CONTEXT::R13}, {formats::R14, &CONTEXT::R14},
    {formats::R15, &CONTEXT::R15}, {formats::RIP, &CONTEXT::Rip}};

/// ContextFlags: control and integer registers of this processor.
constexpr DWORD HELD_REGISTERS = 0x100003;

CONTEXT contextOf(const formats::Registers& registers)
{
    CONTEXT context{};
    context.ContextFlags = HELD_REGISTERS;
    for (const auto& [number, field] : CONTEXT_FIELDS) context.*field = registers[number];
    return context;
}

/// The registers of the function that it becomes a part of; those that calls need not keep stay 0.
[[gnu::always_inline]] inline void captureRegisters(formats::Registers& registers)
{
    registers = {};
    asm volatile(
        "leaq 0(%%rip), %%rax\n\t"
        "movq %%rax, 128(%0)\n\t"
        "movq %%rbx, 24(%0)\n\t"
        "movq %%rbp, 48(%0)\n\t"
        "movq %%rsp, 56(%0)\n\t"
        "movq %%r12, 96(%0)\n\t"
        "movq %%r13, 104(%0)\n\t"
        "movq %%r14, 112(%0)\n\t"
        "movq %%r15, 120(%0)\n\t"
        :
        : "r"(registers.data())
        : "rax", "memory");
}

/// The calling thread's memory. What lies beyond a signal may be anything, so the system is asked for it.
class OwnSource : public formats::UnwindSource
{
   public:
    __attribute__((no_sanitize_address, no_sanitize_thread)) bool read(std::uint64_t address,
                                                                       std::uint64_t& value) const override
    {
        if (address % sizeof value != 0) return false;
        const iovec to{&value, sizeof value};
        const iovec from{reinterpret_cast<void*>(address), sizeof value};
        // Signal handlers walk, too, and leave errno as it was.
        const int saved = errno;
        const bool isRead = ::process_vm_readv(::getpid(), &to, 1, &from, 1, 0) == sizeof value;
        const bool isRefused = !isRead && errno != EFAULT;
        errno = saved;
        if (!isRefused) return isRead;
        // The system does not answer here, as in some containers.
        value = *reinterpret_cast<const volatile std::uint64_t*>(address);
        return true;
    }

    bool findTable(std::uint64_t address, formats::UnwindTable& table) const override
    {
        return findUnwindTable(address, table);
    }
};

/// Memory that may be anything, read by a function that says so.
class CheckedSource : public formats::UnwindSource
{
   public:
    explicit CheckedSource(const WalkRequest& walk) : m_walk(walk) {}

    bool read(std::uint64_t address, std::uint64_t& value) const override { return readStack(m_walk, address, value); }

    bool findTable(std::uint64_t address, formats::UnwindTable& table) const override
    {
        return findUnwindTable(address, table);
    }

   private:
    const WalkRequest& m_walk;
};

std::size_t walkFrom(const formats::UnwindSource& source, const formats::Registers& registers, detail::FrameList list)
{
    formats::walkFrames(source, registers, [&](auto... frame) { return list.add(frame...); });
    return list.count();
}

std::size_t walkCaller(const formats::Registers& registers, detail::FrameList list)
{
    const QuickStart start{registers[formats::RIP], registers[formats::RSP], registers[formats::RBP], false};
    if (walkQuickly(start, [&](auto... frame) { return list.add(frame...); })) return list.count();
    list.clear();
    return walkFrom(OwnSource(), registers, list);
}

/// Where a function was called, by its own frame: the caller's frame pointer is saved there, below the return address.
OXA_READS_FOREIGN_STACKS QuickStart callerOf(const void* frame)
{
    const auto place = reinterpret_cast<std::uintptr_t>(frame);
    constexpr std::size_t WORD = sizeof(std::uint64_t);
    return {detail::wordAt(place + WORD), place + 2 * WORD, detail::wordAt(place), true};
}

constexpr pid_t CALLING_THREAD = 0;

pid_t threadOf(HANDLE handle)
{
    const auto number = reinterpret_cast<std::intptr_t>(handle);
    return number <= 0 ? CALLING_THREAD : static_cast<pid_t>(number);
}

std::size_t walkOther(const WalkRequest& walk, pid_t thread, std::span<StackFrame> frames)
{
    const StoppedThread stopped(thread);
    if (!stopped.isStopped())
    {
        setLastError(stopped.error());
        return 0;
    }
    const formats::Registers start = walk.context == nullptr ? stopped.registers() : registersOf(*walk.context);
    return walkFrom(CheckedSource(walk), start, {frames, nullptr});
}

}  // namespace

formats::Registers registersOf(const CONTEXT& context)
{
    formats::Registers registers{};
    for (const auto& [number, field] : CONTEXT_FIELDS) registers[number] = context.*field;
    return registers;
}

pid_t processOf(HANDLE handle)
{
    const auto number = reinterpret_cast<std::intptr_t>(handle);
    return number <= 0 ? ::getpid() : static_cast<pid_t>(number);
}

bool readStack(const WalkRequest& walk, std::uint64_t address, std::uint64_t& value)
{
    DWORD count = 0;
    if (walk.read == nullptr)
        return readProcessMemory(walk.process, address, &value, sizeof value, count) && count == sizeof value;
    return walk.read(walk.process, address, &value, sizeof value, &count, walk.userData) != 0 && count == sizeof value;
}

bool readProcessMemory(HANDLE process, std::uint64_t address, void* buffer, std::uint32_t size, std::uint32_t& read)
{
    const iovec to{buffer, size};
    const iovec from{reinterpret_cast<void*>(address), size};
    const ssize_t count = ::process_vm_readv(processOf(process), &to, 1, &from, 1, 0);
    read = count < 0 ? 0 : static_cast<std::uint32_t>(count);
    if (count == static_cast<ssize_t>(size)) return true;
    setLastError(count < 0 ? errorCodeOfErrno(errno) : errorCodeOfErrno(EFAULT));
    return read > 0;
}

std::size_t walkStack(const WalkRequest& walk, std::span<StackFrame> frames)
{
    const pid_t thread = threadOf(walk.thread);
    if (walk.process != nullptr) return walkRemote(walk, processOf(walk.process), thread, frames);
    if (thread != CALLING_THREAD && thread != currentThread()) return walkOther(walk, thread, frames);
    if (walk.context != nullptr) return walkFrom(CheckedSource(walk), registersOf(*walk.context), {frames, nullptr});

    formats::Registers registers;
    captureRegisters(registers);
    const detail::FrameList list(frames, walk.innermost);
    return walk.read == nullptr ? walkCaller(registers, list) : walkFrom(CheckedSource(walk), registers, list);
}

std::size_t captureStack(std::span<void*> addresses, const void* innermost) noexcept
{
    const void* const frame = innermost == nullptr ? OXA_CURRENT_FRAME : innermost;
    void** next = addresses.data();
    void** const end = next + addresses.size();
    const auto add = [&](std::uint64_t address, std::uint64_t, bool)
    {
        if (next == end) return false;
        *next++ = reinterpret_cast<void*>(address);
        return true;
    };
    if (walkQuickly(callerOf(frame), add)) return static_cast<std::size_t>(next - addresses.data());

    next = addresses.data();
    formats::Registers registers;
    captureRegisters(registers);
    const auto bound = reinterpret_cast<std::uintptr_t>(frame);
    // Once outside, all further frames count: a signal may have come in on a stack that lies elsewhere.
    const auto addOutside = [&](std::uint64_t address, std::uint64_t stackPointer, bool isAfterCall)
    { return (next == addresses.data() && stackPointer <= bound) || add(address, stackPointer, isAfterCall); };
    formats::walkFrames(OwnSource(), registers, addOutside);
    return static_cast<std::size_t>(next - addresses.data());
}

HANDLE openCurrentThread() noexcept { return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(currentThread())); }

void closeThread(HANDLE) noexcept {}

CONTEXT contextOfFault(const void* fault) noexcept
{
    return fault == nullptr ? CONTEXT{} : contextOf(registersOfSignal(fault));
}

bool isCurrentProcess(std::uint32_t processId, HANDLE process) noexcept
{
    const auto number = reinterpret_cast<std::intptr_t>(process);
    if (number != 0) return number < 0 || number == ::getpid();
    return processId == 0 || processId == static_cast<std::uint32_t>(::getpid());
}

// Means the caller's own, which a child that is forked later is, too.
HANDLE currentProcess() noexcept { return reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1)); }

}  // namespace Oxa_1_1::platform
