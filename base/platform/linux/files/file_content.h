#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

#include "base/platform/files/files.h"

namespace Oxa_1_1::platform
{

/// Tells how far a copy is, now and then.
class CopyReporter
{
   public:
    CopyReporter(const CopyProgress& progress, std::uint64_t total) : m_progress(progress), m_total(total) {}

    void advance(std::uint64_t done);
    /// What there was to copy after all: a file may have become shorter, or never had the size that it claims.
    void setDone(std::uint64_t done) noexcept { m_total = done; }
    void finish() const;

   private:
    const CopyProgress& m_progress;
    std::uint64_t m_total;
    std::uint64_t m_reported = 0;
};

/// Memory for a piece of a file. It begins with a line of the processor's cache: from anywhere else, the system's
/// copies of memory can take twice as long.
class PieceBuffer
{
   public:
    PieceBuffer() = default;
    explicit PieceBuffer(std::size_t size) : m_bytes(static_cast<std::byte*>(::operator new(size, LINE))), m_size(size)
    {
    }

    std::byte* data() const noexcept { return m_bytes.get(); }
    std::size_t size() const noexcept { return m_size; }

   private:
    static constexpr std::align_val_t LINE{64};
    struct Delete
    {
        void operator()(std::byte* bytes) const noexcept { ::operator delete(bytes, LINE); }
    };

    std::unique_ptr<std::byte, Delete> m_bytes;
    std::size_t m_size = 0;
};

/// The content of an open file on its way into an open empty one.
class FileContent
{
   public:
    FileContent(int from, int to, const struct stat& source, CopyReporter& reporter)
        : m_from(from), m_to(to), m_source(source), m_reporter(reporter)
    {
    }

    /// False sets the last error.
    bool copy();
    std::uint64_t done() const { return m_done; }

   private:
    bool isSparse() const;
    bool reserve() const;
    bool copyParts();
    bool copyUntil(std::uint64_t end);
    bool copyMapped(std::uint64_t end);
    bool readUntil(std::uint64_t end);
    bool writeAll(std::size_t size);

    int m_from;
    int m_to;
    const struct stat& m_source;
    CopyReporter& m_reporter;
    PieceBuffer m_piece;
    std::uint64_t m_done = 0;
};

}  // namespace Oxa_1_1::platform
