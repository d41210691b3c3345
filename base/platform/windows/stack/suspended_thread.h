#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/platform/windows/windows_api.h"

namespace Oxa_1_1::platform
{

/// Holds a thread still as long as it lives.
class SuspendedThread
{
   public:
    explicit SuspendedThread(HANDLE thread) : m_thread(thread), m_isSuspended(SuspendThread(thread) != FAILED) {}
    ~SuspendedThread()
    {
        if (m_isSuspended) ResumeThread(m_thread);
    }
    SuspendedThread(const SuspendedThread&) = delete;
    SuspendedThread& operator=(const SuspendedThread&) = delete;

    bool isSuspended() const { return m_isSuspended; }

   private:
    static constexpr DWORD FAILED = 0xFFFFFFFF;
    HANDLE m_thread;
    bool m_isSuspended;
};

/// Stores where the frames of a thread of this process are whose stack pointers lie above `bound`, from those registers
/// on, and returns their number.
std::size_t captureFrom(CONTEXT& context, std::span<void*> addresses, std::uint64_t bound) noexcept;

}  // namespace Oxa_1_1::platform
