#include "base/platform/linux/files/reachable_path.h"

#include <fcntl.h>

#include <algorithm>
#include <climits>
#include <string_view>
#include <utility>

#include "base/platform/linux/files/native_path.h"
#include "base/platform/linux/system/error_code.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Up to the last separator, which stays; empty when there is none.
std::string parentOf(const std::string& path)
{
    const std::size_t end = path.find_last_not_of('/');
    return end == std::string::npos ? std::string() : path.substr(0, path.rfind('/', end) + 1);
}

}  // namespace

ReachablePath::ReachablePath(TextView spelling) : m_spelling(spelling), m_path(nativePathOf(spelling))
{
    // It would end the path for the system.
    if (m_path.find('\0') != std::string::npos) giveUp(EINVAL);
    if (m_path.size() >= PATH_MAX) walk();
    if (m_failure == 0) m_itself = itselfOf(m_path);
}

ReachablePath::ReachablePath(int folder, TextView name)
    : m_spelling(name), m_path(nativePathOf(name)), m_itself(m_path), m_folder(folder)
{
}

void ReachablePath::walk()
{
    std::string_view rest = m_path;
    while (rest.size() >= PATH_MAX)
    {
        const std::size_t separator = rest.rfind('/', PATH_MAX - 2);
        if (separator == std::string_view::npos) return giveUp(ENAMETOOLONG);
        const std::string reach(rest.substr(0, separator + 1));
        m_opened = FileDescriptor(
            uninterrupted([&] { return openat(m_folder, reach.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
        if (!m_opened.isOpen()) return giveUp(errno);
        m_folder = m_opened.get();
        rest.remove_prefix(separator + 1);
        rest.remove_prefix(std::min(rest.find_first_not_of('/'), rest.size()));
    }
    m_path = rest.empty() ? "." : std::string(rest);
}

void ReachablePath::giveUp(int number)
{
    m_failure = number;
    m_folder = -1;
    m_path.clear();
    m_itself.clear();
}

std::string ReachablePath::itselfOf(const std::string& path) const
{
    const std::string root = nativeRootOf(m_spelling);
    const std::size_t shortest = m_opened.isOpen() ? 1 : root.size() + 1;
    std::string itself = path;
    while (itself.size() > shortest && itself.back() == '/') itself.pop_back();
    if (!root.empty() && itself == root) itself += '/';
    return itself;
}

std::string ReachablePath::fromAnywhere() const
{
    return m_folder >= 0 ? "/proc/self/fd/" + std::to_string(m_folder) + '/' + m_path : m_path;
}

bool ReachablePath::readStatus(struct stat& status) const
{
    return fstatat(m_folder, path(), &status, 0) == 0 || fail();
}

bool ReachablePath::readOwnStatus(struct stat& status) const
{
    return fstatat(m_folder, itself(), &status, AT_SYMLINK_NOFOLLOW) == 0 || fail();
}

int ReachablePath::open(int flags, mode_t mode) const
{
    // Neither pipes nor terminals keep anybody waiting.
    const int all = flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return uninterrupted([&] { return openat(m_folder, path(), all, mode); });
}

FileDescriptor ReachablePath::openParent(int access) const
{
    const std::string parent = m_itself.substr(0, m_itself.rfind('/') + 1);
    return FileDescriptor(openat(m_folder, parent.empty() ? "." : parent.c_str(), access | O_DIRECTORY | O_CLOEXEC));
}

bool ReachablePath::fail(int number) const
{
    if (m_failure != 0) number = m_failure;
    // The only path that is ill-formed here is the one with a zero in it.
    const bool isIllFormed = m_failure == EINVAL;
    if (!isIllFormed && number != ENOENT) return failWith(number);
    setLastError(isIllFormed ? INVALID_NAME : codeOfMissing());
    return false;
}

DWORD ReachablePath::codeOfMissing() const
{
    const std::string root = nativeRootOf(m_spelling);
    if (!root.empty() && access(root.c_str(), F_OK) != 0)
        return isOnShare(m_spelling) ? SHARE_NOT_FOUND : PATH_NOT_FOUND;
    if (m_failure != 0 || m_path.empty()) return PATH_NOT_FOUND;
    const std::string parent = parentOf(m_path);
    struct stat status;
    const bool hasParent = fstatat(m_folder, parent.empty() ? "." : parent.c_str(), &status, 0) == 0;
    return hasParent && S_ISDIR(status.st_mode) ? FILE_NOT_FOUND : PATH_NOT_FOUND;
}

bool failWith(int number) noexcept
{
    setLastError(errorCodeOfErrno(number));
    return false;
}

}  // namespace Oxa_1_1::platform
