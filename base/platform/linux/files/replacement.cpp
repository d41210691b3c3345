#include "base/platform/linux/files/replacement.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/xattr.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "base/platform/linux/files/reachable_path.h"

namespace Oxa_1_1::platform
{

namespace
{

/// Nobody else reads or writes what is not whole.
constexpr mode_t PRIVATE = 0600;

/// Empty when it is none.
std::string readLink(int folder, const std::string& name)
{
    std::string text(PATH_MAX, '\0');
    const ssize_t length = readlinkat(folder, name.c_str(), text.data(), text.size());
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

std::string newName()
{
    std::uint64_t number = 0;
    (void)!getrandom(&number, sizeof number, 0);
    char name[32];
    std::snprintf(name, sizeof name, ".oxa-%016llx", static_cast<unsigned long long>(number));
    return name;
}

/// Calls `attempt` with names until one is free.
template <class Attempt>
bool withFreeName(const Attempt& attempt)
{
    constexpr int ATTEMPTS = 100;
    for (int i = 0; i < ATTEMPTS; ++i)
    {
        if (attempt(newName())) return true;
        if (errno != EEXIST) return false;
    }
    return false;
}

}  // namespace

bool takeOwner(const struct stat& from, int to)
{
    struct stat status;
    if (fstat(to, &status) != 0) return false;
    if (status.st_uid == from.st_uid && status.st_gid == from.st_gid) return true;
    return fchown(to, from.st_uid, from.st_gid) == 0;
}

bool takeExtendedAttributes(int from, int to)
{
    const ssize_t length = flistxattr(from, nullptr, 0);
    if (length <= 0) return length == 0 || errno == EOPNOTSUPP || errno == ENOSYS;
    std::string names(static_cast<std::size_t>(length), '\0');
    if (flistxattr(from, names.data(), names.size()) != length) return false;
    for (std::size_t begin = 0; begin < names.size(); begin = names.find('\0', begin) + 1)
    {
        const char* const name = names.c_str() + begin;
        const std::string_view text(name);
        if (text.starts_with("security.") || text.starts_with("trusted.")) continue;
        std::vector<char> value(XATTR_SIZE_MAX);
        const ssize_t size = fgetxattr(from, name, value.data(), value.size());
        if (size < 0 || fsetxattr(to, name, value.data(), static_cast<std::size_t>(size), 0) != 0) return false;
    }
    return true;
}

std::optional<FilePlace> placeBehind(int folder, std::string path)
{
    constexpr int MOST_LINKS = 40;
    FilePlace place;
    for (int links = 0; links <= MOST_LINKS; ++links)
    {
        const std::size_t begin = path.rfind('/') + 1;
        const std::string parent = begin == 0 ? "." : path.substr(0, begin);
        place.name = path.substr(begin);
        FileDescriptor opened(openat(folder, parent.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!opened.isOpen() || place.name.empty()) return std::nullopt;
        place.folder = std::move(opened);
        folder = place.folder.get();
        path = readLink(folder, place.name);
        if (path.empty()) return place;
    }
    return std::nullopt;
}

bool replaceByLink(int folder, const char* name, const char* text)
{
    std::string ownName;
    const auto make = [&](const std::string& free)
    {
        ownName = free;
        return symlinkat(text, folder, free.c_str()) == 0;
    };
    if (!withFreeName(make)) return false;
    if (renameat(folder, ownName.c_str(), folder, name) == 0) return true;
    const int reason = errno;
    unlinkat(folder, ownName.c_str(), 0);
    errno = reason;
    return false;
}

std::optional<Replacement> Replacement::of(int existing, int folder, const char* path)
{
    struct stat status;
    if (fstat(existing, &status) != 0 || status.st_nlink != 1) return std::nullopt;
    auto place = placeBehind(folder, path);
    struct stat found;
    if (!place || fstatat(place->folder.get(), place->name.c_str(), &found, AT_SYMLINK_NOFOLLOW) != 0 ||
        !isSameFile(found, status))
        return std::nullopt;
    Replacement replacement(std::move(*place));
    if (!replacement.create() || !takeOwner(status, replacement.get()) ||
        !takeExtendedAttributes(existing, replacement.get()))
        return std::nullopt;
    return replacement;
}

Replacement::~Replacement()
{
    if (m_ownName.empty()) return;
    const int before = errno;
    unlinkat(m_place.folder.get(), m_ownName.c_str(), 0);
    errno = before;
}

bool Replacement::create()
{
    const int folder = m_place.folder.get();
    m_file = FileDescriptor(openat(folder, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, PRIVATE));
    if (m_file.isOpen()) return true;
    return withFreeName(
        [&](const std::string& name)
        {
            m_file = FileDescriptor(openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, PRIVATE));
            if (m_file.isOpen()) m_ownName = name;
            return m_file.isOpen();
        });
}

bool Replacement::giveName()
{
    if (!m_ownName.empty()) return true;
    const std::string self = "/proc/self/fd/" + std::to_string(m_file.get());
    return withFreeName(
        [&](const std::string& name)
        {
            if (linkat(AT_FDCWD, self.c_str(), m_place.folder.get(), name.c_str(), AT_SYMLINK_FOLLOW) != 0)
                return false;
            m_ownName = name;
            return true;
        });
}

Replacement::Result Replacement::takePlace()
{
    if (!giveName()) return Result::REFUSED;
    // Some file systems write only now.
    if (!m_file.close())
    {
        failWith(errno);
        return Result::FAILED;
    }
    const int folder = m_place.folder.get();
    if (renameat(folder, m_ownName.c_str(), folder, m_place.name.c_str()) == 0)
    {
        m_ownName.clear();
        return Result::DONE;
    }
    // A place where something is mounted, or where only the owner of a file may remove it.
    if (errno == EBUSY || errno == EPERM || errno == EACCES || errno == EXDEV) return Result::REFUSED;
    failWith(errno);
    return Result::FAILED;
}

}  // namespace Oxa_1_1::platform
