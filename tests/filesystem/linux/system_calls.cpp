// The system calls on files, in the place of the standard library's functions of the same names.

#include "tests/filesystem/linux/system_calls.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <utility>

namespace Oxa_1_1::test
{

namespace
{

thread_local constinit SystemCalls* active = nullptr;

template <class... Arguments>
long made(const char* name, long number, Arguments... arguments)
{
    if (const int failure = SystemCalls::answer(name); failure != 0)
    {
        errno = failure;
        return -1;
    }
    return syscall(number, arguments...);
}

}  // namespace

SystemCalls::SystemCalls(Before before) : m_before(std::move(before)) { active = this; }

SystemCalls::~SystemCalls() { active = nullptr; }

int SystemCalls::answer(const char* name)
{
    SystemCalls* const calls = active;
    if (calls == nullptr || calls->m_isAsking) return 0;
    const int before = errno;
    calls->m_isAsking = true;
    const int failure = calls->m_before(++calls->m_count);
    calls->m_isAsking = false;
    if (failure != 0) calls->m_failed = name;
    errno = before;
    return failure;
}

}  // namespace Oxa_1_1::test

using Oxa_1_1::test::made;

// The libraries find these before the system's own.
#pragma GCC visibility push(default)
extern "C"
{
    int openat(int folder, const char* path, int flags, ...)
    {
        std::va_list arguments;
        va_start(arguments, flags);
        const bool makes = (flags & (O_CREAT | __O_TMPFILE)) != 0;
        const unsigned mode = makes ? va_arg(arguments, unsigned) : 0;
        va_end(arguments);
        return static_cast<int>(made("openat", SYS_openat, folder, path, flags, mode));
    }

    int close(int file)
    {
        // It is closed all the same.
        if (const int failure = Oxa_1_1::test::SystemCalls::answer("close"); failure != 0)
        {
            syscall(SYS_close, file);
            errno = failure;
            return -1;
        }
        return static_cast<int>(syscall(SYS_close, file));
    }

    ssize_t read(int file, void* bytes, std::size_t size) { return made("read", SYS_read, file, bytes, size); }
    ssize_t write(int file, const void* bytes, std::size_t size) { return made("write", SYS_write, file, bytes, size); }
    ssize_t getdents64(int folder, void* bytes, std::size_t size) noexcept
    {
        return made("getdents64", SYS_getdents64, folder, bytes, size);
    }
    ssize_t readlinkat(int folder, const char* path, char* text, std::size_t size) noexcept
    {
        return made("readlinkat", SYS_readlinkat, folder, path, text, size);
    }
    off_t lseek(int file, off_t offset, int from) noexcept { return made("lseek", SYS_lseek, file, offset, from); }
    int fstat(int file, struct stat* status) noexcept
    {
        return static_cast<int>(made("fstat", SYS_fstat, file, status));
    }
    int fstatat(int folder, const char* path, struct stat* status, int flags) noexcept
    {
        return static_cast<int>(made("fstatat", SYS_newfstatat, folder, path, status, flags));
    }
    int statx(int folder, const char* path, int flags, unsigned mask, struct statx* status) noexcept
    {
        return static_cast<int>(made("statx", SYS_statx, folder, path, flags, mask, status));
    }
    int unlinkat(int folder, const char* path, int flags) noexcept
    {
        return static_cast<int>(made("unlinkat", SYS_unlinkat, folder, path, flags));
    }
    int mkdirat(int folder, const char* path, mode_t mode) noexcept
    {
        return static_cast<int>(made("mkdirat", SYS_mkdirat, folder, path, mode));
    }
    int renameat(int from, const char* path, int to, const char* target) noexcept
    {
        return static_cast<int>(made("renameat", SYS_renameat, from, path, to, target));
    }
    int renameat2(int from, const char* path, int to, const char* target, unsigned flags) noexcept
    {
        return static_cast<int>(made("renameat2", SYS_renameat2, from, path, to, target, flags));
    }
    int linkat(int from, const char* path, int to, const char* target, int flags) noexcept
    {
        return static_cast<int>(made("linkat", SYS_linkat, from, path, to, target, flags));
    }
    int symlinkat(const char* text, int folder, const char* path) noexcept
    {
        return static_cast<int>(made("symlinkat", SYS_symlinkat, text, folder, path));
    }
    int fchmod(int file, mode_t mode) noexcept { return static_cast<int>(made("fchmod", SYS_fchmod, file, mode)); }
    int fchown(int file, uid_t user, gid_t group) noexcept
    {
        return static_cast<int>(made("fchown", SYS_fchown, file, user, group));
    }
    int faccessat(int folder, const char* path, int mode, int flags) noexcept
    {
        return static_cast<int>(made("faccessat", SYS_faccessat2, folder, path, mode, flags));
    }
    int ftruncate(int file, off_t size) noexcept
    {
        return static_cast<int>(made("ftruncate", SYS_ftruncate, file, size));
    }
    int fallocate(int file, int mode, off_t offset, off_t size)
    {
        return static_cast<int>(made("fallocate", SYS_fallocate, file, mode, offset, size));
    }
    int futimens(int file, const struct timespec times[2]) noexcept
    {
        return static_cast<int>(made("futimens", SYS_utimensat, file, nullptr, times, 0));
    }
    int fcntl(int file, int command, ...)
    {
        std::va_list arguments;
        va_start(arguments, command);
        const long argument = va_arg(arguments, long);
        va_end(arguments);
        return static_cast<int>(made("fcntl", SYS_fcntl, file, command, argument));
    }
}
#pragma GCC visibility pop
