#include "examples/foldertool/system.h"

#include <windows.h>

#include <shellapi.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <stop_token>
#include <utility>

namespace foldertool::system
{

namespace
{

/// As shells know it from other systems.
constexpr int INTERRUPTED = 130;

std::atomic<bool> isStopped = false;

std::mutex operationMutex;
/// What is to be stopped with the program.
std::stop_source current{std::nostopstate};

/// Called on a thread of its own. False lets the system end the program.
BOOL WINAPI noteControl(DWORD)
{
    if (isStopped.exchange(true)) return FALSE;
    const std::scoped_lock lock(operationMutex);
    current.request_stop();
    return TRUE;
}

}  // namespace

void prepare()
{
    SetConsoleOutputCP(CP_UTF8);
    SetConsoleCtrlHandler(noteControl, TRUE);
}

int stopCode() noexcept { return isStopped ? INTERRUPTED : 0; }

std::shared_ptr<void> stopWhenAsked(std::stop_source operation)
{
    const std::scoped_lock lock(operationMutex);
    current = std::move(operation);
    if (isStopped) current.request_stop();
    return nullptr;
}

bool isOutputPipe() { return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_PIPE; }

std::vector<std::filesystem::path> arguments(int, char**)
{
    // The arguments of main() have lost what the ANSI code page lacks.
    int count = 0;
    const std::unique_ptr<LPWSTR, decltype(&LocalFree)> all(CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
    return count > 0 ? std::vector<std::filesystem::path>(all.get() + 1, all.get() + count)
                     : std::vector<std::filesystem::path>();
}

Oxa_1_1::String textOf(const std::filesystem::path& argument) { return Oxa_1_1::String(argument.native()); }

std::string bytesOf(const std::filesystem::path& argument) { return textOf(argument).stringUTF8(); }

bool isSame(const std::filesystem::path& a, const std::filesystem::path& b)
{
    return textOf(a).compareIgnoreCase(textOf(b)) == 0;
}

int terminalWidth()
{
    CONSOLE_SCREEN_BUFFER_INFO info = {};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &info) == 0) return 0;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

}  // namespace foldertool::system
