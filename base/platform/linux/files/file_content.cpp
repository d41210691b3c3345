#include "base/platform/linux/files/file_content.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

#include "base/platform/linux/files/reachable_path.h"

// Shared blocks where the file system has them, else pieces: large ones straight from the system's cache of the source,
// which saves one of two copies, others through memory that stays in the processor's cache.
namespace Oxa_1_1::platform
{

namespace
{

constexpr std::size_t PIECE = 256 * 1024;
constexpr std::uint64_t PROGRESS_STEP = 1024 * 1024;
constexpr std::size_t MAPPED_PIECE = 1024 * 1024;

/// A piece of a file in memory. Only the system may look into it: where the file has become shorter, its calls fail and
/// anybody else is killed.
class MappedPiece
{
   public:
    MappedPiece(int file, std::uint64_t begin)
        : m_bytes(mmap(nullptr, MAPPED_PIECE, PROT_READ, MAP_SHARED, file, static_cast<off_t>(begin)))
    {
        if (m_bytes == MAP_FAILED) return;
        // What is to be read from the disk is read ahead, and all is mapped at once.
        m_isThere = madvise(m_bytes, MAPPED_PIECE, MADV_SEQUENTIAL) == 0 &&
                    madvise(m_bytes, MAPPED_PIECE, MADV_POPULATE_READ) == 0;
    }
    MappedPiece(const MappedPiece&) = delete;
    MappedPiece& operator=(const MappedPiece&) = delete;
    ~MappedPiece()
    {
        if (m_bytes != MAP_FAILED) munmap(m_bytes, MAPPED_PIECE);
    }

    bool writeTo(int file) const
    {
        return m_isThere && write(file, m_bytes, MAPPED_PIECE) == static_cast<ssize_t>(MAPPED_PIECE);
    }

   private:
    void* m_bytes;
    bool m_isThere = false;
};

}  // namespace

void CopyReporter::advance(std::uint64_t done)
{
    if (!m_progress || done - m_reported < PROGRESS_STEP || done == m_total) return;
    m_reported = done;
    // A file that grows meanwhile, or has more in it than its size tells, has no known end.
    m_progress(done, std::max(m_total, done + 1));
}

void CopyReporter::finish() const
{
    if (m_progress) m_progress(m_total, m_total);
}

bool FileContent::copy()
{
    const auto size = static_cast<std::uint64_t>(m_source.st_size);
    if (size > PIECE && ioctl(m_to, FICLONE, m_from) == 0)
    {
        m_done = size;
        return true;
    }
    m_piece = PieceBuffer(size > 0 && size < PIECE ? size + 1 : PIECE);
    if (isSparse()) return copyParts();
    if (!reserve() || !copyUntil(UINT64_MAX)) return false;
    // The source may have become shorter than what was reserved.
    return m_done >= size || ftruncate(m_to, static_cast<off_t>(m_done)) == 0 || failWith(errno);
}

/// With holes, and on a file system that tells where. Others say that there is none before the end, and so do those
/// whose files are made while they are read and have less in them than their size.
bool FileContent::isSparse() const
{
    if (m_source.st_blocks * 512 >= m_source.st_size) return false;
    const off_t hole = lseek(m_from, 0, SEEK_HOLE);
    return hole >= 0 && lseek(m_from, 0, SEEK_SET) == 0 && hole < m_source.st_size;
}

/// The system lays a large file out best when it knows the size.
bool FileContent::reserve() const
{
    if (m_source.st_size <= static_cast<off_t>(PIECE)) return true;
    // Interrupted, it would begin again, and never end under a steady timer.
    if (fallocate(m_to, 0, 0, m_source.st_size) == 0) return true;
    return (errno != ENOSPC && errno != EDQUOT && errno != EFBIG) || failWith(errno);
}

/// Leaves holes where the source has them.
bool FileContent::copyParts()
{
    off_t end = 0;
    for (;;)
    {
        const off_t begin = lseek(m_from, end, SEEK_DATA);
        if (begin < 0 && errno == ENXIO) break;
        if (begin < 0) return failWith(errno);
        end = lseek(m_from, begin, SEEK_HOLE);
        if (end < 0 || lseek(m_from, begin, SEEK_SET) < 0 || lseek(m_to, begin, SEEK_SET) < 0) return failWith(errno);
        m_done = static_cast<std::uint64_t>(begin);
        if (!copyUntil(static_cast<std::uint64_t>(end))) return false;
    }
    m_done = static_cast<std::uint64_t>(m_source.st_size);
    return uninterrupted([&] { return ftruncate(m_to, m_source.st_size); }) == 0 || failWith(errno);
}

/// To that place, or to the end of the file.
bool FileContent::copyUntil(std::uint64_t end)
{
    const std::uint64_t known = std::min(end, static_cast<std::uint64_t>(m_source.st_size));
    const bool isOnDisk = m_source.st_blocks > 0;
    if (isOnDisk && known >= m_done + MAPPED_PIECE && !copyMapped(known)) return false;
    return readUntil(end);
}

/// Whole pieces, as far as that goes. Why it does not go on is found out by reading.
bool FileContent::copyMapped(std::uint64_t end)
{
    struct stat now;
    while (end >= m_done + MAPPED_PIECE)
    {
        if (!MappedPiece(m_from, m_done).writeTo(m_to)) break;
        // Behind the end of a file that has become shorter there are zeros, up to the end of the page.
        if (fstat(m_from, &now) != 0 || static_cast<std::uint64_t>(now.st_size) < m_done + MAPPED_PIECE) break;
        m_done += MAPPED_PIECE;
        m_reporter.advance(m_done);
    }
    const auto place = static_cast<off_t>(m_done);
    return (lseek(m_from, place, SEEK_SET) >= 0 && lseek(m_to, place, SEEK_SET) >= 0) || failWith(errno);
}

bool FileContent::readUntil(std::uint64_t end)
{
    while (m_done < end)
    {
        const std::size_t wanted = std::min<std::uint64_t>(m_piece.size(), end - m_done);
        const ssize_t count = uninterrupted([&] { return read(m_from, m_piece.data(), wanted); });
        if (count < 0) return failWith(errno);
        if (count == 0) return true;
        if (!writeAll(static_cast<std::size_t>(count))) return false;
        m_reporter.advance(m_done);
        // A short piece ends a file on a disk: asking once more would take as long as reading a small one.
        if (static_cast<std::size_t>(count) < wanted && m_source.st_blocks > 0 &&
            m_done == static_cast<std::uint64_t>(m_source.st_size))
            return true;
    }
    return true;
}

bool FileContent::writeAll(std::size_t size)
{
    const std::byte* bytes = m_piece.data();
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

}  // namespace Oxa_1_1::platform
