// Copies of files, which the system makes.

#include <exception>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/windows/windows_api.h"

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

}  // namespace

bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress)
{
    Receiver receiver{.progress = progress};
    const Text target(to);
    const bool isCopied = CopyFileExW(Text(from).c_str(), target.c_str(), progress ? &report : nullptr, &receiver,
                                      nullptr, failIfExists ? COPY_FILE_FAIL_IF_EXISTS : 0) != 0;
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
    return CopyFileExW(Text(from).c_str(), Text(to).c_str(), nullptr, nullptr, nullptr, flags) != 0;
}

}  // namespace Oxa_1_1::platform::native
