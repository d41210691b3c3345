#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "base/char.h"
#include "base/platform/linux/files/file_descriptor.h"
#include "base/platform/platform_types.h"

namespace Oxa_1_1::platform
{

/// A path in a form that system calls take, whatever its length: an open folder, and a path from there that is short
/// enough. Short paths start at the current folder.
class ReachablePath
{
   public:
    explicit ReachablePath(TextView spelling);
    /// The entry of an open folder.
    ReachablePath(int folder, TextView name);
    /// It was listed as an ordinary file, so that opening it does nothing else, unless a link stands there now.
    void expectPlainFile() noexcept { m_isPlainFile = true; }
    bool expectsPlainFile() const noexcept { return m_isPlainFile; }

    /// For the calls that begin with a folder. When none could be reached, they fail.
    int folder() const noexcept { return m_folder; }
    const char* path() const noexcept { return m_path.c_str(); }
    /// For calls that take no folder, as long as this lives; empty when it cannot be reached.
    std::string fromAnywhere() const;
    /// Without separators at the end, which would lead behind a link. The roots of drives and shares keep theirs: the
    /// links that stand for them are nobody's business.
    const char* itself() const noexcept { return m_itself.c_str(); }

    /// Ends in a separator, so that only a folder will do.
    bool asksForFolder() const noexcept { return m_path.ends_with('/'); }

    /// What the path leads to; false sets the last error. The other one looks at a link itself.
    bool readStatus(struct stat& status) const;
    bool readOwnStatus(struct stat& status) const;

    int open(int flags, mode_t mode = 0) const;
    /// The folder that the last name lies in. Not open on failure, with `errno`.
    FileDescriptor openParent(int access) const;

    /// Sets the last error after a call that failed with `number`, and returns false.
    bool fail(int number = errno) const;

   private:
    void walk();
    void giveUp(int number);
    std::string itselfOf(const std::string& path) const;
    DWORD codeOfMissing() const;

    TextView m_spelling;
    std::string m_path;
    std::string m_itself;
    FileDescriptor m_opened;
    int m_folder = AT_FDCWD;
    int m_failure = 0;
    bool m_isPlainFile = false;
};

/// Sets the last error for a value of `errno`, and returns false.
bool failWith(int number) noexcept;

/// No write permission for anybody.
inline bool isReadOnly(const struct stat& status) noexcept { return (status.st_mode & 0222) == 0; }

inline bool isSameFile(const struct stat& a, const struct stat& b) noexcept
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace Oxa_1_1::platform
