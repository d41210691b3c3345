// Copies of files, which the system makes.

#include <atomic>
#include <cwchar>
#include <exception>
#include <iterator>
#include <optional>
#include <utility>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/windows/files/file_handle.h"
#include "base/platform/windows/files/system_names.h"

namespace Oxa_1_1::platform::native
{

namespace
{

struct Receiver
{
    const CopyProgress& progress;
    bool wasCalled = false;
    std::exception_ptr thrown = nullptr;
};

DWORD CALLBACK report(LARGE_INTEGER total, LARGE_INTEGER done, LARGE_INTEGER /*streamSize*/,
                      LARGE_INTEGER /*streamDone*/, DWORD /*stream*/, DWORD /*reason*/, HANDLE /*source*/,
                      HANDLE /*target*/, void* data)
{
    auto& receiver = *static_cast<Receiver*>(data);
    receiver.wasCalled = true;
    try
    {
        receiver.progress(static_cast<std::uint64_t>(done.QuadPart), static_cast<std::uint64_t>(total.QuadPart));
        return PROGRESS_CONTINUE;
    }
    catch (...)
    {
        // It must not pass through the system.
        receiver.thrown = std::current_exception();
        return PROGRESS_CANCEL;
    }
}

/// The path of the file behind all links; empty when the system does not tell.
Text finalPathOf(const FileHandle& file)
{
    Text path(MAX_PATH, L'\0');
    DWORD length = GetFinalPathNameByHandleW(file.get(), path.data(), static_cast<DWORD>(path.size()), 0);
    if (length > path.size())
    {
        path.resize(length);
        length = GetFinalPathNameByHandleW(file.get(), path.data(), length, 0);
    }
    path.resize(length < path.size() ? length : 0);
    return path;
}

/// The path behind all links of a file that another one may take the place of. None when it is missing, or has to be
/// written in place or refused, which a copy to it settles.
std::optional<Text> replaceablePath(const Text& source, const Text& target)
{
    const FileHandle file(CreateFileW(target.c_str(), GENERIC_WRITE | FILE_READ_ATTRIBUTES, SHARE_ALL, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION info{};
    if (!file.isOpen() || !GetFileInformationByHandle(file.get(), &info)) return std::nullopt;
    constexpr DWORD REFUSED = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
    if (info.nNumberOfLinks != 1 || (info.dwFileAttributes & REFUSED) != 0) return std::nullopt;
    const auto identity = readIdentity(source);
    if (!identity || identity == readIdentity(target)) return std::nullopt;
    Text path = finalPathOf(file);
    return path.empty() ? std::nullopt : std::optional(std::move(path));
}

/// A name of its own beside the file.
Text pathBeside(const Text& path)
{
    static constinit std::atomic<unsigned> count = 0;
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    wchar_t name[64];
    std::swprintf(name, std::size(name), L".oxa-%08lx%08x%016llx", GetCurrentProcessId(), ++count,
                  static_cast<unsigned long long>(ticks.QuadPart));
    return path.substr(0, path.rfind(L'\\') + 1) + name;
}

void removeBeside(const Text& path)
{
    const DWORD reason = GetLastError();
    // It may be read-only, as its source is.
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
    SetLastError(reason);
}

bool copyTo(const Text& from, const Text& to, bool failIfExists, Receiver& receiver)
{
    return CopyFileExW(from.c_str(), to.c_str(), receiver.progress ? &report : nullptr, &receiver, nullptr,
                       failIfExists ? COPY_FILE_FAIL_IF_EXISTS : 0) != 0;
}

/// Whether the folder of the file takes a new one.
bool takesNewFile(const Text& path)
{
    return FileHandle(CreateFileW(path.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr))
        .isOpen();
}

/// None when it has to be written in place after all; then all has been reported if anything was.
std::optional<bool> copyBeside(const Text& from, const Text& replaced, Receiver& receiver)
{
    const Text beside = pathBeside(replaced);
    if (!takesNewFile(beside)) return std::nullopt;
    if (!copyTo(from, beside, true, receiver))
    {
        removeBeside(beside);
        return false;
    }
    if (MoveFileExW(beside.c_str(), replaced.c_str(), MOVEFILE_REPLACE_EXISTING) != 0) return true;
    const DWORD reason = GetLastError();
    removeBeside(beside);
    // Who has the file open may let it be written, but not be removed.
    if (reason == ERROR_ACCESS_DENIED || reason == ERROR_SHARING_VIOLATION) return std::nullopt;
    return false;
}

bool copyReplacing(const Text& from, const Text& to, Receiver& receiver)
{
    if (const auto replaced = replaceablePath(from, to))
        if (const auto result = copyBeside(from, *replaced, receiver)) return *result;
    if (!receiver.wasCalled) return copyTo(from, to, false, receiver);
    const CopyProgress none;
    Receiver silent{.progress = none};
    return copyTo(from, to, false, silent);
}

}  // namespace

bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress)
{
    if (refusesNew(to)) return false;
    Receiver receiver{.progress = progress};
    const Text source = pathForSystem(from);
    const Text target = pathForSystem(to);
    const bool isCopied =
        failIfExists ? copyTo(source, target, true, receiver) : copyReplacing(source, target, receiver);
    if (receiver.thrown != nullptr) std::rethrow_exception(receiver.thrown);
    if (!isCopied || !progress || receiver.wasCalled) return isCopied;
    // Not every system calls it.
    const std::optional<FileInformation> information = readInformation(target);
    const std::uint64_t size = information ? information->size : 0;
    progress(size, size);
    return true;
}

bool copyLink(TextView from, TextView to, bool failIfExists)
{
    // Not every compiler's headers have it.
    constexpr DWORD COPY_LINK_ITSELF = 0x800;
    const DWORD flags = COPY_LINK_ITSELF | (failIfExists ? COPY_FILE_FAIL_IF_EXISTS : 0);
    return !refusesNew(to) &&
           CopyFileExW(pathForSystem(from).c_str(), pathForSystem(to).c_str(), nullptr, nullptr, nullptr, flags) != 0;
}

}  // namespace Oxa_1_1::platform::native
