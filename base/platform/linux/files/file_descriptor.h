#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace Oxa_1_1::platform
{

/// The result of a system call, which is repeated while signals interrupt it.
template <class Call>
auto uninterrupted(const Call& call)
{
    for (;;)
    {
        const auto result = call();
        if (result != -1 || errno != EINTR) return result;
    }
}

/// An open file, closed at the end of its scope.
class FileDescriptor
{
   public:
    explicit FileDescriptor(int number = -1) noexcept : m_number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~FileDescriptor() { close(); }

    int get() const noexcept { return m_number; }
    bool isOpen() const noexcept { return m_number >= 0; }
    /// For a new owner.
    int release() noexcept { return std::exchange(m_number, -1); }
    /// False when the system tells only now that something could not be written. `errno` is kept in a success.
    bool close() noexcept
    {
        if (!isOpen()) return true;
        const int before = errno;
        // Interrupted or not, the descriptor is gone.
        if (::close(std::exchange(m_number, -1)) != 0 && errno != EINTR) return false;
        errno = before;
        return true;
    }

   private:
    int m_number;
};

}  // namespace Oxa_1_1::platform
