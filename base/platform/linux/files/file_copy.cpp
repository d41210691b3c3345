// Copies of files: what may be copied onto what, and what is left of it when that fails.

#include <fcntl.h>
#include <sys/stat.h>

#include <climits>
#include <string>
#include <string_view>
#include <utility>

#include "base/platform/files/detail/native_files.h"
#include "base/platform/linux/files/file_content.h"
#include "base/platform/linux/files/places.h"
#include "base/platform/linux/files/replacement.h"
#include "base/platform/system/last_error.h"

namespace Oxa_1_1::platform::native
{

namespace
{

bool failWithCode(DWORD code)
{
    setLastError(code);
    return false;
}

/// Pipes, devices and sockets would keep the copy waiting for ever, or do what nobody asked for.
bool isCopyable(const struct stat& status)
{
    if (S_ISDIR(status.st_mode)) return failWith(EISDIR);
    return S_ISREG(status.st_mode) || failWithCode(NOT_SUPPORTED);
}

bool readStatus(const FileDescriptor& file, struct stat& status)
{
    return fstat(file.get(), &status) == 0 || failWith(errno);
}

FileDescriptor openSource(const ReachablePath& path, struct stat& status)
{
    const bool isPlain = path.expectsPlainFile();
    // What may be a device is looked at before it is opened, since that may do something already.
    if (!isPlain && (!path.readStatus(status) || !isCopyable(status))) return FileDescriptor();
    FileDescriptor file(path.open(O_RDONLY | (isPlain ? O_NOFOLLOW : 0)));
    if (!file.isOpen())
        path.fail();
    else if (!readStatus(file, status) || !isCopyable(status))
        file.close();
    return file;
}

/// Opened for writing, and as it was; not open when it may not be replaced: the last error tells why.
FileDescriptor openReplaceable(const ReachablePath& path, const struct stat& source)
{
    const auto isReplaceable = [&](const struct stat& target)
    {
        if (!isCopyable(target)) return false;
        if (isSameFile(target, source)) return failWithCode(SHARING_VIOLATION);
        return !isReadOnly(target) || failWith(EACCES);
    };
    struct stat status;
    if (!path.readStatus(status) || !isReplaceable(status)) return FileDescriptor();
    FileDescriptor file(path.open(O_WRONLY));
    if (!file.isOpen())
        path.fail();
    else if (!readStatus(file, status) || !isReplaceable(status))
        file.close();
    return file;
}

/// The file to write. Unless it is kept, it is removed at the end.
class Target
{
   public:
    explicit Target(const ReachablePath& path) : m_path(path) {}
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    ~Target()
    {
        if (m_file.isOpen() && !m_isKept) remove(m_file);
    }

    bool create(mode_t mode)
    {
        m_file = FileDescriptor(m_path.open(O_WRONLY | O_CREAT | O_EXCL, mode));
        return m_file.isOpen();
    }

    bool takeExisting(FileDescriptor file)
    {
        if (uninterrupted([&] { return ftruncate(file.get(), 0); }) != 0) return m_path.fail();
        m_file = std::move(file);
        return true;
    }

    int get() const { return m_file.get(); }

    bool keep()
    {
        m_isKept = true;
        if (m_file.close()) return true;
        // Some file systems write only now.
        failWith(errno);
        if (FileDescriptor file(m_path.open(O_WRONLY)); file.isOpen()) remove(file);
        return false;
    }

   private:
    void remove(const FileDescriptor& file) const
    {
        const DWORD reason = lastError();
        // What cannot be removed is at least empty.
        (void)!ftruncate(file.get(), 0);
        struct stat status;
        if (fstat(file.get(), &status) == 0) unlinkSame(status);
        setLastError(reason);
    }

    /// Removes the file, not a link that leads to it.
    void unlinkSame(const struct stat& status) const
    {
        const auto place = placeBehind(m_path.folder(), m_path.itself());
        struct stat found;
        if (place && fstatat(place->folder.get(), place->name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 &&
            isSameFile(found, status))
            unlinkat(place->folder.get(), place->name.c_str(), 0);
    }

    const ReachablePath& m_path;
    FileDescriptor m_file;
    bool m_isKept = false;
};

/// Who may write a file need not own it; then it keeps what it has.
void copyModeAndTimes(int from, const struct stat& source, int to, Kept kept)
{
    // Only with its owner has it the rights of that one.
    const mode_t bits = kept.owner && takeOwner(source, to) ? 07777 : 0777;
    const mode_t mode = source.st_mode & bits;
    const struct timespec times[]
    {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, source.st_mtim
    };
    // A new file may have all of it already, and to look is less than to set.
    struct stat target;
    const bool isSet = !kept.permissions || (fstat(to, &target) == 0 && (target.st_mode & bits) == mode);
    if (!isSet) (void)!fchmod(to, mode);
    if (kept.owner) takeExtendedAttributes(from, to);
    if (kept.times) futimens(to, times);
}

/// An open file, from its beginning, into an empty one.
bool copyInto(int target, int source, const struct stat& status, CopyReporter& reporter, Kept kept = {})
{
    FileContent content(source, target, status, reporter);
    if (!content.copy()) return false;
    copyModeAndTimes(source, status, target, kept);
    reporter.setDone(content.done());
    return true;
}

bool copyToTarget(Target& target, int source, const struct stat& status, CopyReporter& reporter, Kept kept = {})
{
    return copyInto(target.get(), source, status, reporter, kept) && target.keep();
}

bool replaceFile(const ReachablePath& path, int source, const struct stat& status, CopyReporter& reporter)
{
    FileDescriptor existing = openReplaceable(path, status);
    if (!existing.isOpen()) return false;
    Target target(path);
    auto replacement = Replacement::of(existing.get(), path.folder(), path.itself());
    if (!replacement) return target.takeExisting(std::move(existing)) && copyToTarget(target, source, status, reporter);

    if (!copyInto(replacement->get(), source, status, reporter)) return false;
    const auto result = replacement->takePlace();
    if (result != Replacement::Result::REFUSED) return result == Replacement::Result::DONE;
    // All has been reported.
    const CopyProgress none;
    CopyReporter silent(none, 0);
    replacement.reset();
    if (lseek(source, 0, SEEK_SET) != 0) return failWith(errno);
    return target.takeExisting(std::move(existing)) && copyToTarget(target, source, status, silent);
}

/// Empty when it cannot be read.
std::string readLink(const ReachablePath& path)
{
    std::string text(PATH_MAX, '\0');
    const ssize_t length = readlinkat(path.folder(), path.itself(), text.data(), text.size());
    text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
    return text;
}

}  // namespace

bool copyFile(const ReachablePath& sourcePath, const ReachablePath& targetPath, bool failIfExists,
              const CopyProgress& progress, Kept kept)
{
    struct stat status;
    const FileDescriptor source = openSource(sourcePath, status);
    if (!source.isOpen()) return false;

    CopyReporter reporter(progress, static_cast<std::uint64_t>(status.st_size));
    Target target(targetPath);
    // Whoever finds an incomplete copy, after a crash, can replace it.
    if (target.create((status.st_mode & 0777) | S_IWUSR))
    {
        if (!copyToTarget(target, source.get(), status, reporter, kept)) return false;
    }
    else
    {
        if (errno != EEXIST) return targetPath.fail();
        if (failIfExists) return failWithCode(FILE_EXISTS);
        if (!replaceFile(targetPath, source.get(), status, reporter)) return false;
    }
    reporter.finish();
    return true;
}

bool copyLink(const ReachablePath& source, const ReachablePath& target, bool failIfExists, Kept kept)
{
    struct stat status;
    if (!source.readOwnStatus(status)) return false;
    const std::string text = readLink(source);
    if (text.empty()) return source.fail();
    if (symlinkat(text.c_str(), target.folder(), target.itself()) != 0)
    {
        if (errno != EEXIST) return target.fail();
        if (failIfExists) return failWithCode(FILE_EXISTS);
        struct stat existing;
        if (!target.readOwnStatus(existing)) return false;
        if (isSameFile(existing, status)) return failWithCode(SHARING_VIOLATION);
        const FileDescriptor folder = target.openParent(O_PATH);
        const std::string_view path(target.itself());
        const std::string name(path.substr(path.rfind('/') + 1));
        if (!folder.isOpen() || !replaceByLink(folder.get(), name.c_str(), text.c_str())) return target.fail();
    }
    const struct timespec times[]
    {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, status.st_mtim
    };
    if (kept.owner)
        (void)!fchownat(target.folder(), target.itself(), status.st_uid, status.st_gid, AT_SYMLINK_NOFOLLOW);
    utimensat(target.folder(), target.itself(), times, AT_SYMLINK_NOFOLLOW);
    return true;
}

bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress)
{
    return copyFile(ReachablePath(from), ReachablePath(to), failIfExists, progress);
}

bool copyLink(TextView from, TextView to, bool failIfExists)
{
    return copyLink(ReachablePath(from), ReachablePath(to), failIfExists);
}

}  // namespace Oxa_1_1::platform::native
