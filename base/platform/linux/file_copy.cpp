// Copies of files: shared blocks where the file system has them, else read and written in pieces that stay in the
// processor's cache.

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <memory>

#include "base/platform/detail/native_files.h"
#include "base/platform/last_error.h"
#include "base/platform/linux/reachable_path.h"

namespace Oxa_1_1::platform::native
{

namespace
{

constexpr DWORD SHARING_VIOLATION = 32;
constexpr DWORD NOT_SUPPORTED = 50;
constexpr DWORD FILE_EXISTS = 80;
constexpr std::size_t PIECE = 128 * 1024;
constexpr std::uint64_t PROGRESS_STEP = 1024 * 1024;

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

FileDescriptor openSource(const ReachablePath& path, struct stat& status)
{
    // It is looked at before it is opened, since opening a device may do something already.
    if (!path.readStatus(status) || !isCopyable(status)) return FileDescriptor();
    FileDescriptor file(path.open(O_RDONLY));
    if (!file.isOpen())
        path.fail();
    else if (fstat(file.get(), &status) != 0 || !isCopyable(status))
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
        if (m_file.isOpen() && !m_isKept) remove();
    }

    bool create(mode_t mode)
    {
        m_file = FileDescriptor(m_path.open(O_WRONLY | O_CREAT | O_EXCL, mode));
        return m_file.isOpen();
    }

    bool openExisting(const struct stat& source)
    {
        struct stat status;
        if (!m_path.readStatus(status) || !isReplaceable(status, source)) return false;
        FileDescriptor file(m_path.open(O_WRONLY));
        if (!file.isOpen()) return m_path.fail();
        if (fstat(file.get(), &status) != 0 || !isReplaceable(status, source)) return false;
        if (uninterrupted([&] { return ftruncate(file.get(), 0); }) != 0) return m_path.fail();
        m_file = std::move(file);
        return true;
    }

    int get() const { return m_file.get(); }

    bool keep()
    {
        // Some file systems write late.
        const struct stat status = own();
        m_isKept = true;
        if (m_file.close()) return true;
        failWith(errno);
        removeIfSame(status);
        return false;
    }

   private:
    static bool isReplaceable(const struct stat& target, const struct stat& source)
    {
        if (!isCopyable(target)) return false;
        if (isSameFile(target, source)) return failWithCode(SHARING_VIOLATION);
        return !isReadOnly(target) || failWith(EACCES);
    }

    struct stat own() const
    {
        struct stat status
        {
        };
        fstat(m_file.get(), &status);
        return status;
    }

    void remove()
    {
        const DWORD reason = lastError();
        // What cannot be removed is at least empty.
        (void)!ftruncate(m_file.get(), 0);
        removeIfSame(own());
        setLastError(reason);
    }

    /// Removes the file, not a link that leads to it.
    void removeIfSame(const struct stat& status) const
    {
        struct stat found;
        const bool isItself = fstatat(m_path.folder(), m_path.itself(), &found, AT_SYMLINK_NOFOLLOW) == 0;
        if (isItself && isSameFile(found, status))
        {
            unlinkat(m_path.folder(), m_path.itself(), 0);
            return;
        }
        const std::unique_ptr<char, decltype(&std::free)> real(realpath(m_path.path(), nullptr), &std::free);
        if (real != nullptr && lstat(real.get(), &found) == 0 && isSameFile(found, status)) unlink(real.get());
    }

    const ReachablePath& m_path;
    FileDescriptor m_file;
    bool m_isKept = false;
};

/// Tells how far the copy is, now and then.
class Reporter
{
   public:
    Reporter(const CopyProgress& progress, std::uint64_t total) : m_progress(progress), m_total(total) {}

    void advance(std::uint64_t done)
    {
        if (!m_progress || done - m_reported < PROGRESS_STEP || done >= m_total) return;
        m_reported = done;
        m_progress(done, m_total);
    }

    void finish(std::uint64_t done) const
    {
        if (m_progress) m_progress(done, std::max(done, m_total));
    }

   private:
    const CopyProgress& m_progress;
    std::uint64_t m_total;
    std::uint64_t m_reported = 0;
};

class Content
{
   public:
    Content(int from, int to, const struct stat& source, Reporter& reporter)
        : m_from(from), m_to(to), m_source(source), m_reporter(reporter)
    {
    }

    bool copy()
    {
        const auto size = static_cast<std::uint64_t>(m_source.st_size);
        if (size > PIECE && ioctl(m_to, FICLONE, m_from) == 0)
        {
            m_done = size;
            return true;
        }
        const std::size_t piece = size > 0 && size < PIECE ? size + 1 : PIECE;
        m_buffer = std::make_unique_for_overwrite<std::byte[]>(piece);
        m_piece = piece;
        return isSparse() ? copyParts() : reserve() && copyUntil(UINT64_MAX);
    }

    std::uint64_t done() const { return m_done; }

   private:
    /// With holes, and on a file system that tells where.
    bool isSparse() const
    {
        if (m_source.st_blocks * 512 >= m_source.st_size) return false;
        return lseek(m_from, 0, SEEK_HOLE) >= 0 && lseek(m_from, 0, SEEK_SET) == 0;
    }

    /// The system lays a large file out best when it knows the size.
    bool reserve() const
    {
        if (m_source.st_size <= static_cast<off_t>(PIECE)) return true;
        if (uninterrupted([&] { return fallocate(m_to, 0, 0, m_source.st_size); }) == 0) return true;
        return (errno != ENOSPC && errno != EDQUOT && errno != EFBIG) || failWith(errno);
    }

    /// Leaves holes where the source has them.
    bool copyParts()
    {
        off_t end = 0;
        for (;;)
        {
            const off_t begin = lseek(m_from, end, SEEK_DATA);
            if (begin < 0 && errno == ENXIO) break;
            if (begin < 0) return failWith(errno);
            end = lseek(m_from, begin, SEEK_HOLE);
            if (end < 0 || lseek(m_from, begin, SEEK_SET) < 0 || lseek(m_to, begin, SEEK_SET) < 0)
                return failWith(errno);
            m_done = static_cast<std::uint64_t>(begin);
            if (!copyUntil(static_cast<std::uint64_t>(end))) return false;
        }
        m_done = static_cast<std::uint64_t>(m_source.st_size);
        return uninterrupted([&] { return ftruncate(m_to, m_source.st_size); }) == 0 || failWith(errno);
    }

    /// To that place, or to the end of the file.
    bool copyUntil(std::uint64_t end)
    {
        while (m_done < end)
        {
            const std::size_t wanted = std::min<std::uint64_t>(m_piece, end - m_done);
            const ssize_t count = uninterrupted([&] { return read(m_from, m_buffer.get(), wanted); });
            if (count < 0) return failWith(errno);
            if (count == 0) return true;
            if (!writeAll(static_cast<std::size_t>(count))) return false;
            m_reporter.advance(m_done);
            // A short piece ends the file: asking once more would take as long as reading a small one.
            if (static_cast<std::size_t>(count) < wanted && m_done == static_cast<std::uint64_t>(m_source.st_size))
                return true;
        }
        return true;
    }

    bool writeAll(std::size_t size)
    {
        const std::byte* bytes = m_buffer.get();
        while (size > 0)
        {
            const ssize_t count = uninterrupted([&] { return write(m_to, bytes, size); });
            if (count < 0) return failWith(errno);
            bytes += count;
            size -= static_cast<std::size_t>(count);
            m_done += static_cast<std::uint64_t>(count);
        }
        return true;
    }

    int m_from;
    int m_to;
    const struct stat& m_source;
    Reporter& m_reporter;
    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_piece = 0;
    std::uint64_t m_done = 0;
};

/// Who may write a file need not own it; then it keeps what it has.
void copyModeAndTimes(const struct stat& source, int to)
{
    const struct timespec times[]
    {
        {.tv_sec = 0, .tv_nsec = UTIME_OMIT}, source.st_mtim
    };
    (void)!fchmod(to, source.st_mode & 0777);
    futimens(to, times);
}

}  // namespace

bool copyFile(TextView from, TextView to, bool failIfExists, const CopyProgress& progress)
{
    const ReachablePath sourcePath(from);
    const ReachablePath targetPath(to);
    struct stat status;
    const FileDescriptor source = openSource(sourcePath, status);
    if (!source.isOpen()) return false;

    Target target(targetPath);
    if (!target.create(status.st_mode & 0777))
    {
        if (errno != EEXIST) return targetPath.fail();
        if (failIfExists) return failWithCode(FILE_EXISTS);
        if (!target.openExisting(status)) return false;
    }
    Reporter reporter(progress, static_cast<std::uint64_t>(status.st_size));
    Content content(source.get(), target.get(), status, reporter);
    if (!content.copy()) return false;
    copyModeAndTimes(status, target.get());
    if (!target.keep()) return false;
    reporter.finish(content.done());
    return true;
}

}  // namespace Oxa_1_1::platform::native
