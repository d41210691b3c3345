#include "base/platform/linux/system/program.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <ctime>

#include "base/platform/linux/files/file_descriptor.h"

namespace Oxa_1_1::platform
{

namespace
{

constexpr int SUCCESS = 0;
constexpr int FAILURE = 1;
constexpr std::chrono::milliseconds STEP{2};

/// How a program is to be started, prepared where memory may still be allocated.
class StartOptions
{
   public:
    StartOptions()
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_init(&m_attributes);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        // A session of its own keeps the terminal's interrupts away from it.
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    }
    StartOptions(const StartOptions&) = delete;
    StartOptions& operator=(const StartOptions&) = delete;
    ~StartOptions()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }

    const posix_spawn_file_actions_t* actions() const { return &m_actions; }
    const posix_spawnattr_t* attributes() const { return &m_attributes; }

   private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// In a process of its own, which ends with the result: the program then has no parent that would have to wait for it.
[[noreturn]] void startAndLeave(char* const* arguments, const StartOptions& options, std::chrono::milliseconds patience)
{
    // What the program leaves is to be collected here, whatever the caller does with its own.
    std::signal(SIGCHLD, SIG_DFL);
    pid_t program = 0;
    if (posix_spawnp(&program, arguments[0], options.actions(), options.attributes(), arguments, environ) != 0)
        _exit(FAILURE);
    for (; patience.count() > 0; patience -= STEP)
    {
        int status = 0;
        const pid_t ended = waitpid(program, &status, WNOHANG);
        if (ended == program) _exit(status == 0 ? SUCCESS : FAILURE);
        constexpr struct timespec PAUSE
        {
            .tv_sec = 0, .tv_nsec = std::chrono::nanoseconds(STEP).count()
        };
        nanosleep(&PAUSE, nullptr);
    }
    _exit(SUCCESS);
}

/// Those of another thread, of the callers' own or of the process, are not to end this one half-way.
class BlockedSignals
{
   public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

   private:
    sigset_t m_before{};
};

}  // namespace

bool runProgram(const std::vector<std::string>& command, std::chrono::milliseconds patience)
{
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const StartOptions options;

    pid_t starter = 0;
    {
        const BlockedSignals blocked;
        starter = fork();
        if (starter == 0) startAndLeave(arguments.data(), options, patience);
    }
    if (starter < 0) return false;
    int status = 0;
    const pid_t ended = uninterrupted([&] { return waitpid(starter, &status, 0); });
    // Where the caller has the system collect all children, the result is unknown, but the program was started.
    return ended == starter ? status == 0 : errno == ECHILD;
}

}  // namespace Oxa_1_1::platform
