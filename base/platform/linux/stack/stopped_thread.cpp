#include "base/platform/linux/stack/stopped_thread.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <mutex>

#include "base/platform/linux/system/error_code.h"

namespace Oxa_1_1::platform
{

namespace
{

using Word = std::atomic<std::uint32_t>;

// The stage stands in the low bits of a word whose other bits count the requests, so that a thread which wakes late
// cannot take a later request for its own.
enum Stage : std::uint32_t
{
    Idle,
    Requested,
    Arriving,
    Stopped,
    STAGES
};

constinit Word stage{Idle};
constinit std::atomic<pid_t> requestedThread{0};
constinit formats::Registers registersOfThread{};
constinit std::mutex oneAtATime;

constexpr std::chrono::seconds LONGEST_WAIT{2};
constexpr long WAIT_SLICE_NANOSECONDS = 10'000'000;

void waitWhile(const Word& word, std::uint32_t value, const timespec* timeout)
{
    ::syscall(SYS_futex, &word, FUTEX_WAIT_PRIVATE, value, timeout, nullptr, 0);
}

void setStage(std::uint32_t value)
{
    stage.store(value);
    ::syscall(SYS_futex, &stage, FUTEX_WAKE_PRIVATE, 2, nullptr, nullptr, 0);
}

void onStop(int, siginfo_t*, void* context)
{
    const int savedErrno = errno;
    std::uint32_t request = stage.load();
    if (request % STAGES == Requested && requestedThread.load() == currentThread() &&
        stage.compare_exchange_strong(request, request - Requested + Arriving))
    {
        const std::uint32_t stopped = request - Requested + Stopped;
        registersOfThread = registersOfSignal(context);
        setStage(stopped);
        while (stage.load() == stopped) waitWhile(stage, stopped, nullptr);
    }
    errno = savedErrno;
}

/// Takes the highest signal that the program leaves to the system; 0 when it uses all.
int installStopSignal()
{
    for (int signal = SIGRTMAX; signal >= SIGRTMIN; --signal)
    {
        struct sigaction current = {};
        if (::sigaction(signal, nullptr, &current) != 0 || current.sa_handler != SIG_DFL) continue;
        struct sigaction action = {};
        action.sa_sigaction = onStop;
        action.sa_flags = SA_SIGINFO | SA_RESTART | SA_ONSTACK;
        sigfillset(&action.sa_mask);
        if (::sigaction(signal, &action, nullptr) == 0) return signal;
    }
    return 0;
}

bool send(pid_t thread, int signal) { return ::syscall(SYS_tgkill, ::getpid(), thread, signal) == 0; }

/// Waits for the thread that was signalled. 0, or the error.
int awaitStop(pid_t thread, std::uint32_t requested)
{
    const auto deadline = std::chrono::steady_clock::now() + LONGEST_WAIT;
    const timespec slice{0, WAIT_SLICE_NANOSECONDS};
    for (;;)
    {
        std::uint32_t now = stage.load();
        if (now % STAGES == Stopped) return 0;
        waitWhile(stage, now, &slice);
        const bool hasEnded = !send(thread, 0);
        if (!hasEnded && std::chrono::steady_clock::now() < deadline) continue;
        // Unless it has just begun to stop, it is late: its handler will find nothing to do.
        now = requested;
        if (stage.compare_exchange_strong(now, requested - Requested)) return hasEnded ? ESRCH : ETIMEDOUT;
    }
}

}  // namespace

pid_t currentThread() { return static_cast<pid_t>(::syscall(SYS_gettid)); }

formats::Registers registersOfSignal(const void* signalContext)
{
    const auto& from = static_cast<const ucontext_t*>(signalContext)->uc_mcontext.gregs;
    constexpr std::array<int, formats::REGISTER_COUNT> ORDER{REG_RAX, REG_RDX, REG_RCX, REG_RBX, REG_RSI, REG_RDI,
                                                             REG_RBP, REG_RSP, REG_R8,  REG_R9,  REG_R10, REG_R11,
                                                             REG_R12, REG_R13, REG_R14, REG_R15, REG_RIP};
    formats::Registers registers{};
    std::transform(ORDER.begin(), ORDER.end(), registers.begin(),
                   [&](int index) { return static_cast<std::uint64_t>(from[index]); });
    return registers;
}

StoppedThread::StoppedThread(pid_t thread)
{
    oneAtATime.lock();
    static const int STOP_SIGNAL = installStopSignal();
    const std::uint32_t requested = stage.load() + STAGES + Requested;
    int error = STOP_SIGNAL == 0 ? EAGAIN : 0;
    if (error == 0)
    {
        requestedThread.store(thread);
        stage.store(requested);
        error = send(thread, STOP_SIGNAL) ? awaitStop(thread, requested) : errno;
        if (error != 0) stage.store(requested - Requested);
    }
    m_isStopped = error == 0;
    m_error = errorCodeOfErrno(error);
}

StoppedThread::~StoppedThread()
{
    if (m_isStopped) setStage(stage.load() - Stopped);
    oneAtATime.unlock();
}

const formats::Registers& StoppedThread::registers() const { return registersOfThread; }

}  // namespace Oxa_1_1::platform
