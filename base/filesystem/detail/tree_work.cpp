#include "base/filesystem/detail/tree_work.h"

#include <utility>

#include "base/filesystem/tree_walk.h"
#include "base/platform/files/failed_step.h"

namespace Oxa_1_1::detail
{

bool TreeWork::fail(std::string_view operation, const String& path, DWORD code, const String& target)
{
    m_failures.add({.operation = operation, .path = path, .target = target, .code = makeWindowsError(code)});
    platform::failStep(code, operation, path, target);
    return m_options.onFailure == OnFailure::GoOn;
}

bool TreeWork::isStopped()
{
    m_report.isStopped = m_report.isStopped || m_options.stop.stop_requested();
    return m_report.isStopped;
}

void TreeWork::count(const Directory& folder, LinkHandling links, Counted what)
{
    if (!m_options.countFirst) return;
    TreeWalk walk(folder, {.followLinks = links == LinkHandling::Follow});
    for (const WalkEntry& entry : walk)
    {
        if (isStopped()) return;
        const bool isKeptLink = entry.isLink() && links == LinkHandling::Keep;
        if (entry.isFolder() && !isKeptLink) continue;
        ++m_progress.totalFiles;
        const bool hasBytes = what == Counted::FILES_AND_BYTES && entry.isFile() && !isKeptLink;
        if (hasBytes) m_progress.totalBytes += entry.size().value_or(0);
    }
    tell();
}

void TreeWork::countFile(std::uint64_t bytes)
{
    if (!m_options.countFirst) return;
    m_progress.totalFiles = 1;
    m_progress.totalBytes = bytes;
    tell();
}

void TreeWork::pass(std::uint64_t bytes)
{
    ++m_progress.files;
    m_bytesBefore += bytes;
    m_progress.bytes = m_bytesBefore;
    tell();
}

void TreeWork::fileDone()
{
    const std::uint64_t bytes = m_progress.bytes - m_bytesBefore;
    ++m_report.files;
    m_report.bytes += bytes;
    pass(bytes);
}

void TreeWork::fileDone(std::uint64_t bytes)
{
    ++m_report.files;
    pass(bytes);
}

void TreeWork::fileSkipped(std::uint64_t bytes)
{
    ++m_report.skipped;
    pass(bytes);
}

void TreeWork::linkDone()
{
    ++m_report.links;
    pass(0);
}

void TreeWork::wholeDone()
{
    if (!m_options.countFirst || m_progress.files >= m_progress.totalFiles) return;
    m_progress.files = m_progress.totalFiles;
    m_progress.bytes = m_bytesBefore = m_progress.totalBytes;
    tell();
}

void TreeWork::folderDone()
{
    ++m_report.folders;
    tell();
}

platform::CopyProgress TreeWork::fileProgress()
{
    return [this](std::uint64_t done, std::uint64_t total)
    {
        m_progress.bytes = m_bytesBefore + done;
        // What is whole is first noted, and then told.
        if (done >= total) return;
        if (isStopped()) throw Stopped();
        tell();
    };
}

platform::CopyProgress TreeWork::comparisonProgress()
{
    return [this](std::uint64_t, std::uint64_t)
    {
        if (isStopped()) throw Stopped();
    };
}

void TreeWork::tell()
{
    if (m_options.progress) m_options.progress(m_progress);
}

TreeReport TreeWork::finish()
{
    m_report.failures = m_failures.first();
    m_report.failureCount = m_failures.count();
    return std::move(m_report);
}

}  // namespace Oxa_1_1::detail
