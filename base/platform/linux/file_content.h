#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/platform/files.h"

namespace Oxa_1_1::platform
{

/// Tells how far a copy is, now and then.
class CopyReporter
{
   public:
    CopyReporter(const CopyProgress& progress, std::uint64_t total) : m_progress(progress), m_total(total) {}

    void advance(std::uint64_t done);
    void finish(std::uint64_t done) const;

   private:
    const CopyProgress& m_progress;
    std::uint64_t m_total;
    std::uint64_t m_reported = 0;
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
    bool writeAll(std::size_t size);

    int m_from;
    int m_to;
    const struct stat& m_source;
    CopyReporter& m_reporter;
    std::unique_ptr<std::byte[]> m_buffer;
    std::size_t m_piece = 0;
    std::uint64_t m_done = 0;
};

}  // namespace Oxa_1_1::platform
