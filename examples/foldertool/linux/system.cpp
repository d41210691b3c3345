#include "examples/foldertool/system.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <thread>
#include <utility>

#include "base/string/code_page_interface.h"

namespace foldertool::system
{

namespace
{

constexpr int SIGNAL_EXIT_CODE = 128;

std::atomic<int> signalNumber = 0;

void noteSignal(int number) { signalNumber = number; }

void catchSignal(int number, int flags)
{
    struct sigaction action = {};
    action.sa_handler = noteSignal;
    action.sa_flags = flags;
    sigaction(number, &action, nullptr);
}

/// As by nohup.
bool isIgnored(int number)
{
    struct sigaction action = {};
    return sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

/// A file opened later must not take the place of a standard stream that was closed.
void openStandardStreams()
{
    int file = open("/dev/null", O_RDONLY);
    while (file >= 0 && file <= STDERR_FILENO) file = dup(file);
    if (file >= 0) close(file);
}

}  // namespace

void prepare()
{
    openStandardStreams();
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        if (number == SIGINT || !isIgnored(number)) catchSignal(number, SA_RESTART | static_cast<int>(SA_RESETHAND));
    // It comes with every write to a pipe that nobody reads.
    catchSignal(SIGPIPE, SA_RESTART);
}

int stopCode() noexcept
{
    const int number = signalNumber;
    return number == 0 ? 0 : SIGNAL_EXIT_CODE + number;
}

std::shared_ptr<void> stopWhenAsked(std::stop_source operation)
{
    // What a signal interrupts may not be used by its handler.
    auto watch = [operation = std::move(operation)](const std::stop_token& isOver) mutable
    {
        constexpr std::chrono::milliseconds INTERVAL(10);
        while (!isOver.stop_requested() && !operation.stop_requested())
        {
            if (stopCode() != 0) operation.request_stop();
            std::this_thread::sleep_for(INTERVAL);
        }
    };
    return std::make_shared<std::jthread>(std::move(watch));
}

/// A signal comes with that.
bool isOutputPipe() { return false; }

std::vector<std::filesystem::path> arguments(int argc, char** argv)
{
    return argc > 0 ? std::vector<std::filesystem::path>(argv + 1, argv + argc) : std::vector<std::filesystem::path>();
}

Oxa_1_1::String textOf(const std::filesystem::path& argument)
{
    return Oxa_1_1::String(Oxa_1_1::UTF8Interface(argument.c_str()));
}

std::string bytesOf(const std::filesystem::path& argument) { return argument.native(); }

bool isSame(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code error;
    return std::filesystem::equivalent(a, b, error);
}

int terminalWidth()
{
    constexpr int USUAL_WIDTH = 80;
    if (isatty(STDERR_FILENO) == 0) return 0;
    struct winsize size = {};
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : USUAL_WIDTH;
}

}  // namespace foldertool::system
