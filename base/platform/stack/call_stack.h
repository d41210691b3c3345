#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/platform/platform_types.h"
#ifdef _WIN32
// The registers of a thread are handled by value here.
#include "base/platform/windows/windows_api.h"
#endif

/// The frames of call stacks: addresses only, no names.
namespace Oxa_1_1::platform
{

/// Reads `size` bytes at `address` of `process` and stores in `read` how many it got. False when it got none.
using ReadMemory = BOOL (*)(HANDLE process, DWORD64 address, void* buffer, DWORD size, DWORD* read, void* userData);

/// Without initial values, because rooms for many are made and few are used.
struct StackFrame
{
    std::uint64_t address;
    /// The address that the frame returns to; 0 for the outermost.
    std::uint64_t returnAddress;
    /// `address` is where a call returns to, so the call itself stands before it.
    bool isAfterCall;

    /// An address within the instruction that is being executed.
    std::uint64_t instruction() const { return isAfterCall && address != 0 ? address - 1 : address; }
};

/// Whose stack is walked, and how.
struct WalkRequest
{
    /// Null for the calling process.
    HANDLE process = nullptr;
    /// Null, or the calling thread itself, walks the calling thread.
    HANDLE thread = nullptr;
    /// Where to begin instead of where the thread is.
    const CONTEXT* context = nullptr;
    /// Reads the stack; null for the system's own way.
    ReadMemory read = nullptr;
    void* userData = nullptr;
    /// Of the calling thread, only frames outside of this one count.
    const void* innermost = nullptr;
};

/// The frame of the function that asks, for WalkRequest::innermost.
#if defined(_MSC_VER) && !defined(__clang__)
#define OXA_CURRENT_FRAME _AddressOfReturnAddress()
#else
#define OXA_CURRENT_FRAME __builtin_frame_address(0)
#endif

/// The memory of a process as its system reads it: never a fault, but false for what cannot be read.
bool readProcessMemory(HANDLE process, std::uint64_t address, void* buffer, std::uint32_t size, std::uint32_t& read);

/// Stores where the calling thread's frames outside of `innermost` return to. No lock, no memory, no symbol: on Linux
/// it may be called from a signal handler. `innermost` is the OXA_CURRENT_FRAME of a function that waits for this one;
/// null: all frames outside of this function.
std::size_t captureStack(std::span<void*> addresses, const void* innermost) noexcept;

/// A handle of the calling thread that other threads may use, until closeThread. Null on failure.
HANDLE openCurrentThread() noexcept;
void closeThread(HANDLE thread) noexcept;

/// The registers at a fault: from the third argument of a signal handler, on Windows from the EXCEPTION_POINTERS.
CONTEXT contextOfFault(const void* fault) noexcept;

/// The process that this is, as a handle for memory and symbols.
HANDLE currentProcess() noexcept;

/// Whether a process that is named by a number and a handle, which counts more, is the one that asks. 0 and null are.
bool isCurrentProcess(std::uint32_t processId, HANDLE process) noexcept;

}  // namespace Oxa_1_1::platform
