#pragma once

#include <sys/types.h>

#include "base/formats/unwind.h"

namespace Oxa_1_1::platform
{

/// Holds another thread of this process still, by a signal whose handler waits, as long as the object lives. Meanwhile
/// its owner must not take a lock or allocate: the thread may hold what would be waited for.
class StoppedThread
{
   public:
    /// One thread is stopped at a time; others wait here. A thread that ends, or keeps the signal blocked for two
    /// seconds, is not stopped.
    explicit StoppedThread(pid_t thread);
    ~StoppedThread();
    StoppedThread(const StoppedThread&) = delete;
    StoppedThread& operator=(const StoppedThread&) = delete;

    bool isStopped() const { return m_isStopped; }
    /// Of a stopped thread: where it was.
    const formats::Registers& registers() const;
    /// The reason, as an error code, when it is not stopped.
    std::uint32_t error() const { return m_error; }

   private:
    bool m_isStopped = false;
    std::uint32_t m_error = 0;
};

/// The calling thread, as the system numbers it.
pid_t currentThread();

/// The registers that a signal handler was handed.
formats::Registers registersOfSignal(const void* signalContext);

}  // namespace Oxa_1_1::platform
